#include "formats/column_text/text_preview.h"

#include "formats/column_text/text_line.h"
#include "platform/last_error.h"
#include "platform/text.h"

namespace norva {

namespace {

/// Every column has settings and a temporary file: a text with millions of values in a line is taken for no table.
constexpr int kMostColumns = 32767;

}  // namespace

CDelimiters const& RowDelimiters(bool isCsv) {
    return isCsv ? kCsvRowDelimiters : kRowDelimiters;
}

Status OpenText(CLineReader& file, std::string const& path) {
    if (path.empty()) return Status::Failure("There is no file to open").Silent();
    if (!file.Open(path)) return Status::FileFailure("open", path, file.Error());
    if (!file.StartsWithUtf16Mark()) return {};
    file.Close();
    return Status::Failure("Couldn't read the file", path, "It is UTF-16 text; save it as UTF-8 or ASCII text first.");
}

TextPreview StartPreview(std::string const& path) {
    TextPreview preview;
    preview.path = path;
    preview.isCsv = ToUpper(path).ends_with("CSV");
    return preview;
}

void ReadPreviewLines(CLineReader& file, TextPreview& preview) {
    preview.lines.clear();
    file.Rewind();
    std::string_view line;
    std::uint64_t number = 0;
    while (preview.lines.size() < TextPreview::kMostLines && file.Next(line)) {
        ++number;
        std::size_t const last = line.find_last_not_of(" \t\n");
        if (last == std::string_view::npos) continue;
        preview.lines.push_back({std::string(line.substr(0, last + 1)), file.Offset(), number});
    }
}

Status CheckPreview(CLineReader const& file, TextPreview const& preview) {
    if (file.Error() != 0) return Status::FileFailure("read", preview.path, file.Error());
    if (preview.lines.empty()) return Status::Failure("There is no text in the file", preview.path);
    int row = 0;
    for (PreviewLine const& line : preview.lines) {
        ++row;
        CTokenCursor cursor(line.text, RowDelimiters(preview.isCsv));
        std::string_view token;
        int columns = 0;
        while (columns <= kMostColumns && cursor.Next(token)) ++columns;
        if (columns > kMostColumns) {
            return Status::Failure(
                "Couldn't read the file", preview.path,
                "Row " + std::to_string(row) + " has more than " + std::to_string(kMostColumns) + " columns.");
        }
    }
    return {};
}

Status PreviewTextFile(std::string const& path, TextPreview& preview) {
    preview = StartPreview(path);
    CLineReader file;
    if (Status status = OpenText(file, path); !status) return status;
    ReadPreviewLines(file, preview);
    return CheckPreview(file, preview);
}

std::uint64_t DataStart(TextPreview const& preview, int skip) {
    bool const skips = skip > 0 && static_cast<std::size_t>(skip) < preview.lines.size();
    return skips ? preview.lines[static_cast<std::size_t>(skip) - 1].offset : 0;
}

}  // namespace norva
