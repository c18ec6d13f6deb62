#pragma once

#include "exchange/import_format.h"

namespace norva {

extern ImportFormat const kGbnFormat;

Status ImportGbnFile(ImportJob& job);
Status DescribeGbnFile(DescribeJob const& job, FileDescription& description);

}  // namespace norva
