#include "formats/seaspy/sea_spy_format.h"

#include "platform/text.h"

#include <algorithm>

namespace norva {

namespace {

bool Sniff(FileStart const& start) {
    auto const record =
        std::ranges::find_if(start.lines, [](std::string const& line) { return line.starts_with('*'); });
    return record != start.lines.end() && Contains(*record, "F[") && Contains(*record, "R[");
}

}  // namespace

ImportFormat const kSeaSpyFormat = {
    .code = ImportFormatCode::SeaSpy,
    .label = "SeaSPY(Marine Magnetics)",
    .filter = "SeaSPY Files (*.mag)|*.mag|All Files (*.*)|*.*||",
    .sniff = Sniff,
    .signs = "its first record holds F[ and R[",
    .import = ImportSeaSpyFile,
    .describe = DescribeSeaSpyFile,
    .preview = PreviewSeaSpyFile,
};

}  // namespace norva
