#pragma once

#include "exchange/export_type.h"

namespace norva {

extern ExportType const kGbnExport;

Status ExportGbnFile(ExportJob& job);

}  // namespace norva
