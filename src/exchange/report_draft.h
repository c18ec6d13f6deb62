#pragma once

#include "norva/import_report.h"

#include <string>
#include <string_view>

/// The report of the running import, one a thread. An importer fills it at the end of its pass; a draft without a unit
/// counts as none.
namespace norva {

void ForgetReport();
/// A new draft with the facts that every import knows.
void StartReport(std::string const& sourcePath, std::string_view format);
/// Makes an importer's findings the report; the facts of StartReport stay.
void FinishReport(ImportReport report);

/// What the importer that finished last handed in, for one that read the source on its behalf; null for nothing.
ImportReport* FinishedReport();

/// Counts one more finding, with its place as long as places are kept.
void AddFinding(ReportFinding& finding, std::uint64_t line, std::uint64_t column, std::string_view text);

}  // namespace norva
