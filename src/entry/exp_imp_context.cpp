#include "entry/exp_imp_context.h"

#include "entry/browse_for_file.h"
#include "entry/export_types.h"
#include "entry/import_format_dlg.h"
#include "entry/import_formats.h"
#include "entry/run_exchange.h"
#include "exchange/exception_guard.h"
#include "exchange/last_reports.h"
#include "platform/last_error.h"
#include "ui/messages.h"

#include <utility>

namespace norva {

CExpImpContext::~CExpImpContext() = default;

std::string ProposedStorePath(std::string const& inputPath, ImportFormatCode code) {
    std::size_t const dot = inputPath.rfind('.');
    std::string proposed = inputPath.substr(0, dot);
    // The lines of a TKI survey are numbered by their extensions: data.p01 and data.p02 need different stores.
    if (dot != std::string::npos && code == ImportFormatCode::Tki) proposed += inputPath.substr(dot + 1);
    return proposed + ".nvt";
}

int CExpImpContext::ImportData(CNorvaFileUtil* store, std::string& storePath, CWindow* owner, int formatLevel) {
    m_store = store;
    m_formatLevel = formatLevel;

    CImportFormatDlg formatDialog(m_formatLevel);
    if (formatDialog.DoModal() != kButtonOk) return 0;
    int formatCode = formatDialog.FormatCode();
    if (formatCode == -1) {
        ShowMessage("File type is undefined");
        return 0;
    }
    ImportFormat const* const format = FindImportFormat(static_cast<ImportFormatCode>(formatCode));
    if (format == nullptr) {
        ShowMessage("The format cannot be read by this version : " + std::to_string(formatCode));
        return 0;
    }

    ImportJob job;
    job.store = m_store;
    job.owner = owner;
    if (BrowseForFile(job.inputPath, kOpenDialogFlags, FileDialogMode::ImportInput, formatCode) == 0) return 0;
    storePath = ProposedStorePath(job.inputPath, format->code);
    if (BrowseForFile(storePath, kSaveDialogFlags, FileDialogMode::ImportStore, formatCode) == 0) return 0;
    if (Conclude(RequireOtherFile(job.inputPath, storePath)) == 0) return 0;
    m_storeFileName = storePath;
    m_gravityMeterMode = format->code == ImportFormatCode::CG5 ? 1 : 0;
    job.storePath = m_storeFileName;
    job.gravityMeterMode = m_gravityMeterMode;

    if (!RunImport(*format, job)) return 0;
    KeepLastReport(std::move(job.report));
    return 1;
}

int CExpImpContext::ExportData(CNorvaFileUtil* store, std::string const& fileName, std::string& newStoreFileName,
                               CWindow* owner) {
    m_store = store;
    ExportJob job;
    job.store = m_store;
    job.outputPath = fileName;
    job.owner = owner;
    int typeCode = -1;
    if (BrowseForFile(job.outputPath, kSaveDialogFlags, FileDialogMode::ExportOutput, typeCode) == 0) return 0;
    newStoreFileName.clear();
    ExportType const* const type = FindExportType(static_cast<ExportTypeCode>(typeCode));
    if (type == nullptr || type->run == nullptr) {
        SetLastErrorText("Files with this extension cannot be written : " + job.outputPath);
        return 0;
    }
    Status const status = RunExport(*type, job);
    if (type->code == ExportTypeCode::Native) newStoreFileName = job.outputPath;
    if (!status) return 0;
    KeepLastReport(std::move(job.report));
    return 1;
}

}  // namespace norva
