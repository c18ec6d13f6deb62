#pragma once

#include "exchange/export_type.h"
#include "exchange/import_format.h"

namespace norva {

/// Runs a format's importer and completes its report. Whatever fails is shown where it asks for a message box, and the
/// store is closed then, of which nothing remains.
Status RunImport(ImportFormat const& format, ImportJob& job);

/// Good unless the store would take the place of the file that is imported. To be asked before anything is opened.
Status RequireOtherFile(std::string const& inputPath, std::string const& storePath);

/// Runs a type's exporter.
Status RunExport(ExportType const& type, ExportJob& job);

}  // namespace norva
