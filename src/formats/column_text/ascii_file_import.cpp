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
#include "platform/last_error.h"
#include "ui/messages.h"

#include <array>
#include <utility>

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

}  // namespace

Status ShowOpenFailure(Status status) {
    if (status.What() != "Couldn't open the file") return Shown(std::move(status));
    SetLastErrorText(status.Text());
    ShowMessage(status.What() + " : " + status.Path());
    return std::move(status).Silent();
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
    if (Status status = FindProfiles(); !status) return Shown(std::move(status));
    for (ProfileRecord const& profile : m_profiles) {
        m_job.store->AddProfileToStructure(profile.name, profile.rowCount);
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
    return Shown(CheckPreview(m_file, m_preview));
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

Status CAsciiFileImport::FindProfiles() {
    m_dataStart = DataStart(m_preview, m_settings.skip);
    m_profiles = m_settings.labelColumn >= 0 ? FindProfilesByLabel(m_file, m_dataStart, m_settings.labelColumn)
                                             : FindProfilesByMarker(m_file, m_dataStart);
    if (m_file.Error() != 0) return Status::FileFailure("read", m_preview.path, m_file.Error());
    if (m_profiles.empty()) return Status::Failure("There are no data rows in the file", m_preview.path);
    return {};
}

Status CAsciiFileImport::ConvertRows(CProgressWindow& window, CColumnFiles& files) {
    CRowReport report(m_settings.columns);
    CRowConverter converter(m_settings.columns, RowDelimiters(m_preview.isCsv), CRowConverter::Forms(), m_dateTime,
                            m_geographic, files, report);
    std::array<ReportPart, 4> parts{{{"empty", 0, 0}, {"comments", 0, 0}, {"markers", 0, 0}, {"data rows", 0, 0}}};
    std::size_t profile = 0;
    long rowsLeft = 0;

    std::uint64_t const skipped = CountSkippedLines();
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
    if (Status status = PassStatus(m_file, files, m_preview.path); !status) return status;
    converter.Finish();
    for (ReportPart& part : parts) report.AddPart(std::move(part.name), part.count, part.bytes);
    report.AddPart("skipped at the top", skipped, m_dataStart);
    report.AddSetting("separators", m_preview.isCsv ? "comma, tab" : "space, comma, tab");
    report.AddSetting("lines by",
                      m_settings.labelColumn < 0 ? "markers" : "column " + std::to_string(m_settings.labelColumn + 1));
    m_job.report = report.Take("lines", number, m_file.Offset(), m_file.Length());
    return {};
}

std::uint64_t CAsciiFileImport::CountSkippedLines() {
    std::uint64_t count = 0;
    std::string_view line;
    m_file.Rewind();
    while (m_file.Offset() < m_dataStart && m_file.Next(line)) ++count;
    return count;
}

Status ImportTextFile(ImportJob& job) {
    auto const* const settings = std::get_if<ColumnTextSettings>(&job.settings);
    if (!job.asks && settings != nullptr && settings->reading) return ImportByReading(job, job.inputPath);
    return CAsciiFileImport(job).Run(job.inputPath);
}

}  // namespace norva
