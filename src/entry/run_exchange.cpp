#include "entry/run_exchange.h"

#include "exchange/exception_guard.h"
#include "norva/import_export.h"
#include "platform/files.h"
#include "platform/last_error.h"

namespace norva {

Status RunImport(ImportFormat const& format, ImportJob& job) {
    Status status = Guarded("Couldn't import the file", job.inputPath, [&] { return format.import(job); });
    if (status) {
        job.report.sourcePath = job.inputPath;
        job.report.format = format.label;
        job.report.norvaVersion = GetLibraryVersion();
        return status;
    }
    // A warning that was shown before is not why the import failed.
    if (!status.Text().empty()) ClearLastErrorText();
    Conclude(status);
    job.store->CloseCurFile();
    return status;
}

Status RequireOtherFile(std::string const& inputPath, std::string const& storePath) {
    if (!IsSameFile(inputPath, storePath)) return {};
    return Status::Failure("The store cannot take the place of the file that is imported", inputPath);
}

Status RunExport(ExportType const& type, ExportJob& job) {
    Status status = Guarded("Couldn't write the file", job.outputPath, [&] { return type.run(job); });
    ConcludeAlone(status);
    return status;
}

}  // namespace norva
