#include "formats/column_text/column_text_format.h"

#include "formats/column_text/profile_detection.h"
#include "formats/column_text/text_preview.h"

#include <algorithm>

namespace norva {

namespace {

/// Preview lines that show what the file begins with.
constexpr std::size_t kShownLines = 5;
constexpr std::size_t kShownCharacters = 100;

}  // namespace

FileDescription::Table DescribeColumns(ColumnTextSettings const& settings) {
    FileDescription::Table table{"columns", {"name", "type"}, {}};
    for (NorvaChannelStruct column : settings.columns) {
        // A column that turned out to hold numbers below its texts has the width of these still.
        if (column.dataType != DataType::kText) column.arraySize = 1;
        table.rows.push_back({column.name, ValueTypeText(column)});
    }
    return table;
}

Status DescribeTextFile(DescribeJob const& job, FileDescription& description) {
    TextPreview preview;
    if (Status status = PreviewTextFile(job.inputPath, preview); !status) return status;
    FileDescription::Table start{"first lines", {"number", "text"}, {}};
    for (std::size_t i = 0; i < std::min(preview.lines.size(), kShownLines); ++i) {
        start.rows.push_back(
            {static_cast<std::int64_t>(preview.lines[i].number), preview.lines[i].text.substr(0, kShownCharacters)});
    }
    ColumnTextSettings const settings = GuessColumnText(preview);
    CLineReader file;
    if (Status status = OpenText(file, job.inputPath); !status) return status;
    std::int64_t rows = 0;
    FileDescription::Table lines{"lines", {"name", "rows"}, {}};
    for (ReportLine const& profile : FindProfilesByMarker(file, DataStart(preview, settings.skip), nullptr)) {
        lines.rows.push_back({profile.name, static_cast<std::int64_t>(profile.locations)});
        rows += static_cast<std::int64_t>(profile.locations);
    }
    if (file.Error() != 0) return Status::FileFailure("read", job.inputPath, file.Error());
    description.AddFact("rows", rows);
    description.tables = {std::move(start), DescribeColumns(settings), std::move(lines)};
    return {};
}

}  // namespace norva
