#include "formats/records/records_format.h"

#include "exchange/result.h"
#include "formats/records/binary_record.h"
#include "platform/files.h"
#include "platform/last_error.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace norva {

namespace {

/// In the order of the read formats.
constexpr std::string_view kFormatNames[] = {"int32", "float", "double", "int16"};

}  // namespace

Status DescribeBinaryFile(DescribeJob const& job, FileDescription& description) {
    std::vector<DescribedField> const& record = job.settings.record;
    if (record.empty()) {
        description.problem = "A file of binary records does not say how they are laid out.";
        return {};
    }
    FileDescription::Table fields{"fields", {"name", "format", "units", "offset"}, {}};
    std::size_t size = 0;
    for (DescribedField const& field : record) {
        auto const* const format = std::ranges::find(kFormatNames, field.format);
        if (format == std::end(kFormatNames)) {
            SetLastErrorText("Field \"" + field.name + "\": there is no format \"" + field.format + "\"");
            return ResultOf(0);
        }
        fields.rows.push_back({field.name, field.format, field.units, static_cast<std::int64_t>(size)});
        size += ReadWidth(static_cast<int>(format - std::begin(kFormatNames)));
    }
    CFile file;
    std::uint64_t length = 0;
    if (!file.Open(job.inputPath, CFile::Mode::Read) || !file.Size(length)) {
        SetLastErrorText(FileErrorText("read", job.inputPath, file.Error()));
        return ResultOf(0);
    }
    description.AddCount("record bytes", size);
    description.AddCount("records", length / size);
    description.AddCount("bytes after the last record", length % size);
    if (length % size != 0) description.problem = "The file is not a whole number of such records.";
    description.tables = {std::move(fields)};
    return {};
}

}  // namespace norva
