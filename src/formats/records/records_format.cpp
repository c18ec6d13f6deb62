#include "formats/records/records_format.h"

namespace norva {

namespace {

bool Sniff(FileStart const& /*start*/) {
    return true;
}

}  // namespace

ImportFormat const kBinaryRecordsFormat = {
    .code = ImportFormatCode::BinaryRecords,
    .label = "Binary XYZ",
    .filter = "Binary XYZ Files (*.*)|*.*||",
    .sniff = Sniff,
    .signs = "it is not text",
    .import = ImportBinaryFile,
    .describe = DescribeBinaryFile,
};

}  // namespace norva
