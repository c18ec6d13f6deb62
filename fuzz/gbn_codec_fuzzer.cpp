#include "fuzz_folder.h"
#include "import_binary/gbn_contents.h"

#include <cstdlib>

using namespace norva;

/// Reads any bytes as a GBN file; aborts when what was read contradicts itself or holds more than the file has.
extern "C" int LLVMFuzzerTestOneInput(unsigned char const* data, std::size_t size) {
    GbnMemorySource source(fuzz::AsText(data, size));
    GbnFile file(source);
    file.ReadSignature();
    GbnContents contents;
    ReadGbnContents(file, contents, GbnValues::Keep, [](int percent) {
        if (percent < 0 || percent > 100) std::abort();
    });
    std::int64_t total = 0;
    for (GbnLineEntry const& line : contents.lines) total += line.locationCount;
    if (total != contents.locationCount || contents.values.size() != contents.channels.size()) std::abort();
    std::size_t held = 0;
    for (GbnChannelValues const& values : contents.values) {
        std::int64_t next = 0;
        for (GbnRun const& run : values.runs) {
            if (run.first < next || run.count < 1) std::abort();
            next = run.first + run.count;
            held += std::string(run.bytes, static_cast<std::size_t>(run.count) * GbnValueWidth(run.valueType)).size();
        }
        if (next > total) std::abort();
    }
    if (held > size) std::abort();
    return 0;
}
