#pragma once

#include "common/column_template.h"
#include "console.h"

#include <string>
#include <vector>

namespace norva {

struct ReportOptions {
    std::string path;  ///< .json or .html; empty for none
    bool isStrict = false;
    std::vector<std::string> importOptions{};  ///< words of the command line
};

/// Throws CommandError for a path that no report can be written to.
void RequireReportPath(std::string const& path, bool force);

/// Prints the summary of the import that ran last and writes its report; the exit status. `chosen` are the choices of
/// its column dialog, which the report keeps for "norva verify", as it does the options.
int TellReport(ReportOptions const& options, ColumnTemplate const& chosen, CConsole& console);

}  // namespace norva
