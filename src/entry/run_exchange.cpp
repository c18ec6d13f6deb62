#include "entry/run_exchange.h"

#include "exchange/exception_guard.h"
#include "exchange/report_draft.h"
#include "platform/last_error.h"

#include <utility>

namespace norva {

Status RunImport(ImportFormat const& format, ImportJob& job) {
    StartReport(job.inputPath, format.label);
    Status status = Guarded("Couldn't import the file", job.inputPath, [&] { return format.import(job); });
    if (status) {
        if (!job.report.unit.empty()) FinishReport(std::move(job.report));
        if (ImportReport const* const report = FinishedReport()) job.report = *report;
        return status;
    }
    // A warning that was shown before is not why the import failed.
    if (!status.Text().empty()) ClearLastErrorText();
    Conclude(status);
    ForgetReport();
    job.store->CloseCurFile();
    return status;
}

Status RunExport(ExportType const& type, ExportJob& job) {
    Status status = Guarded("Couldn't write the file", job.outputPath, [&] { return type.run(job); });
    Conclude(status);
    return status;
}

}  // namespace norva
