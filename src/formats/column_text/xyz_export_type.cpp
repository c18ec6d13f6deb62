#include "formats/column_text/xyz_export_type.h"

namespace norva {

ExportType const kXyzExport = {
    .code = ExportTypeCode::Xyz, .label = "XYZ ASCII file", .extensions = "XYZ ASC DAT DMP TXT", .run = ExportXyzFile};

}  // namespace norva
