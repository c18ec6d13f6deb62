#pragma once

#include "exchange/export_type.h"

namespace norva {

extern ExportType const kXyzExport;

Status ExportXyzFile(ExportJob& job);

}  // namespace norva
