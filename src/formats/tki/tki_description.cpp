#include "formats/tki/tki_format.h"

#include "norva/tki_file_read.h"

#include <charconv>

namespace norva {

namespace {

/// The double that reads as the float does: 0.1, not 0.10000000149.
double AsWritten(float number) {
    char text[32];
    auto const end = std::to_chars(std::begin(text), std::end(text), number).ptr;
    double value = 0;
    std::from_chars(text, end, value);
    return value;
}

/// Looks at a file without a store to write to.
class CTkiDescriber : public CTkiFileRead {
public:
    using CTkiFileRead::CTkiFileRead;

    Status Describe(FileDescription& description) {
        if (Status status = ReadDescriptors(); !status) return status;
        if (Status status = FindInterpolation(); !status) return status;
        int const locations = Interpolation();
        FileDescription::Table channels{
            "channels", {"name", "samples", "type", "scale", "offset", "units", "more"}, {}};
        for (TkiChannelDesc const& channel : Channels()) {
            channels.rows.push_back({channel.name, std::int64_t{channel.count}, channel.type, AsWritten(channel.scale),
                                     AsWritten(channel.offset), channel.units, channel.rest});
        }
        description.tables.push_back(std::move(channels));
        description.AddCount("record bytes", RecordLength());
        description.AddFact("locations of a record", std::int64_t{locations});
        if (Status status = FindProfiles(); !status) {
            // Without records the header still tells what they would be.
            if (!HasNoRecords()) return status;
            description.problem = "There is no record behind the end mark of the header, or no end mark.";
            return {};
        }
        description.AddCount("header bytes", HeaderLength());
        description.AddCount("records", RecordCount());
        FileDescription::Table lines{"lines", {"name", "locations"}, {}};
        for (TkiProfile const& profile : Profiles()) {
            lines.rows.push_back({profile.name, static_cast<std::int64_t>(profile.locations)});
        }
        description.tables.push_back(std::move(lines));
        return {};
    }
};

}  // namespace

Status DescribeTkiFile(DescribeJob const& job, FileDescription& description) {
    return CTkiDescriber(job.inputPath, {}).Describe(description);
}

}  // namespace norva
