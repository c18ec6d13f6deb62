#pragma once

#include "norva/settings.h"

#include <CLI/CLI.hpp>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace norva {

/// One `--column` of the command line: `C:key=value,...`.
struct ColumnOption {
    std::string column;  ///< 1-based number or name; of a proposal also several with commas, or "*"
    std::string type;    ///< empty: as guessed
    std::optional<std::string> name{};
    std::optional<std::string> units{};
    std::optional<std::string> dateTemplate{};  ///< text or code of a date or time template
    std::optional<int> width{};                 ///< characters of a text
};

/// One field of `--record`: `NAME:READ[>WRITE][:UNITS]`.
struct RecordField {
    std::string name;
    std::string readFormat;
    std::string writeFormat;  ///< empty: the kind that goes with the read format
    std::string units;
};

/// What a command line says of an import.
struct ImportOptions {
    std::string format;  ///< as typed; empty: recognised
    // Column text.
    std::string columnTemplate;  ///< name or path; applied before the other options
    std::optional<int> skip{};
    std::optional<int> headerLine{};
    std::string labelColumn;
    std::string delimiters;
    std::vector<ColumnOption> columns;
    // Text that is imported by a proposal from the whole file.
    bool asItStands = false;  ///< by the first rows instead
    std::string separator;
    std::string dates;
    std::vector<double> noData;
    std::vector<double> keep;
    std::vector<std::string> markers;
    // GBN and CG3.
    std::vector<std::string> keepLines;
    std::vector<std::string> keepChannels;
    std::vector<std::string> dumpColumns;
    std::string dateFormat;
    std::string timeFormat;
    bool sortByTime = true;
    // Fixed binary records.
    std::vector<RecordField> record;
    std::optional<std::int64_t> pointsPerLine{};
    std::optional<std::int64_t> records{};
    bool fiducial = true;
    std::optional<int> frequency{};
    // SeaSPY.
    std::optional<bool> interpolated{};

    /// Options of certain formats only, and which; of the command that they were declared on.
    struct Declared {
        CLI::Option const* option;
        std::vector<SettingsKind> kinds;
    };
    std::vector<Declared> declared;
    std::vector<CLI::Option const*> ofProposal{};   ///< options of a proposal alone
    std::vector<CLI::Option const*> ofFirstRows{};  ///< options of the import by the first rows alone
};

/// Declares the import options on a subcommand. `options` must outlive the parse.
void AddImportOptions(CLI::App& command, ImportOptions& options);
/// Throws CommandError for a given option that a format has no use for.
void RequireApplicable(ImportOptions const& options, SettingsKind kind, std::string const& format);

/// The import options that a parsed command was given, as words of a command line.
std::vector<std::string> ImportOptionWords(CLI::App const& command);
/// Throws CLI::ParseError.
ImportOptions ParseImportOptions(std::vector<std::string> words);

/// Both throw CLI::ValidationError with a text that says what is wrong.
ColumnOption ParseColumnOption(std::string const& text);
std::vector<RecordField> ParseRecordOption(std::string const& text);
/// Splits at commas; a comma in a name is written as "\,".
std::vector<std::string> SplitNames(std::string const& text);

}  // namespace norva
