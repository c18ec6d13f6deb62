#pragma once

#include "exchange/import_format.h"

namespace norva {

// The text formats differ in their filters, and CG-5 in how a header line is split.
extern ImportFormat const kAsciiXyzFormat;
extern ImportFormat const kAsciiCsvFormat;
extern ImportFormat const kAsciiGemFormat;
extern ImportFormat const kCG5Format;

Status ImportTextFile(ImportJob& job);
/// Shows why a text cannot be opened; the box leaves the system's reason to the last error.
Status ShowOpenFailure(Status status);
/// The columns of a description.
FileDescription::Table DescribeColumns(ColumnTextSettings const& settings);
Status DescribeTextFile(DescribeJob const& job, FileDescription& description);

}  // namespace norva
