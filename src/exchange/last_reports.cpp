#include "exchange/last_reports.h"

#include <optional>
#include <utility>

namespace norva {

namespace {

thread_local std::optional<ImportReport> lastImport;
thread_local std::optional<ExportReport> lastExport;

}  // namespace

void KeepLastReport(ImportReport report) {
    lastImport = std::move(report);
}

void KeepLastReport(ExportReport report) {
    lastExport = std::move(report);
}

void ForgetLastImportReport() {
    lastImport.reset();
}

void ForgetLastExportReport() {
    lastExport.reset();
}

int GetImportReport(ImportReport& report, int withChecksum) {
    if (!lastImport) return 0;
    bool const isWanted = withChecksum != 0 && lastImport->sourceSha256.empty();
    if (isWanted && GetFileSha256(lastImport->sourcePath, lastImport->sourceSha256) == 0) return 0;
    report = *lastImport;
    return 1;
}

int GetExportReport(ExportReport& report) {
    if (!lastExport) return 0;
    report = *lastExport;
    return 1;
}

}  // namespace norva
