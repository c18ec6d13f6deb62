#include "formats/tki/tki_format.h"

namespace norva {

namespace {

bool Sniff(FileStart const& start) {
    std::size_t const end = start.bytes.find('\x1A');
    if (end == std::string::npos) return false;
    std::string_view const header = std::string_view(start.bytes).substr(0, end);
    std::size_t const begin = header.find("BEGIN");
    return begin != std::string_view::npos && header.find("END", begin + 5) != std::string_view::npos;
}

}  // namespace

ImportFormat const kTkiFormat = {
    .code = ImportFormatCode::Tki,
    .label = "Tarko",
    .filter = "TKI files (*.p*)|*.p*|All Files (*.*)|*.*||",
    .lowestLevel = 1,
    .sniff = Sniff,
    .signs = "its header holds BEGIN, END and the end mark",
    .import = ImportTkiFile,
    .describe = DescribeTkiFile,
};

}  // namespace norva
