#pragma once

#include "exchange/import_format.h"

namespace norva {

extern ImportFormat const kBinaryRecordsFormat;

Status ImportBinaryFile(ImportJob& job);
Status DescribeBinaryFile(DescribeJob const& job, FileDescription& description);

}  // namespace norva
