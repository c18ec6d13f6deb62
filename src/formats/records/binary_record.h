#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// What a person says of a file of fixed-length binary records: its channels, its length in records, its lines.
namespace norva {

/// How a value stands in a record, little-endian. The numbers are kept in the channel rows.
namespace ReadFormat {
inline constexpr int kNone = -1;
inline constexpr int kInt32 = 0;
inline constexpr int kFloat = 1;
inline constexpr int kDouble = 2;
inline constexpr int kInt16 = 3;
}  // namespace ReadFormat

/// One channel of a record.
struct BinaryChannelDef {
    std::string name;
    std::string units;
    int dataType = 0;  ///< what it becomes in the store
    int arraySize = 1;
    std::string spare;  ///< carried along
    int readFormat = ReadFormat::kNone;
};

/// Bytes of a value in the record; 0 for kNone.
std::size_t ReadWidth(int readFormat);
/// As the channel list shows it; empty for kNone.
std::string_view ReadFormatText(int readFormat);
/// Writes the value, ReadWidth() bytes, that stands for one which the file does not hold any more.
void PutMissing(int readFormat, char* out);

std::size_t RecordSize(std::vector<BinaryChannelDef> const& channels);

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
