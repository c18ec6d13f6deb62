#include "norva/exchange.h"

#include "entry/export_types.h"
#include "entry/import_formats.h"
#include "entry/quiet_toolkit.h"
#include "entry/run_exchange.h"
#include "exchange/exception_guard.h"
#include "exchange/report_places.h"
#include "norva/formats.h"
#include "norva/import_export.h"
#include "platform/files.h"
#include "platform/last_error.h"
#include "platform/paths.h"

#include <algorithm>

namespace norva {

namespace {

/// A status that says why, even where an operation failed without a text of its own.
Status WithReason(Status status, std::vector<std::string> const& messages, char const* what, std::string const& path) {
    if (status || status.IsCancelled() || !status.Text().empty()) return status;
    return Status::Failure(what, path, messages.empty() ? std::string() : messages.back());
}

Status RequireFree(std::string const& path, bool replace) {
    if (IsFolder(path)) return Status::Failure("Couldn't write the file", path, "It is a folder.");
    if (!replace && FileExists(path)) return Status::Failure("Couldn't write the file", path, "It exists already.");
    return {};
}

Status Import(ImportRequest const& request, ImportResult& result) {
    if (Status status = RequireOtherFile(request.inputPath, request.storePath); !status) return status;
    std::string const label = request.format.empty() ? RecognizeImportFormat(request.inputPath).label : request.format;
    if (label.empty()) {
        return Status::Failure("Couldn't read the file", request.inputPath,
                               RecognizeImportFormat(request.inputPath).reason);
    }
    ImportFormat const* const format = FindImportFormat(label);
    if (format == nullptr) {
        return Status::Failure("Couldn't read the file", request.inputPath, "There is no format \"" + label + "\".");
    }
    if (Status status = RequireFree(request.storePath, request.replace); !status) return status;

    CNorvaFileUtil own;
    ImportJob job;
    job.store = request.store != nullptr ? request.store : &own;
    job.inputPath = FullPath(request.inputPath);
    job.storePath = FullPath(request.storePath);
    job.gravityMeterMode = format->code == ImportFormatCode::CG5 ? 1 : 0;
    job.asks = false;
    job.settings = request.settings;
    CMostPlacesScope const places(request.places);
    if (Status status = RunImport(*format, job); !status) return status;
    result.settings = std::move(job.settings);
    result.report = std::move(job.report);
    if (request.checksum && GetFileSha256(job.inputPath, result.report.sourceSha256) == 0) {
        return Status::Failure(GetLastErrorText());
    }
    return {};
}

Status Export(ExportRequest const& request, ExportResult& result) {
    ExportType const* const type = FindWrittenType(ExtensionOf(request.outputPath));
    if (type == nullptr || type->run == nullptr) {
        return Status::Failure("Files with this extension cannot be written", request.outputPath);
    }
    if (Status status = RequireFree(request.outputPath, request.replace); !status) return status;
    CNorvaFileUtil own;
    if (request.store == nullptr && own.SetFileName(request.storePath, kReopenStore, nullptr) == 0) {
        return own.LastStatus();
    }
    ExportJob job;
    job.store = request.store != nullptr ? request.store : &own;
    job.outputPath = FullPath(request.outputPath);
    job.asks = false;
    job.settings = request.settings;
    if (Status status = RunExport(*type, job); !status) return status;
    result.settings = std::move(job.settings);
    result.report = std::move(job.report);
    return {};
}

}  // namespace

Status ImportFile(ImportRequest const& request, ImportResult& result) {
    return Guarded("Couldn't import the file", request.inputPath, [&] {
        result = {};
        ClearLastErrorText();
        CQuietToolkit toolkit(request.progress, result.messages);
        CToolkitScope const scope(toolkit);
        Status status = Import(request, result);
        return WithReason(std::move(status), result.messages, "Couldn't import the file", request.inputPath);
    });
}

Status ExportStore(ExportRequest const& request, ExportResult& result) {
    return Guarded("Couldn't write the file", request.outputPath, [&] {
        result = {};
        ClearLastErrorText();
        CQuietToolkit toolkit(request.progress, result.messages);
        CToolkitScope const scope(toolkit);
        Status status = Export(request, result);
        return WithReason(std::move(status), result.messages, "Couldn't write the file", request.outputPath);
    });
}

}  // namespace norva
