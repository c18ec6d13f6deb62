#include "formats/gbn/gbn_contents.h"
#include "target.h"

#include <string>

using namespace norva;

/// Aborts when what was read of a GBN file contradicts itself or holds more than the file has.
NORVA_FUZZ_TARGET(gbn_codec) {
    GbnMemorySource source(bytes);
    GbnFile file(source);
    file.ReadSignature();
    GbnContents contents;
    ReadGbnContents(file, contents, GbnValues::Keep, [](int percent) {
        if (percent < 0 || percent > 100) fuzz::Broken("a percentage");
    });
    std::int64_t total = 0;
    for (GbnLineEntry const& line : contents.lines) total += line.locationCount;
    if (total != contents.locationCount) fuzz::Broken("locations of the lines");
    if (contents.values.size() != contents.channels.size()) fuzz::Broken("values of every channel");
    std::size_t held = 0;
    for (GbnChannelValues const& values : contents.values) {
        std::int64_t next = 0;
        for (GbnRun const& run : values.runs) {
            if (run.first < next || run.count < 1) fuzz::Broken("runs in order");
            next = run.first + run.count;
            held += std::string(run.bytes, static_cast<std::size_t>(run.count) * GbnValueWidth(run.valueType)).size();
        }
        if (next > total) fuzz::Broken("a run past the last location");
    }
    if (held > bytes.size()) fuzz::Broken("more values than the file has bytes");
}
