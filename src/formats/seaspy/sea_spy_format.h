#pragma once

#include "exchange/import_format.h"

namespace norva {

extern ImportFormat const kSeaSpyFormat;

Status ImportSeaSpyFile(ImportJob& job);
Status DescribeSeaSpyFile(DescribeJob const& job, FileDescription& description);
Status PreviewSeaSpyFile(std::string const& path, TextPreview& preview);

}  // namespace norva
