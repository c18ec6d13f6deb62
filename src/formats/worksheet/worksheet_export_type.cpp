#include "formats/worksheet/worksheet_export_type.h"

namespace norva {

ExportType const kWorksheetExport = {
    .code = ExportTypeCode::Worksheet, .label = "Microsoft Excel file", .extensions = "XLS", .run = ExportWorksheet};

}  // namespace norva
