#pragma once

#include "norva/contents.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

/// What is said of a file of fixed-length binary records: its channels, its length in records, its lines.
namespace norva {

/// As the channel list shows it; empty for None.
std::string_view ReadFormatText(RecordChannel::Format format);
/// Writes the value, RecordFormatWidth() bytes, that stands for one which the file does not hold any more.
void PutMissing(RecordChannel::Format format, char* out);

std::size_t RecordSize(std::vector<RecordChannel> const& channels);

/// Records of a file, a partial last one included.
struct RecordCount {
    std::int64_t records = 0;
    bool fits = true;  ///< the file is a whole number of records
};
RecordCount CountRecords(std::uint64_t fileLength, std::size_t recordSize);

/// Lines of `pointsPerLine` (at least 1) records each but for a shorter last one.
std::int64_t CountLines(std::int64_t records, std::int64_t pointsPerLine);
/// Records of a line, counted from 0.
std::int64_t LineLength(std::int64_t records, std::int64_t pointsPerLine, std::int64_t line);

}  // namespace norva
