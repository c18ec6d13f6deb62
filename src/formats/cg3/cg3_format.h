#pragma once

#include "exchange/import_format.h"

namespace norva {

extern ImportFormat const kCG3Format;

Status ImportCG3File(ImportJob& job);
Status DescribeCG3File(DescribeJob const& job, FileDescription& description);

}  // namespace norva
