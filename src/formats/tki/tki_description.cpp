#include "formats/tki/tki_format.h"

#include "exchange/result.h"
#include "norva/import_export.h"
#include "norva/tki_file_read.h"
#include "platform/last_error.h"

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

    int Describe(std::string const& path, FileDescription& description) {
        if (GetTkiDataChannels() == 0) {
            if (GetLastErrorText().empty()) {
                SetLastErrorText("Couldn't read the file : " + path +
                                 "\nThe header holds no channel between BEGIN and END.");
            }
            return 0;
        }
        int const locations = GetMaxInterpRecords();
        if (locations == 0) return 0;
        FileDescription::Table channels{
            "channels", {"name", "samples", "type", "scale", "offset", "units", "more"}, {}};
        for (TkiChannelDesc const& channel : Channels()) {
            channels.rows.push_back({channel.name, std::int64_t{channel.count}, channel.type, AsWritten(channel.scale),
                                     AsWritten(channel.offset), channel.units, channel.rest});
        }
        description.tables.push_back(std::move(channels));
        description.AddCount("record bytes", RecordLength());
        description.AddFact("locations of a record", std::int64_t{locations});
        if (GetProfiles() == 0) {
            if (!GetLastErrorText().empty()) return 0;
            description.problem = "There is no record behind the end mark of the header, or no end mark.";
            return 1;
        }
        description.AddCount("header bytes", HeaderLength());
        description.AddCount("records", RecordCount());
        FileDescription::Table lines{"lines", {"name", "locations"}, {}};
        for (TkiProfile const& profile : Profiles()) {
            lines.rows.push_back({profile.name, static_cast<std::int64_t>(profile.locations)});
        }
        description.tables.push_back(std::move(lines));
        return 1;
    }
};

}  // namespace

Status DescribeTkiFile(DescribeJob const& job, FileDescription& description) {
    return ResultOf(CTkiDescriber(job.inputPath, {}).Describe(job.inputPath, description));
}

}  // namespace norva
