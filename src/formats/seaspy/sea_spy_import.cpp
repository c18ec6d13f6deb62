#include "exchange/column_files.h"
#include "exchange/progress_dlg.h"
#include "exchange/result.h"
#include "formats/column_text/ascii_file_import.h"
#include "formats/column_text/ascii_import_dlg.h"
#include "formats/column_text/text_line.h"
#include "formats/seaspy/sea_spy_format.h"
#include "platform/file_percent.h"
#include "platform/numbers.h"
#include "platform/text.h"
#include "ui/messages.h"

#include <algorithm>

namespace norva {

namespace {

constexpr int kPreviewRecords = 40;
constexpr int kWithCoordinates = 2;
constexpr int kXField = 14;
constexpr int kYField = 15;
char const* const kLineName = "LINE 1";

constexpr std::string_view kInterpolated = "<INTERP>";
constexpr std::string_view kReal = "<REAL>";
constexpr CDelimiters kFieldDelimiters{" \n"};

char const* const kHeaderText =
    "Date Time FMagField FSignal FMeasureTime FTowfishDepth FAltitude FMsg RMagField RSignal RMeasureTime "
    "RTowfishDepth RMsg Gradient";
char const* const kHeaderTextWithCoordinates =
    "Date Time FMagField FSignal FMeasureTime FTowfishDepth FAltitude FMsg RMagField RSignal RMeasureTime "
    "RTowfishDepth RMsg Gradient X_Coord Y_Coord";

char const* HeaderText(int layout) {
    return layout == kWithCoordinates ? kHeaderTextWithCoordinates : kHeaderText;
}

bool IsRecord(std::string_view line) {
    return !line.empty() && line.front() == '*';
}

/// Whether the data pass leaves a record out.
bool IsSkippedRecord(std::string_view record) {
    return HoldsSpacedLineWord(Trim(record));
}

/// Blanks, the characters that a blank stands in for, and those that may begin a tag.
constexpr CDelimiters kGapStarts{" */[]FRxyXY<"};

/// Length of the gap between fields that `text` begins with; 0 for none.
std::size_t GapLength(std::string_view text, bool hasCoordinates) {
    char const next = text.size() > 1 ? text[1] : '\0';
    switch (text[0]) {
        case 'F':
        case 'R':
            return next == '[' ? 2 : 0;
        case '<':
            if (hasCoordinates && text.starts_with(kInterpolated)) return kInterpolated.size();
            return hasCoordinates && text.starts_with(kReal) ? kReal.size() : 0;
        case 'x':
        case 'y':
        case 'X':
        case 'Y':
            return hasCoordinates && next == ':' ? 2 : 0;
        default:
            return kGapStarts.Has(text[0]) ? 1 : 0;
    }
}

/// The record with blanks in place of its brackets (one each) and its tags (two each).
std::string CleanRecord(std::string_view record, bool hasCoordinates) {
    std::string out;
    while (!record.empty()) {
        std::size_t const gap = GapLength(record, hasCoordinates);
        out.append(gap > 1 ? 2 : 1, gap == 0 ? record.front() : ' ');
        record.remove_prefix(std::max<std::size_t>(gap, 1));
    }
    return out;
}

/// Walks over the fields of a record as they would stand in the cleaned one.
class CRecordCursor {
public:
    CRecordCursor(std::string_view record, bool hasCoordinates)
        : m_next(record.data()), m_end(record.data() + record.size()), m_hasCoordinates(hasCoordinates) {}

    bool Next(std::string_view& field) {
        while (std::size_t const gap = Gap()) m_next += gap;
        char const* const begin = m_next;
        while (m_next != m_end && Gap() == 0) ++m_next;
        field = {begin, static_cast<std::size_t>(m_next - begin)};
        return m_next != begin;
    }

private:
    std::size_t Gap() const {
        if (m_next == m_end || !kGapStarts.Has(*m_next)) return 0;
        return GapLength({m_next, static_cast<std::size_t>(m_end - m_next)}, m_hasCoordinates);
    }

