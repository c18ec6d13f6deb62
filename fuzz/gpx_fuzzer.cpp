#include "formats/gpx/gpx_converter.h"
#include "formats/gpx/gpx_format.h"
#include "formats/gpx/gpx_layout.h"
#include "formats/gpx/gpx_table.h"
#include "harness.h"
#include "norva/converters.h"
#include "norva/inspection.h"

using namespace norva;

namespace {

std::vector<std::string> Lines(std::string const& path, std::size_t bufferSize) {
    CGpxLayout layout(bufferSize);
    if (!layout.Open(path)) fuzz::Broken("a GPX file does not open");
    std::vector<std::string> lines;
    std::string_view line;
    while (layout.Next(line)) lines.emplace_back(line);
    return lines;
}

}  // namespace

NORVA_FUZZ_TARGET(gpx) {
    if (fuzz::Import({.format = kGpxFormat, .fileName = "in.gpx"}, bytes)) fuzz::CleanUp({fuzz::kStoreName});
}

/// A proposal has a row for every point that the table has, or says why there is none.
NORVA_FUZZ_TARGET(gpx_table) {
    std::string const path = fuzz::Folder() / "in.gpx";
    test::WriteWholeFile(path, bytes);
    ConvertedSource source;
    bool const isMade = ConvertBy<CGpxTable>(path, fuzz::Folder() / "table.csv", source).IsGood();
    Inspection found;
    Status const status = InspectFile(path, std::string(kGpxFormat.label), {}, found);
    if (status.IsGood() != isMade) fuzz::Broken("a proposal for what becomes a table");
    if (!status && status.Text().empty()) fuzz::Broken("a refusal in silence");
    if (isMade && found.counts.rows != source.rows) fuzz::Broken("a row for every point");
    fuzz::CleanUp({"in.gpx", "table.csv"});
}

/// How the text falls into the buffer makes no difference, and every row that is written holds five values.
NORVA_FUZZ_TARGET(gpx_convert) {
    std::string const path = fuzz::Folder() / "in.gpx";
    test::WriteWholeFile(path, bytes);
    Lines(path, 0);
    // Only text longer than the buffer is cut, and laid out text is up to five times as long as the file.
    if (Lines(path, 5 * bytes.size() + 80) != Lines(path, 6 * bytes.size() + 90)) fuzz::Broken("buffers differ");

    if (!CGpxConverter().ConvertToXYZ(path, fuzz::Folder() / "out.xyz")) return fuzz::CleanUp({"in.gpx", "out.xyz"});
    std::string const output = test::ReadWholeFile("out.xyz");
    std::vector<std::string_view> lines, values;
    GetTokens(output, lines, "\n");
    for (std::size_t i = 2; i < lines.size(); ++i) {
        if (lines[i].starts_with("Line  ")) continue;
        GetTokens(lines[i], values, " ,\t\r\v\f");
        if (values.size() != 5) fuzz::Broken("a row of five values");
    }
    fuzz::CleanUp({"in.gpx", "out.xyz"});
}
