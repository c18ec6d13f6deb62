#pragma once

#include "exchange/export_type.h"

namespace norva {

extern ExportType const kWorksheetExport;

Status ExportWorksheet(ExportJob& job);

}  // namespace norva