    char const* m_next;
    char const* m_end;
    bool m_hasCoordinates;
};

}  // namespace

int CAsciiFileImport::LoadSeaSPYFileInfo(std::string const& path) {
    m_path = path;
    if (OpenFile() == 0 || CheckSeaSPYHeader() == 0) return 0;
    m_interpolatedCoordinates = 0;
    if (m_seaSpyLayout == kWithCoordinates && AskYesNo("Do you want to import interpolated coordinates? ")) {
        m_interpolatedCoordinates = 1;
    }
    ReadSeaSPYPreview();
    return CheckPreview() ? 1 : 0;
}

int CAsciiFileImport::CheckSeaSPYHeader() {
    m_file.Rewind();
    std::string_view line;
    do {
        if (!m_file.Next(line)) return 0;
    } while (!IsRecord(line));
    if (!Contains(line, "F[") || !Contains(line, "R[")) return 0;
    m_seaSpyLayout = Contains(line, "x:") ? kWithCoordinates : 1;
    return 1;
}

void CAsciiFileImport::ReadSeaSPYPreview() {
    m_preview.clear();
    m_seaSpyRecordCount = 0;
    m_file.Rewind();
    std::string_view line;
    while (m_file.Next(line)) {
        if (!IsRecord(line)) continue;
        if (m_preview.size() < kPreviewRecords) {
            std::string_view const record = line.substr(0, line.find_last_not_of(" \n") + 1);
            m_preview.push_back({CleanSeaSPYLine(record), m_file.Offset()});
        }
        // The profile has a row for every record that the data pass writes.
        if (!IsSkippedRecord(line)) ++m_seaSpyRecordCount;
    }
}

std::string CAsciiFileImport::CleanSeaSPYLine(std::string_view record) const {
    bool const isKnown = m_seaSpyLayout == 1 || m_seaSpyLayout == kWithCoordinates;
    return isKnown ? CleanRecord(record, m_seaSpyLayout == kWithCoordinates) : std::string(record);
}

double CAsciiFileImport::GetSeaSPYDate(std::string_view field) {
    int const shortYear = ReadInt(field.substr(0, 2));
    int const year = (shortYear > 80 ? 1900 : 2000) + shortYear;
    int const day = ReadInt(field.substr(field.size() - std::min<std::size_t>(field.size(), 3)));
    bool const isLeapYear = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return year + static_cast<double>(day) / (isLeapYear ? 366 : 365);
}

double CAsciiFileImport::GetSeaSPYTime(std::string_view field) {
    auto const part = [field](std::size_t at, std::size_t count) {
        return at < field.size() ? ReadInt(field.substr(at, count)) : 0;
    };
    int const tenths = field.empty() ? 0 : part(field.size() - 1, 1);
    return part(0, 2) + part(3, 2) / 60.0 + part(6, 2) / 3600.0 + tenths / 36000.0;
}

int CAsciiFileImport::ImportSeaSPYFile(CNorvaFileUtil* store) {
    CAsciiImportDlg dialog;
    dialog.SetSeaSpy(m_seaSpyLayout, HeaderText(m_seaSpyLayout));
    PrepareDialog(dialog);
    if (dialog.DoModal() != kButtonOk) {
        CloseFile();
        return 0;
    }

    CProgressDlg window;
    window.Create();
    window.SetWindowTitle("Loading data from the file");
    window.ShowFileName("Please wait a second");

    store->AddProfileToStructure(kLineName, m_seaSpyRecordCount);
    DescribeChannels(*store);
    if (!StartWriting(window, *store)) return 0;

    CColumnFiles files;
    if (!CreateColumnFiles(files)) return 0;
    CProgressReporter progress(window);
    if (!ConvertRecords(progress, files)) return 0;
    if (!HandOverColumns(progress, files, *store)) return 0;
    return FinishStore(*store);
}

bool CAsciiFileImport::ConvertRecords(CProgressReporter& progress, CColumnFiles& files) {
    CRowReport report(m_columns);
    CRowConverter converter(m_columns, kFieldDelimiters, CRowConverter::Source::SeaSpy, m_dateTime, m_geographic, files,
                            report);
    CFilePercent percent(m_file.Length(), 1);
    bool const hasCoordinates = m_seaSpyLayout == kWithCoordinates;
    int const count = static_cast<int>(m_columns.size());
    std::string_view record;
    ReportPart records{"records", 0, 0};
    ReportPart leftOut{"records left out (markers)", 0, 0};
    ReportPart others{"lines that are no record", 0, 0};
    std::uint64_t number = 0;
    m_file.Rewind();
    for (std::uint64_t offset = 0; !files.Failed() && m_file.Next(record); offset = m_file.Offset()) {
        ++number;
        bool const isRecord = IsRecord(record);
        if (isRecord && percent.Changed(m_file.Offset())) {
            progress.FilePercent(percent.Value());
            progress.Window().ShowFileName("Done percent : " + std::to_string(percent.Value()) + "% ");
        }
        bool const isUsed = isRecord && !IsSkippedRecord(record);
        ReportPart& part = isUsed ? records : isRecord ? leftOut : others;
        ++part.count;
        part.bytes += m_file.Offset() - offset;
        if (!isUsed) continue;
        bool const hidesCoordinates =
            hasCoordinates && m_interpolatedCoordinates == 0 && Contains(record, kInterpolated);
        if (records.count == 1) report.StartLine(kLineName, number);
        report.StartRow(record, number);
        CRecordCursor cursor(record, hasCoordinates);
        bool isShort = false;
        for (int i = 0; i < count; ++i) {
            std::string_view field;
            bool const isThere = cursor.Next(field);
            isShort = isShort || !isThere;
            if (hidesCoordinates && (i == kXField || i == kYField)) field = "*";
            if (m_columns[static_cast<std::size_t>(i)].dataType == DataType::kSkipped) continue;
            progress.ChannelPercent(i * 100LL / count);
            if (!(isThere ? converter.Value(i, field) : converter.Absent(i))) break;
        }
        std::string_view surplus;
        if (isShort) report.NoteRow(&ImportReport::fewerValues);
        if (cursor.Next(surplus)) report.NoteRow(&ImportReport::moreValues);
    }
    if (!PassSucceeded(files)) return false;
    converter.Finish();
    for (ReportPart const& part : {records, leftOut, others}) report.AddPart(part.name, part.count, part.bytes);
    if (hasCoordinates) {
        report.AddSetting("interpolated coordinates", m_interpolatedCoordinates != 0 ? "imported" : "left out");
    }
    report.Finish("lines", number, m_file.Offset(), m_file.Length());
    return true;
}

int CAsciiFileImport::DescribeSeaSPY(std::string const& path, FileDescription& description) {
    m_path = path;
    if (OpenFile() == 0 || CheckSeaSPYHeader() == 0) return 0;
    ReadSeaSPYPreview();
    std::int64_t interpolated = 0;
    std::int64_t others = 0;
    std::string_view line;
    m_file.Rewind();
    while (m_file.Next(line)) {
        if (!IsRecord(line) && !Trim(line).empty()) ++others;
        if (IsRecord(line) && Contains(line, kInterpolated)) ++interpolated;
    }
    if (m_file.Error() != 0) {
        ShowReadError();
        return 0;
    }
    bool const hasCoordinates = m_seaSpyLayout == kWithCoordinates;
    description.AddFact("records", std::int64_t{m_seaSpyRecordCount});
    description.AddFact("lines that are no record", others);
    description.AddFact("coordinates", std::string(hasCoordinates ? "yes" : "no"));
    if (hasCoordinates) description.AddFact("records with interpolated coordinates", interpolated);
    CAsciiImportDlg dialog;
    dialog.SetSeaSpy(m_seaSpyLayout, HeaderText(m_seaSpyLayout));
    description.tables = {DescribeColumns(dialog)};
    return 1;
}

Status DescribeSeaSpyFile(DescribeJob const& job, FileDescription& description) {
    return ResultOf(CAsciiFileImport().DescribeSeaSPY(job.inputPath, description));
}

Status ImportSeaSpyFile(ImportJob& job) {
    CAsciiFileImport importer;
    if (importer.LoadSeaSPYFileInfo(job.inputPath) == 0) {
        ShowMessage("Wrong SeaSPY(Marine magnetics) data format !");
        return ResultOf(0);
    }
    if (job.store->SetFileName(job.storePath, kCreateStore, job.owner) == 0) return ResultOf(0);
    return ResultOf(importer.ImportSeaSPYFile(job.store));
}

}  // namespace norva
