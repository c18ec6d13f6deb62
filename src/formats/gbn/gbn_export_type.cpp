#include "formats/gbn/gbn_export_type.h"

namespace norva {

ExportType const kGbnExport = {
    .code = ExportTypeCode::Gbn, .label = "Geosoft GBN file", .extensions = "GBN", .run = ExportGbnFile};

}  // namespace norva
