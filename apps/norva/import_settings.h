#pragma once

#include "common/column_template.h"
#include "import_options.h"
#include "norva/formats.h"
#include "norva/import_report.h"
#include "norva/settings.h"

#include <optional>
#include <string>

/// The settings of an import from the options of a command, checked against the start of the file. Everything throws
/// CommandError.
namespace norva {

/// Level of the format list that offers every format once.
inline constexpr int kEveryFormat = 1;

/// A format named by its label in any case, by a word of it ("csv", "seaspy") or by its number from 1.
ImportFormatInfo FindFormat(std::string const& wanted);

struct ChosenSettings {
    ImportSettings settings{};                ///< the empty state where no option says otherwise
    std::optional<ColumnTemplate> columns{};  ///< of a text
    bool mayInterpolate = false;              ///< a log with coordinates, and no option says what to do with them
};

/// `needsColumns`: the columns are asked for, even where no option changes them.
ChosenSettings SettingsFrom(ImportOptions const& options, ImportFormatInfo const& format, std::string const& input,
                            bool needsColumns);

/// The number of lines to skip that gives a text more columns, where the first row decided for too few: most rows of
/// its import had more values. 0 for none.
int BetterSkip(ImportReport const& report, ColumnTextSettings const& settings, ImportFormatInfo const& format,
               std::string const& input);

}  // namespace norva
