#include "formats/csv/csv_export_type.h"

namespace norva {

ExportType const kCsvExport = {.label = "CSV file", .extensions = "CSV", .run = ExportCsvFile};

}  // namespace norva
