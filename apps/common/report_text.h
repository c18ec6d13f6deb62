#pragma once

#include "norva/export_report.h"
#include "norva/import_report.h"

#include <nlohmann/json.hpp>

#include <string>

/// Import reports for people and programs.
namespace norva {

nlohmann::ordered_json ReportJson(ImportReport const& report);
/// One page that needs no other file.
std::string ReportHtml(ImportReport const& report);
/// "1 line", "2 lines".
std::string Counted(std::uint64_t count, std::string const& noun, char const* plural = "s");
/// A line if nothing was lost; else one more for each kind of loss, with its first place.
std::string ReportSummary(ImportReport const& report);
/// The same of an export.
std::string ReportSummary(ExportReport const& report);

}  // namespace norva
