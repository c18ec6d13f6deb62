#pragma once

#include "exchange/export_type.h"
#include "exchange/import_format.h"

namespace norva {

/// Runs a format's importer and makes its report the thread's last one. Whatever fails is shown where it asks for a
/// message box, and the store is closed then, of which nothing remains.
Status RunImport(ImportFormat const& format, ImportJob& job);

/// Runs a type's exporter.
Status RunExport(ExportType const& type, ExportJob& job);

}  // namespace norva
