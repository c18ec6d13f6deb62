#pragma once

#include "norva/export_report.h"
#include "norva/import_report.h"

/// The reports that GetImportReport and GetExportReport hand out: one of each per thread.
namespace norva {

void KeepLastReport(ImportReport report);
void KeepLastReport(ExportReport report);
void ForgetLastImportReport();
void ForgetLastExportReport();

}  // namespace norva
