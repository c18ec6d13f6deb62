#pragma once

#include "exchange/export_type.h"

namespace norva {

extern ExportType const kNativeExport;

Status ExportNativeFile(ExportJob& job);

}  // namespace norva
