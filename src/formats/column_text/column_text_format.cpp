#include "formats/column_text/column_text_format.h"

#include <algorithm>
#include "platform/text.h"

namespace norva {

namespace {

bool SniffCG5(FileStart const& start) {
    return std::ranges::any_of(start.lines, [](std::string const& line) {
        return line.starts_with('/') && (Contains(line, "CG-5") || Contains(line, "CG5"));
    });
}

}  // namespace

ImportFormat const kAsciiXyzFormat = {
    .code = ImportFormatCode::AsciiXyz,
    .label = "ASCII XYZ",
    .filter = "ASCII Files (*.asc; *.xyz; *.dat; *.txt)|*.asc;*.xyz;*.dat;*.txt|All Files (*.*)|*.*||",
    .sniff = [](FileStart const& start) { return !start.IsBinary(); },
    .signs = "it is text",
    .import = ImportTextFile,
    .describe = DescribeTextFile,
};

ImportFormat const kAsciiCsvFormat = {
    .code = ImportFormatCode::AsciiCsv,
    .label = "ASCII CSV",
    .filter = "CSV files (*.csv)|*.csv|All Files (*.*)|*.*||",
    .sniff = [](FileStart const& start) { return !start.IsBinary() && start.extension == "CSV"; },
    .signs = "it is text and named .csv",
    .import = ImportTextFile,
    .describe = DescribeTextFile,
};

ImportFormat const kAsciiGemFormat = {
    .code = ImportFormatCode::AsciiGem,
    .label = "ASCII GEM",
    .filter = "ASCII Files (*.txt; *stn)|*.txt; *.stn|All Files (*.*)|*.*||",
    .sniff = [](FileStart const& start) { return !start.IsBinary() && start.extension == "STN"; },
    .signs = "it is text and named .stn",
    .import = ImportTextFile,
    .describe = DescribeTextFile,
};

ImportFormat const kCG5Format = {
    .code = ImportFormatCode::CG5,
    .label = "Scintrex CG5",
    .filter = "Scintrex CG5 dump (*.dmp; *.raw)|*.dmp;*.raw||",
    .sniff = SniffCG5,
    .signs = "its head names a CG-5",
    .import = ImportTextFile,
    .describe = DescribeTextFile,
};

}  // namespace norva
