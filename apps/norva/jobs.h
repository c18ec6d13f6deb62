#pragma once

#include "common/column_template.h"
#include "console.h"
#include "import_options.h"
#include "norva/exchange.h"

#include <optional>
#include <string>
#include <vector>

namespace norva {

struct ImportTask {
    std::string input;
    std::string store;
    ImportOptions const& options;
    bool keepsColumns = false;                         ///< the choices for the columns are wanted, for a template
    bool hashesSource = false;                         ///< the report is to have the source's SHA-256
    std::size_t places = ReportFinding::kUsualPlaces;  ///< of each finding that the report names
    bool isStrict = false;                             ///< doubts are complaints
    std::string name{};                                ///< what a person calls the input; empty: by its path
};

struct ImportOutcome {
    ImportReport report{};
    ImportSettings settings{};
    std::optional<ColumnTemplate> columns{};  ///< of a text
    std::size_t doubts = 0;                   ///< of a proposal
};

/// Imports a file into a new store; throws CommandError.
ImportOutcome RunImport(ImportTask const& task, CConsole& console);
/// The same by settings instead of options; `format` is a label. Messages name the source as `name`.
ImportOutcome RunImport(ImportRequest request, std::string const& name, CConsole& console);

/// What to write, in output order; empty lists mean all.
struct ExportOptions {
    std::vector<std::string> lines;
    std::vector<std::string> channels;
    bool labelAsChannel = false;
    bool pointId = false;
    bool units = true;
    bool unitRow = false;
    bool fullDigits = false;
    bool force = false;  ///< replace an older file; write a sheet that its readers cannot hold whole
};

/// Exports the store file to `output`, whose extension names the type; throws CommandError.
ExportReport RunExport(std::string const& store, std::string const& output, ExportOptions const& options,
                       CConsole& console);

/// Opens a store file for reading and marking; throws CommandError.
void OpenStore(CNorvaFileUtil& store, std::string const& path);
/// Names of its lines, and of its channels in their order.
std::vector<std::string> LineNames(CNorvaFileUtil& store);
std::vector<std::string> ChannelNames(CNorvaFileUtil& store);

/// "5 lines, 10 channels, 296 locations" of a store file.
std::string StoreSummary(std::string const& store);

/// The path that the library writes: a name without any dot gets the extension of a store. A folder stays as it is, to
/// be refused.
std::string WrittenPath(std::string const& path);

/// Throws CommandError when `path` exists and may not be replaced, or is a folder, or is the file `source` itself.
void RequireFree(std::string const& path, bool force, std::string const& source = {});

}  // namespace norva
