#pragma once

#include "exchange/import_format.h"

namespace norva {

extern ImportFormat const kSeaSpyFormat;

Status ImportSeaSpyFile(ImportJob& job);
Status DescribeSeaSpyFile(DescribeJob const& job, FileDescription& description);

}  // namespace norva
