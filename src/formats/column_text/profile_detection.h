#pragma once

#include "norva/import_report.h"
#include "platform/line_reader.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

class CScanProgress;

/// The profile name that a marker line gives; empty for none.
std::string GetLineName(std::string_view markerLine);

/// Finds the profiles of a text, with their names and numbers of rows, by marker and comment lines; rows before
/// `dataStart` do not count. A read error is left in `file`. `progress` may be null.
std::vector<ReportLine> FindProfilesByMarker(CLineReader& file, std::uint64_t dataStart, CScanProgress* progress);
/// Finds the profiles by the changes of a column's value. A row without that column belongs to the profile around it,
/// so that the profiles' rows add up to the rows of the file.
std::vector<ReportLine> FindProfilesByLabel(CLineReader& file, std::uint64_t dataStart, int labelColumn,
                                            CScanProgress* progress);

}  // namespace norva
