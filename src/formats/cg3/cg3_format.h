#pragma once

#include "exchange/import_format.h"

namespace norva {

extern ImportFormat const kCG3Format;

Status ImportCG3File(ImportJob& job);
/// The settings with the date format that the dates of all blocks fit.
Status ProposeCg3Settings(std::string const& path, ImportSettings& proposed);
Status DescribeCG3File(DescribeJob const& job, FileDescription& description);

}  // namespace norva
