#pragma once

#include "exchange/import_format.h"

namespace norva {

extern ImportFormat const kGpxFormat;

Status ImportGpxFile(ImportJob& job);
Status InspectGpxFile(std::string const& path, InspectionOptions const& options, Inspection& inspection);
Status DescribeGpxFile(DescribeJob const& job, FileDescription& description);
Status PreviewGpxFile(std::string const& path, TextPreview& preview);

}  // namespace norva
