#pragma once

#include "exchange/export_type.h"

namespace norva {

/// Stands beside the fixed types: ExportStore writes it, Export_Data_File does not know it.
extern ExportType const kCsvExport;

Status ExportCsvFile(ExportJob& job);

}  // namespace norva
