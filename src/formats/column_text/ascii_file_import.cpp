#include "formats/column_text/ascii_file_import.h"

#include "exchange/column_files.h"
#include "exchange/progress_dlg.h"
#include "exchange/result.h"
#include "formats/column_text/ascii_import_dlg.h"
#include "formats/column_text/column_text_format.h"
#include "formats/column_text/text_line.h"
#include "norva/import_export.h"
#include "platform/file_percent.h"
#include "platform/last_error.h"
#include "platform/paths.h"
#include "platform/text.h"
#include "ui/messages.h"

#include <algorithm>
#include <array>

namespace norva {

namespace {

/// A marker without a name that can be read may have been a row of data.
bool HoldsManyWords(std::string_view marker) {
    CTokenCursor cursor(marker, kRowDelimiters);
    std::string_view word;
    int count = 0;
    while (count < 3 && cursor.Next(word)) ++count;
    return count == 3;
}

constexpr int kPreviewLines = 40;
/// Every column has settings and a temporary file: a text with millions of values in a line is taken for no table.
constexpr int kMostColumns = 32767;

CDelimiters const& DelimitersFor(int csv) {
    return csv != 0 ? kCsvRowDelimiters : kRowDelimiters;
}

}  // namespace

int CAsciiFileImport::LoadFileInfo(std::string const& path) {
    m_path = path;
    if (OpenFile() == 0) return 0;
    {
        CProgressDlg window;
        window.Create();
        window.SetWindowTitle("Getting line information from the file");
        window.ShowFileName("Please wait a second");
        ReadPreviewLines();
    }
    return CheckPreview() ? 1 : 0;
}

int CAsciiFileImport::OpenFile() {
    if (m_path.empty()) {
        SetLastErrorText("There is no file to open");
        return 0;
    }
    if (!m_file.Open(m_path)) {
        std::string const message = "Couldn't open the file : " + m_path;
        SetLastErrorText(message + "\n" + SystemErrorText(m_file.Error()));
        ShowMessage(message);
        return 0;
    }
    if (m_file.StartsWithUtf16Mark()) {
        ShowMessage("Couldn't read the file : " + m_path +
                    "\nIt is UTF-16 text; save it as UTF-8 or ASCII text first.");
        CloseFile();
        return 0;
    }
    return 1;
}

void CAsciiFileImport::CloseFile() {
    m_file.Close();
}

void CAsciiFileImport::ReadPreviewLines() {
    m_preview.clear();
    m_file.Rewind();
    std::string_view line;
    while (m_preview.size() < kPreviewLines && m_file.Next(line)) {
        std::size_t const last = line.find_last_not_of(" \t\n");
        if (last == std::string_view::npos) continue;
        m_preview.push_back({std::string(line.substr(0, last + 1)), m_file.Offset()});
    }
}

/// Whether the preview can be shown; says why not.
bool CAsciiFileImport::CheckPreview() const {
    if (m_file.Error() != 0) {
        ShowReadError();
        return false;
    }
    if (m_preview.empty()) {
        ShowMessage("There is no text in the file : " + m_path);
        return false;
    }
    int row = 0;
    for (PreviewLine const& line : m_preview) {
        ++row;
        CTokenCursor cursor(line.text, DelimitersFor(m_csv));
        std::string_view token;
        int columns = 0;
        while (columns <= kMostColumns && cursor.Next(token)) ++columns;
        if (columns > kMostColumns) {
            ShowMessage("Couldn't read the file : " + m_path + "\nRow " + std::to_string(row) + " has more than " +
                        std::to_string(kMostColumns) + " columns.");
            return false;
        }
    }
    return true;
}

void CAsciiFileImport::ShowReadError() const {
    ShowMessage("Couldn't read the file : " + m_path + "\n" + SystemErrorText(m_file.Error()));
}

void CAsciiFileImport::SetSkipCount(int count) {
    bool const skips = count > 0 && static_cast<std::size_t>(count) < m_preview.size();
    m_dataStart = skips ? m_preview[static_cast<std::size_t>(count) - 1].offset : 0;
}

int CAsciiFileImport::ImportAsciiFile(CNorvaFileUtil* store) {
    CAsciiImportDlg dialog;
    PrepareDialog(dialog);
    if (dialog.DoModal() != kButtonOk) {
        CloseFile();
        return 0;
    }

    CProgressDlg window;
    window.Create();
    window.SetWindowTitle("Loading data from the file");
    window.ShowFileName("Please wait a second");

    SetSkipCount(dialog.SkipCount());
    m_labelColumn = dialog.LabelColumn();
    if (m_labelColumn >= 0) {
        GetProfilesByLabel(m_labelColumn);
    } else {
        GetProfilesByMarker();
    }
    if (m_file.Error() != 0) {
        ShowReadError();
        return 0;
    }
    if (m_profiles.empty()) {
        ShowMessage("There are no data rows in the file : " + m_path);
        return 0;
    }
    for (ProfileRecord const& profile : m_profiles) store->AddProfileToStructure(profile.name, profile.rowCount);
    DescribeChannels(*store);
    if (!StartWriting(window, *store)) return 0;

    CColumnFiles files;
    if (!CreateColumnFiles(files)) return 0;
    CProgressReporter progress(window);
    if (!ConvertRows(progress, files)) return 0;
    if (!HandOverColumns(progress, files, *store)) return 0;
    return FinishStore(*store);
}

void CAsciiFileImport::PrepareDialog(CAsciiImportDlg& dialog) {
    std::vector<std::string> lines;
    lines.reserve(m_preview.size());
    for (PreviewLine const& line : m_preview) lines.push_back(line.text);
    m_columns.clear();
    dialog.SetColumnSettings(&m_columns);
    dialog.SetPreviewLines(std::move(lines));
    dialog.SetCsv(m_csv);
    dialog.SetGravityMeterMode(m_gravityMeterMode);
    dialog.Prepare();
}

void CAsciiFileImport::DescribeChannels(CNorvaFileUtil& store) {
    for (NorvaChannelStruct& column : m_columns) {
        if (column.dataType == DataType::kSkipped) continue;
        if (column.dataType == DataType::kText) {
            column.recordType = 1;
        } else {
            column.arraySize = 1;
        }
        store.AddChannelToStructure(column);
    }
}

bool CAsciiFileImport::StartWriting(CProgressDlg& window, CNorvaFileUtil& store) const {
    window.SetWindowTitle("Import");
    window.ResetBars();
    window.ShowFileName(m_path);
    return store.SaveProfileStructure() != 0 && store.SaveChannelStructure() != 0 && store.StartWriteData() != 0;
}

bool CAsciiFileImport::CreateColumnFiles(CColumnFiles& files) const {
    std::string base(WithoutExtension(m_path));
    if (CUAC::IsVistaOrLater()) {
        std::string folder;
        if (CUAC::GetUserNorvaToolTempDirectory(folder) == 0) return false;
        base = folder + std::string(FileNameOf(base));
    }
    return files.Create(base, static_cast<int>(m_columns.size()), m_path);
}

bool CAsciiFileImport::ConvertRows(CProgressReporter& progress, CColumnFiles& files) {
    CRowReport report(m_columns);
    CRowConverter converter(m_columns, DelimitersFor(m_csv), CRowConverter::Source::Text, m_dateTime, m_geographic,
                            files, report);
    std::array<ReportPart, 4> parts{{{"empty", 0, 0}, {"comments", 0, 0}, {"markers", 0, 0}, {"data rows", 0, 0}}};
    std::size_t profile = 0;
    long rowsLeft = 0;

    std::uint64_t const skipped = CountSkippedLines();
    std::uint64_t number = skipped;
    CFilePercent percent(m_file.Length(), 100);
    std::string_view line;
    m_file.Seek(m_dataStart);
    for (std::uint64_t offset = m_dataStart; m_file.Next(line); offset = m_file.Offset()) {
        if (percent.Changed(m_file.Offset())) progress.FilePercent(percent.Value());
        std::string_view const whole = line;
        LineKind const kind = ClassifyLine(line);
        ReportPart& part = parts[static_cast<std::size_t>(kind)];
        ++number;
        ++part.count;
        part.bytes += m_file.Offset() - offset;
        if (kind == LineKind::Marker && GetLineName(line).empty() && HoldsManyWords(line)) {
            report.GoTo(whole, number);
            report.NoteRow(&ImportReport::doubtfulMarkers);
        }
        if (kind != LineKind::Data) continue;
        for (; rowsLeft == 0 && profile < m_profiles.size(); ++profile) {
            report.StartLine(m_profiles[profile].name, number);
            converter.StartLine();
            rowsLeft = m_profiles[profile].rowCount;
        }
        --rowsLeft;
        report.StartRow(whole, number);
        if (!converter.Row(line)) break;
    }
    if (!PassSucceeded(files)) return false;
    converter.Finish();
    for (ReportPart& part : parts) report.AddPart(std::move(part.name), part.count, part.bytes);
    report.AddPart("skipped at the top", skipped, m_dataStart);
    report.AddSetting("separators", m_csv != 0 ? "comma, tab" : "space, comma, tab");
    report.AddSetting("lines by", m_labelColumn < 0 ? "markers" : "column " + std::to_string(m_labelColumn + 1));
    report.Finish("lines", number, m_file.Offset(), m_file.Length());
    return true;
}

/// Lines that the pass over the data leaves out at the start of the file.
std::uint64_t CAsciiFileImport::CountSkippedLines() {
    std::uint64_t count = 0;
    std::string_view line;
    m_file.Rewind();
    while (m_file.Offset() < m_dataStart && m_file.Next(line)) ++count;
    return count;
}

bool CAsciiFileImport::PassSucceeded(CColumnFiles const& files) const {
    if (m_file.Error() != 0) {
        ShowReadError();
        return false;
    }
    if (files.Failed()) ShowMessage(GetLastErrorText());
    return !files.Failed();
}

bool CAsciiFileImport::HandOverColumns(CProgressReporter& progress, CColumnFiles& files, CNorvaFileUtil& store) const {
    progress.Window().SetWindowTitle("Writting down data to file");
    progress.Window().ShowFileName("Please wait a second");
    progress.Window().ResetBars();
    int const count = static_cast<int>(m_columns.size());
    for (int i = 0; i < count; ++i) {
        progress.ChannelPercent(i * 100LL / count);
        if (m_columns[static_cast<std::size_t>(i)].dataType == DataType::kSkipped) {
            files.Remove(i);
        } else if (!files.HandOver(i, store)) {
            std::string const reason = GetLastErrorText();
            ShowMessage(reason.empty() ? "Couldn't write the file : " + store.GetNorvaFileName() : reason);
            return false;
        }
    }
    return true;
}

int CAsciiFileImport::FinishStore(CNorvaFileUtil& store) {
    if (store.EndWriteData() == 0) return 0;
    store.CloseCurFile();
    CloseFile();
    return 1;
}

Status ImportTextFile(ImportJob& job) {
    CAsciiFileImport importer;
    importer.SetCsv(ToUpper(job.inputPath).ends_with("CSV") ? 1 : 0);
    importer.SetGravityMeterMode(job.gravityMeterMode);
    if (importer.LoadFileInfo(job.inputPath) == 0) return ResultOf(0);
    if (job.store->SetFileName(job.storePath, kCreateStore, job.owner) == 0) return ResultOf(0);
    return ResultOf(importer.ImportAsciiFile(job.store));
}

}  // namespace norva
