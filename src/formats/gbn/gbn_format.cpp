#include "formats/gbn/gbn_format.h"

namespace norva {

namespace {

bool Sniff(FileStart const& start) {
    return start.bytes.starts_with("OASIS BINARY DATA");
}

}  // namespace

ImportFormat const kGbnFormat = {
    .code = ImportFormatCode::Gbn,
    .label = "Geosoft GBN",
    .filter = "Geosoft GBN files (*.gbn)|*.gbn*||",
    .sniff = Sniff,
    .signs = "it begins with the GBN signature",
    .import = ImportGbnFile,
    .describe = DescribeGbnFile,
};

}  // namespace norva
