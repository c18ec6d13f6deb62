#pragma once

#include "exchange/import_format.h"

namespace norva {

extern ImportFormat const kIpr12Format;

Status ImportIpr12File(ImportJob& job);
Status InspectIpr12File(std::string const& path, InspectionOptions const& options, Inspection& inspection);
Status DescribeIpr12File(DescribeJob const& job, FileDescription& description);
Status PreviewIpr12File(std::string const& path, TextPreview& preview);

}  // namespace norva
