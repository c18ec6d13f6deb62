#include "formats/records/binary_record.h"

#include "norva/values.h"
#include "store/value_rules.h"

#include <algorithm>
#include <iterator>

namespace norva {

namespace {

using Format = RecordChannel::Format;

struct FormatRow {
    Format format;
    std::size_t width;
    std::string_view name;
    std::string_view text;  ///< in the channel list
};

constexpr FormatRow kFormats[] = {
    {Format::None, 0, "", ""},
    {Format::Int32, 4, "int32", "32 INT SIGN"},
    {Format::Float, 4, "float", "32 FLOAT"},
    {Format::Double, 8, "double", "64 FLOAT"},
    {Format::Int16, 2, "int16", "16 INT SIGN"},
};

FormatRow const& RowOf(Format format) {
    auto const* const row = std::ranges::find(kFormats, format, &FormatRow::format);
    return row == std::end(kFormats) ? kFormats[0] : *row;
}

}  // namespace

std::string_view RecordFormatName(Format format) {
    return RowOf(format).name;
}

std::optional<Format> FindRecordFormat(std::string_view name) {
    auto const* const row = std::find_if(std::begin(kFormats) + 1, std::end(kFormats),
                                         [name](FormatRow const& each) { return each.name == name; });
    return row == std::end(kFormats) ? std::nullopt : std::optional(row->format);
}

std::size_t RecordFormatWidth(Format format) {
    return RowOf(format).width;
}

std::string_view ReadFormatText(Format format) {
    return RowOf(format).text;
}

void PutMissing(Format format, char* out) {
    switch (format) {
        case Format::Float:
            return StoreFloat(out, kNoDataFloat);
        case Format::Double:
            return StoreDouble(out, kNoDataDouble);
        default:
            std::fill_n(out, RecordFormatWidth(format), '\xFF');  // -1
    }
}

std::size_t RecordSize(std::vector<RecordChannel> const& channels) {
    std::size_t size = 0;
    for (RecordChannel const& channel : channels) size += RecordFormatWidth(channel.format);
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
