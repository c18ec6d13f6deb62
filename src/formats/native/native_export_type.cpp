#include "formats/native/native_export_type.h"

namespace norva {

ExportType const kNativeExport = {
    .code = ExportTypeCode::Native, .label = "Native file", .extensions = "NVT EET", .run = ExportNativeFile};

}  // namespace norva
