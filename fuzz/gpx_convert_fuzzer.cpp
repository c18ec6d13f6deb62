#include "fuzz_folder.h"
#include "import_text/gpx_converter.h"
#include "norva/converters.h"

#include <cstdlib>

using namespace norva;

namespace {

std::vector<std::string> Lines(std::string const& path, std::size_t bufferSize) {
    CGpxLayout layout(bufferSize);
    if (!layout.Open(path)) std::abort();
    std::vector<std::string> lines;
    std::string_view line;
    while (layout.Next(line)) lines.emplace_back(line);
    return lines;
}

}  // namespace

/// Lays any bytes out and converts them: how the text falls into the buffer makes no difference, and every row that is
/// written holds five values.
extern "C" int LLVMFuzzerTestOneInput(unsigned char const* data, std::size_t size) {
    test::CTemporaryFolder& folder = fuzz::Folder();
    std::string const path = folder / "in.gpx";
    test::WriteWholeFile(path, fuzz::AsText(data, size));
    Lines(path, 0);
    // Only text longer than the buffer is cut, and laid out text is up to five times as long as the file.
    if (Lines(path, 5 * size + 80) != Lines(path, 6 * size + 90)) std::abort();

    if (CGpxConverter().ConvertToXYZ(path, folder / "out.xyz") == 0) return 0;
    std::string const output = test::ReadWholeFile(folder / "out.xyz");
    std::vector<std::string_view> lines, values;
    GetTokens(output, lines, "\n");
    for (std::size_t i = 2; i < lines.size(); ++i) {
        if (lines[i].starts_with("Line  ")) continue;
        GetTokens(lines[i], values, " ,\t\r\v\f");
        if (values.size() != 5) std::abort();
    }
    return 0;
}
