#include "formats/records/records_format.h"

#include "formats/records/binary_record.h"
#include "platform/files.h"

#include <optional>

namespace norva {

Status DescribeBinaryFile(DescribeJob const& job, FileDescription& description) {
    std::vector<DescribedField> const& record = job.settings.record;
    if (record.empty()) {
        description.problem = "A file of binary records does not say how they are laid out.";
        return {};
    }
    FileDescription::Table fields{"fields", {"name", "format", "units", "offset"}, {}};
    std::size_t size = 0;
    for (DescribedField const& field : record) {
        std::optional<RecordChannel::Format> const format = FindRecordFormat(field.format);
        if (!format) {
            return Status::Failure("Field \"" + field.name + "\": there is no format \"" + field.format + "\"");
        }
        fields.rows.push_back({field.name, field.format, field.units, static_cast<std::int64_t>(size)});
        size += RecordFormatWidth(*format);
    }
    CFile file;
    std::uint64_t length = 0;
    if (!file.Open(job.inputPath, CFile::Mode::Read) || !file.Size(length)) {
        return Status::FileFailure("read", job.inputPath, file.Error());
    }
    description.AddCount("record bytes", size);
    description.AddCount("records", length / size);
    description.AddCount("bytes after the last record", length % size);
    if (length % size != 0) description.problem = "The file is not a whole number of such records.";
    description.tables = {std::move(fields)};
    return {};
}

}  // namespace norva
