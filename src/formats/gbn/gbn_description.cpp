#include "formats/gbn/gbn_format.h"

#include "exchange/result.h"
#include "formats/gbn/gbn_columns.h"
#include "formats/gbn/gbn_contents.h"
#include "platform/files.h"
#include "platform/last_error.h"
#include "store/value_rules.h"

namespace norva {

Status DescribeGbnFile(DescribeJob const& job, FileDescription& description) {
    CFile input;
    std::uint64_t length = 0;
    auto const fail = [&job](std::string const& reason) {
        return Status::Failure("Couldn't read the file", job.inputPath, reason);
    };
    if (!input.Open(job.inputPath, CFile::Mode::Read) || !input.Size(length)) {
        return fail(SystemErrorText(input.Error()));
    }
    GbnOpenFileSource source(input, length);
    GbnFile file(source);
    bool const isGbn = file.ReadSignature() == kGbnSignature;
    GbnContents contents;
    if (isGbn) ReadGbnContents(file, contents, GbnValues::Skip, [](int) {});
    if (file.Failed()) return fail(SystemErrorText(input.Error()));
    if (!isGbn) return fail("File is not Oasis Binary");

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

}  // namespace norva
