#include "formats/gpx/gpx_format.h"

#include "platform/text.h"

namespace norva {

namespace {

bool Sniff(FileStart const& start) {
    std::string const text = ReplaceAll(start.bytes, std::string_view("\0", 1), "");  // UTF-16 as well
    return Contains(text, "<gpx") || Contains(text, ":gpx ");
}

}  // namespace

ImportFormat const kGpxFormat = {
    .code = ImportFormatCode::Gpx,
    .label = "GPS Exchange Format(GPX)",
    .filter = "GPX file(*.gpx)|*.gpx||",
    .settings = SettingsKind::ColumnText,
    .sniff = Sniff,
    .signs = "it holds a gpx element",
    .import = ImportGpxFile,
    .describe = DescribeGpxFile,
    .preview = PreviewGpxFile,
    .inspect = InspectGpxFile,
};

}  // namespace norva
