#include "formats/ipr12/ipr12_format.h"

#include "platform/text.h"

namespace norva {

namespace {

std::string_view FirstToken(std::string const& line) {
    std::string_view const text = Trim(line);
    return text.substr(0, text.find_first_of(" \t,"));
}

bool Sniff(FileStart const& start) {
    bool station = false;
    for (std::string const& line : start.lines) {
        std::string_view const first = FirstToken(line);
        if (Contains(first, "STATION")) station = true;
        if (station && Contains(first, "D:")) return true;
    }
    return false;
}

}  // namespace

ImportFormat const kIpr12Format = {
    .code = ImportFormatCode::Ipr12,
    .label = "Scintrex IPR_12",
    .filter = "Scintrex IPR dump (*.dmp; *.raw; *.IGS)|*.dmp;*.raw;*.IGS||",
    .settings = SettingsKind::ColumnText,
    .sniff = Sniff,
    .signs = "it holds a Station line and a D: line",
    .import = ImportIpr12File,
    .describe = DescribeIpr12File,
    .preview = PreviewIpr12File,
    .inspect = InspectIpr12File,
};

}  // namespace norva
