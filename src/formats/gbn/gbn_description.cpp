#include "formats/gbn/gbn_format.h"

#include "formats/gbn/gbn_columns.h"
#include "formats/gbn/gbn_contents.h"
#include "norva/contents.h"
#include "platform/files.h"
#include "store/value_rules.h"

#include <utility>

namespace norva {

namespace {

/// All but the values.
Status ReadGbnContents(std::string const& path, GbnContents& contents) {
    CFile input;
    std::uint64_t length = 0;
    if (!input.Open(path, CFile::Mode::Read) || !input.Size(length)) {
        return Status::FileFailure("read", path, input.Error());
    }
    GbnOpenFileSource source(input, length);
    GbnFile file(source);
    bool const isGbn = file.ReadSignature() == kGbnSignature;
    if (isGbn) ReadGbnContents(file, contents, GbnValues::Skip, [](int) {});
    if (file.Failed()) return Status::FileFailure("read", path, input.Error());
    return isGbn ? Status() : Status::Failure("Couldn't read the file", path, "File is not Oasis Binary");
}

}  // namespace

Status DescribeGbnFile(DescribeJob const& job, FileDescription& description) {
    GbnContents contents;
    if (Status status = ReadGbnContents(job.inputPath, contents); !status) return status;
    description.AddFact("locations", contents.locationCount);
    if (contents.blocksBeforeLines > 0) description.AddFact("data blocks before the lines", contents.blocksBeforeLines);
    FileDescription::Table channels{"channels", {"name", "type", "units"}, {}};
    for (GbnChannelEntry const& entry : contents.channels) {
        NorvaChannelStruct const channel = DescribedGbnChannel(entry);
        channels.rows.push_back({channel.name, ValueTypeText(channel), channel.units});
    }
    FileDescription::Table lines{"lines", {"name", "locations"}, {}};
    for (GbnLineEntry const& line : contents.lines) lines.rows.push_back({line.name, line.locationCount});
    description.tables = {std::move(channels), std::move(lines)};
    description.problem = contents.problem;
    return {};
}

Status ListGbnFile(std::string const& path, GbnListing& listing) {
    listing = {};
    GbnContents contents;
    if (Status status = ReadGbnContents(path, contents); !status) return status;
    for (GbnChannelEntry const& entry : contents.channels) listing.channels.push_back(DescribedGbnChannel(entry));
    for (GbnLineEntry& line : contents.lines) listing.lines.push_back({std::move(line.name), line.locationCount});
    listing.problem = std::move(contents.problem);
    return {};
}

}  // namespace norva
