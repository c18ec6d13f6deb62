#include "formats/column_text/column_text_format.h"

#include "exchange/result.h"
#include "formats/column_text/ascii_file_import.h"
#include "formats/column_text/ascii_import_dlg.h"
#include "platform/text.h"
#include "store/value_rules.h"

#include <algorithm>

namespace norva {

namespace {

/// Preview lines that show what the file begins with.
constexpr std::size_t kShownLines = 5;
constexpr std::size_t kShownCharacters = 100;

}  // namespace

FileDescription::Table CAsciiFileImport::DescribeColumns(CAsciiImportDlg& dialog) {
    PrepareDialog(dialog);
    dialog.Open();
    dialog.Abandon();
    FileDescription::Table table{"columns", {"name", "type"}, {}};
    for (NorvaChannelStruct& column : m_columns) {
        // A column that turned out to hold numbers below its texts has the width of these still.
        if (column.dataType != DataType::kText) column.arraySize = 1;
        table.rows.push_back({column.name, ValueTypeText(column)});
    }
    return table;
}

int CAsciiFileImport::Describe(FileDescription& description) {
    FileDescription::Table start{"first lines", {"number", "text"}, {}};
    for (std::size_t i = 0; i < std::min(m_preview.size(), kShownLines); ++i) {
        start.rows.push_back({static_cast<std::int64_t>(i + 1), m_preview[i].text.substr(0, kShownCharacters)});
    }
    CAsciiImportDlg dialog;
    FileDescription::Table columns = DescribeColumns(dialog);
    SetSkipCount(dialog.SkipCount());
    GetProfilesByMarker();
    if (m_file.Error() != 0) {
        ShowReadError();
        return 0;
    }
    std::int64_t rows = 0;
    FileDescription::Table lines{"lines", {"name", "rows"}, {}};
    for (ProfileRecord const& profile : m_profiles) {
        lines.rows.push_back({profile.name, std::int64_t{profile.rowCount}});
        rows += profile.rowCount;
    }
    description.AddFact("rows", rows);
    description.tables = {std::move(start), std::move(columns), std::move(lines)};
    return 1;
}

Status DescribeTextFile(DescribeJob const& job, FileDescription& description) {
    CAsciiFileImport importer;
    importer.SetCsv(ToUpper(job.inputPath).ends_with("CSV") ? 1 : 0);
    return ResultOf(importer.LoadFileInfo(job.inputPath) != 0 ? importer.Describe(description) : 0);
}

}  // namespace norva
