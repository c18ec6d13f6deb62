#pragma once

#include "exchange/import_format.h"

namespace norva {

extern ImportFormat const kTkiFormat;

Status ImportTkiFile(ImportJob& job);
Status DescribeTkiFile(DescribeJob const& job, FileDescription& description);

}  // namespace norva
