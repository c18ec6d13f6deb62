#include "formats/column_text/ascii_file_import.h"

#include "exchange/column_files.h"
#include "exchange/exception_guard.h"
#include "exchange/progress_dlg.h"
#include "formats/column_text/ascii_import_dlg.h"
#include "formats/column_text/column_store.h"
#include "formats/column_text/column_text_format.h"
#include "formats/column_text/proposed_import.h"
#include "formats/column_text/row_converter.h"
#include "formats/column_text/text_line.h"
#include "formats/column_text/text_preview.h"
#include "platform/file_percent.h"
#include "platform/text.h"
#include "ui/messages.h"

#include <algorithm>
#include <array>
#include <utility>

namespace norva {

namespace {

/// What a marker line may be in place of a marker.
enum class MarkerDoubt { None, Row, WrongName };

/// A marker that does not begin with "LINE", or has many words, may have been a row of data; one of as many words as
/// there are columns, without a digit in its name, may have been their titles.
MarkerDoubt DoubtOf(std::string_view marker, std::size_t columns) {
    CTokenCursor cursor(marker, kRowDelimiters);
    std::string_view first;
    std::string_view word;
    std::size_t words = cursor.Next(first) ? 1 : 0;
    while (words < 3 && cursor.Next(word)) ++words;
    std::string const name = GetLineName(marker);
    if (name.empty()) return words > 2 || !HoldsLineWord(first.substr(0, 4)) ? MarkerDoubt::Row : MarkerDoubt::None;
    bool const isTitle = words == columns && std::ranges::none_of(name, IsDigit);
    return isTitle || !HoldsLineWord(first.substr(0, 4)) ? MarkerDoubt::WrongName : MarkerDoubt::None;
}

/// Value of a column; empty when the line ends before.
std::string_view ValueAt(std::string_view line, int column, CDelimiters const& delimiters) {
    CTokenCursor cursor(line, delimiters);
    std::string_view value;
    for (int i = 0; i <= column; ++i) {
        if (!cursor.Next(value)) return {};
    }
    return Trim(value);
}

}  // namespace

Status ShowOpenFailure(Status status) {
    // The box leaves the system's reason out.
    bool const isUnopened = status.What() == "Couldn't open the file";
    if (!isUnopened) return Shown(std::move(status));
    std::string const text = status.What() + " : " + status.Path();
    return ShownAs(text, std::move(status));
}

CAsciiFileImport::CAsciiFileImport(ImportJob& job) : m_job(job) {}

Status CAsciiFileImport::Run(std::string const& textPath) {
    if (Status status = ReadHead(textPath); !status) return status;
    CColumnTextDraft draft(m_preview);
    if (Status status = TakeSettings(draft); !status) return status;
    if (Status status = CreateStore(m_job); !status) return status;
    if (m_job.asks && CAsciiImportDlg(draft).DoModal() != kButtonOk) return Status::Cancelled();
    m_settings = draft.Settings();

    CProgressWindow window("Loading data from the file");
    if (Status status = FindProfiles(window); !status) return Shown(std::move(status));
    for (ReportLine const& profile : m_profiles) {
        m_job.store->AddProfileToStructure(profile.name, static_cast<long>(profile.locations));
    }
    if (Status status = StartWriting(window, textPath, m_settings.columns, *m_job.store); !status) return status;
    CColumnFiles files;
    if (Status status = CreateColumnFiles(files, textPath, m_settings.columns.size()); !status) return status;
    if (Status status = ConvertRows(window, files); !status) return status;
    if (Status status = HandOverColumns(window, files, m_settings.columns, *m_job.store); !status) return status;
    m_file.Close();
    m_job.settings = std::move(m_settings);
    return {};
}

Status CAsciiFileImport::ReadHead(std::string const& textPath) {
    m_preview = StartPreview(textPath);
    m_preview.readsHyphens = m_job.gravityMeterMode != 0;
    if (Status status = OpenText(m_file, textPath); !status) return ShowOpenFailure(std::move(status));
    {
        CProgressWindow const window("Getting line information from the file");
        ReadPreviewLines(m_file, m_preview);
    }
    if (!m_job.asks) m_preview.path = m_job.inputPath;
    Status status = CheckPreview(m_file, m_preview);
    return Shown(std::move(status));
}

Status CAsciiFileImport::TakeSettings(CColumnTextDraft& draft) const {
    if (m_job.asks || std::holds_alternative<std::monostate>(m_job.settings)) return {};
    ColumnTextSettings const* const given = std::get_if<ColumnTextSettings>(&m_job.settings);
    if (given == nullptr) {
        return Status::Failure("The settings do not fit the file", m_job.inputPath,
                               "They are those of another format.");
    }
    return draft.SetSettings(*given);
}

Status CAsciiFileImport::FindProfiles(CProgressWindow& window) {
    CScanProgress progress(window.Dialog(), m_file.Length());
    m_dataStart = DataStart(m_preview, m_settings.skip);
    m_profiles = m_settings.labelColumn >= 0
                     ? FindProfilesByLabel(m_file, m_dataStart, m_settings.labelColumn, &progress)
                     : FindProfilesByMarker(m_file, m_dataStart, &progress);
    if (m_file.Error() != 0) return Status::FileFailure("read", m_preview.path, m_file.Error());
    if (m_profiles.empty()) return Status::Failure("There are no data rows in the file", m_preview.path);
    return {};
}

Status CAsciiFileImport::ConvertRows(CProgressWindow& window, CColumnFiles& files) {
    CRowReport report(m_settings.columns);
    CRowConverter converter(m_settings.columns, RowDelimiters(m_preview.isCsv), CRowConverter::Forms(), m_dateTime,
                            m_geographic, files, report);
    std::array<ReportPart, 4> parts{{{"empty", 0, 0}, {"comments", 0, 0}, {"markers", 0, 0}, {"data rows", 0, 0}}};
    std::uint64_t rowsLeft = 0;
    report.ExpectLines(std::move(m_profiles));

    std::uint64_t const skipped = ReadSkippedLines(converter, report);
    int const label = m_settings.labelColumn;
    bool const isCsvLabel = label >= 0 && m_preview.isCsv;
    std::uint64_t number = skipped;
    CFilePercent percent(m_file.Length(), 100);
    std::string_view line;
    m_file.Seek(m_dataStart);
    for (std::uint64_t offset = m_dataStart; m_file.Next(line); offset = m_file.Offset()) {
        if (percent.Changed(m_file.Offset())) window.Reporter().FilePercent(percent.Value());
        std::string_view const whole = line;
        LineKind const kind = ClassifyLine(line);
        ReportPart& part = parts[static_cast<std::size_t>(kind)];
        ++number;
        ++part.count;
        part.bytes += m_file.Offset() - offset;
        report.GoTo(whole, number);
        if (kind == LineKind::Marker) NoteMarker(line, report);
        if (kind != LineKind::Data) continue;
        while (rowsLeft == 0) {
            ReportLine const* const profile = report.StartNextLine(number);
            if (profile == nullptr) break;
            if (Contains(profile->name, "\"")) report.NoteRow(&ImportReport::doubtfulNames);
            rowsLeft = profile->locations;
            converter.StartLine();
        }
        --rowsLeft;
        report.CountRow();
        // Labels are read with blanks as separators even where values may hold them.
        if (isCsvLabel && Contains(line, " ") &&
            ValueAt(line, label, kRowDelimiters) != ValueAt(line, label, kCsvRowDelimiters)) {
            report.NoteRow(&ImportReport::doubtfulNames);
        }
        if (!converter.Row(line, whole.front() == '\t')) break;
    }
    if (Status status = PassStatus(m_file, files, m_preview.path); !status) return status;
    converter.Finish();
    for (ReportPart& part : parts) report.AddPart(std::move(part.name), part.count, part.bytes);
    report.AddPart("skipped at the top", skipped, m_dataStart);
    report.AddSetting("separators", m_preview.isCsv ? "comma, tab" : "space, comma, tab");
    report.AddSetting("lines by", label < 0 ? "markers" : "column " + std::to_string(label + 1));
    m_job.report = report.Take("lines", number, m_file.Offset(), m_file.Length());
    return {};
}

std::uint64_t CAsciiFileImport::ReadSkippedLines(CRowConverter const& converter, CRowReport& report) {
    std::uint64_t count = 0;
    std::string_view line;
    m_file.Rewind();
    while (m_file.Offset() < m_dataStart && m_file.Next(line)) {
        report.GoTo(line, ++count);
        LineKind const kind = ClassifyLine(line);
        bool const isMarker = kind == LineKind::Marker;
        MarkerDoubt const doubt = isMarker ? DoubtOf(line, m_settings.columns.size()) : MarkerDoubt::None;
        if (doubt == MarkerDoubt::WrongName) report.NoteRow(&ImportReport::doubtfulNames);
        bool const isRow = kind == LineKind::Data || doubt == MarkerDoubt::Row;
        if (isRow && converter.ReadsAsRow(line)) report.NoteRow(&ImportReport::skippedRows);
    }
    return count;
}

void CAsciiFileImport::NoteMarker(std::string_view marker, CRowReport& report) const {
    MarkerDoubt const doubt = DoubtOf(marker, m_settings.columns.size());
    if (doubt == MarkerDoubt::Row) report.NoteRow(&ImportReport::doubtfulMarkers);
    if (doubt == MarkerDoubt::WrongName) report.NoteRow(&ImportReport::doubtfulNames);
}

Status ImportTextFile(ImportJob& job) {
    auto const* const settings = std::get_if<ColumnTextSettings>(&job.settings);
    if (!job.asks && settings != nullptr && settings->reading) return ImportByReading(job, job.inputPath);
    return CAsciiFileImport(job).Run(job.inputPath);
}

}  // namespace norva
