#pragma once

#include "jobs.h"

#include <string>
#include <vector>

namespace norva {

/// Declares --places: how many places of each finding a report names.
void AddPlacesOption(CLI::App& command, std::size_t& places);

/// Throws CommandError for a path that no report can be written to.
void RequireReportPath(std::string const& path, bool force, std::string const& source);

/// Whether anything of the source was lost or changed.
bool HasLoss(ImportReport const& report);

/// Says what became of a source: all of it, or one line about losses when the console is quiet. With `isStrict` losses
/// are a complaint.
void TellSummary(ImportReport const& report, bool isStrict, CConsole& console);

/// The same of an export to `output`.
void TellSummary(ExportReport const& report, std::string const& output, bool isStrict, CConsole& console);

/// Writes a report with the settings of the import, which "norva verify" reads, and the options that gave them.
void WriteReport(std::string const& path, ImportOutcome const& outcome, std::vector<std::string> const& options);

}  // namespace norva
