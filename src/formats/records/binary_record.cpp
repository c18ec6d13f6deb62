#include "formats/records/binary_record.h"

#include "norva/values.h"
#include "store/value_rules.h"

#include <algorithm>

namespace norva {

namespace {

struct FormatRow {
    std::size_t width;
    std::string_view text;
};

/// In the order of the codes.
constexpr FormatRow kFormats[] = {
    {4, "32 INT SIGN"},
    {4, "32 FLOAT"},
    {8, "64 FLOAT"},
    {2, "16 INT SIGN"},
};

FormatRow const* FindFormat(int readFormat) {
    bool const known = readFormat >= 0 && readFormat < static_cast<int>(std::size(kFormats));
    return known ? &kFormats[readFormat] : nullptr;
}

}  // namespace

std::size_t ReadWidth(int readFormat) {
    FormatRow const* format = FindFormat(readFormat);
    return format == nullptr ? 0 : format->width;
}

std::string_view ReadFormatText(int readFormat) {
    FormatRow const* format = FindFormat(readFormat);
    return format == nullptr ? std::string_view() : format->text;
}

void PutMissing(int readFormat, char* out) {
    switch (readFormat) {
        case ReadFormat::kFloat:
            return StoreFloat(out, kNoDataFloat);
        case ReadFormat::kDouble:
            return StoreDouble(out, kNoDataDouble);
        default:
            std::fill_n(out, ReadWidth(readFormat), '\xFF');  // -1
    }
}

std::size_t RecordSize(std::vector<BinaryChannelDef> const& channels) {
    std::size_t size = 0;
    for (BinaryChannelDef const& channel : channels) size += ReadWidth(channel.readFormat);
    return size;
}

RecordCount CountRecords(std::uint64_t fileLength, std::size_t recordSize) {
    if (recordSize == 0) return {};
    bool const fits = fileLength % recordSize == 0;
    return {static_cast<std::int64_t>(fileLength / recordSize) + (fits ? 0 : 1), fits};
}

std::int64_t CountLines(std::int64_t records, std::int64_t pointsPerLine) {
    return records / pointsPerLine + (records % pointsPerLine == 0 ? 0 : 1);
}

std::int64_t LineLength(std::int64_t records, std::int64_t pointsPerLine, std::int64_t line) {
    return std::min(pointsPerLine, records - line * pointsPerLine);
}

}  // namespace norva
