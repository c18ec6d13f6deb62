#pragma once

#include "exchange/import_format.h"

namespace norva {

extern ImportFormat const kIpr12Format;

Status ImportIpr12File(ImportJob& job);
Status DescribeIpr12File(DescribeJob const& job, FileDescription& description);
Status PreviewIpr12File(std::string const& path, TextPreview& preview);

}  // namespace norva
