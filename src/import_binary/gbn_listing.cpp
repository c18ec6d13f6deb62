#include "norva/gbn_listing.h"

#include "import_binary/gbn_columns.h"
#include "import_binary/gbn_contents.h"
#include "platform/last_error.h"

namespace norva {

int ListGbnFile(std::string const& path, GbnListing& listing) {
    listing = {};
    CFile input;
    std::uint64_t length = 0;
    auto const fail = [&path](std::string const& reason) {
        SetLastErrorText("Couldn't read the file : " + path + "\n" + reason);
        return 0;
    };
    ClearLastErrorText();
    if (!input.Open(path, CFile::Mode::Read) || !input.Size(length)) return fail(SystemErrorText(input.Error()));
    GbnOpenFileSource source(input, length);
    GbnFile file(source);
    bool const isGbn = file.ReadSignature() == kGbnSignature;
    GbnContents contents;
    if (isGbn) ReadGbnContents(file, contents, GbnValues::Skip, [](int) {});
    if (file.Failed()) return fail(SystemErrorText(input.Error()));
    if (!isGbn) return fail("File is not Oasis Binary");
    for (GbnChannelEntry const& entry : contents.channels) listing.channels.push_back(DescribedGbnChannel(entry));
    for (GbnLineEntry const& line : contents.lines) {
        listing.lines.push_back({line.name, static_cast<long>(line.locationCount)});
    }
    listing.problem = contents.problem;
    return 1;
}

}  // namespace norva
