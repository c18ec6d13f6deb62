#include "formats/column_text/column_text_format.h"

#include "formats/column_text/text_preview.h"
#include "platform/text.h"

#include <algorithm>

namespace norva {

namespace {

bool SniffCG5(FileStart const& start) {
    return std::ranges::any_of(start.lines, [](std::string const& line) {
        return line.starts_with('/') && (Contains(line, "CG-5") || Contains(line, "CG5"));
    });
}

Status PreviewCG5(std::string const& path, TextPreview& preview) {
    Status status = PreviewTextFile(path, preview);
    preview.readsHyphens = true;
    return status;
}

}  // namespace

ImportFormat const kAsciiXyzFormat = {
    .code = ImportFormatCode::AsciiXyz,
    .label = "ASCII XYZ",
    .filter = "ASCII Files (*.asc; *.xyz; *.dat; *.txt)|*.asc;*.xyz;*.dat;*.txt|All Files (*.*)|*.*||",
    .settings = SettingsKind::ColumnText,
    .sniff = [](FileStart const& start) { return !start.IsBinary(); },
    .signs = "it is text",
    .import = ImportTextFile,
    .describe = DescribeTextFile,
    .preview = PreviewTextFile,
    .inspect = InspectTextFile,
};

ImportFormat const kAsciiCsvFormat = {
    .code = ImportFormatCode::AsciiCsv,
    .label = "ASCII CSV",
    .filter = "CSV files (*.csv)|*.csv|All Files (*.*)|*.*||",
    .settings = SettingsKind::ColumnText,
    .sniff = [](FileStart const& start) { return !start.IsBinary() && start.extension == "CSV"; },
    .signs = "it is text and named .csv",
    .import = ImportTextFile,
    .describe = DescribeTextFile,
    .preview = PreviewTextFile,
    .inspect = InspectTextFile,
};

ImportFormat const kAsciiGemFormat = {
    .code = ImportFormatCode::AsciiGem,
    .label = "ASCII GEM",
    .filter = "ASCII Files (*.txt; *stn)|*.txt; *.stn|All Files (*.*)|*.*||",
    .settings = SettingsKind::ColumnText,
    .sniff = [](FileStart const& start) { return !start.IsBinary() && start.extension == "STN"; },
    .signs = "it is text and named .stn",
    .import = ImportTextFile,
    .describe = DescribeTextFile,
    .preview = PreviewTextFile,
    .inspect = InspectTextFile,
};

ImportFormat const kCG5Format = {
    .code = ImportFormatCode::CG5,
    .label = "Scintrex CG5",
    .filter = "Scintrex CG5 dump (*.dmp; *.raw)|*.dmp;*.raw||",
    .settings = SettingsKind::ColumnText,
    .sniff = SniffCG5,
    .signs = "its head names a CG-5",
    .import = ImportTextFile,
    .describe = DescribeTextFile,
    .preview = PreviewCG5,
    .inspect = InspectTextFile,
};

}  // namespace norva
