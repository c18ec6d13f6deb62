#include "exchange/column_files.h"
#include "exchange/exception_guard.h"
#include "exchange/progress_dlg.h"
#include "formats/column_text/ascii_import_dlg.h"
#include "formats/column_text/column_store.h"
#include "formats/column_text/column_text_format.h"
#include "formats/column_text/row_converter.h"
#include "formats/column_text/text_line.h"
#include "formats/column_text/text_preview.h"
#include "formats/seaspy/sea_spy_format.h"
#include "formats/seaspy/sea_spy_values.h"
#include "platform/file_percent.h"
#include "platform/text.h"
#include "ui/messages.h"

#include <algorithm>

namespace norva {

namespace {

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

bool IsRecord(std::string_view line) {
    return !line.empty() && line.front() == '*';
}

char const* const kNoLog = "Wrong SeaSPY(Marine magnetics) data format !";

/// No reason of its own: the box that every failed head ends with says it.
Status NoLog() {
    return Status::Failure(kNoLog).Silent();
}

/// What the first record says of a log: whether it is one, and whether it has coordinates.
Status CheckHeader(CLineReader& file, TextPreview& preview) {
    file.Rewind();
    std::string_view line;
    do {
        if (!file.Next(line)) return NoLog();
    } while (!IsRecord(line));
    if (!Contains(line, "F[") || !Contains(line, "R[")) return NoLog();
    preview.isSeaSpy = true;
    preview.hasCoordinates = Contains(line, "x:");
    std::vector<std::string_view> titles;
    GetTokens(preview.hasCoordinates ? kHeaderTextWithCoordinates : kHeaderText, titles, " \n");
    preview.titles.assign(titles.begin(), titles.end());
    return {};
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

/// The first records as plain fields, and how many records the profile has.
long ReadRecords(CLineReader& file, TextPreview& preview) {
    preview.lines.clear();
    long count = 0;
    std::uint64_t number = 0;
    file.Rewind();
    std::string_view line;
    while (file.Next(line)) {
        ++number;
        if (!IsRecord(line)) continue;
        if (preview.lines.size() < TextPreview::kMostLines) {
            std::string_view const record = line.substr(0, line.find_last_not_of(" \n") + 1);
            preview.lines.push_back({CleanRecord(record, preview.hasCoordinates), file.Offset(), number});
        }
        // The profile has a row for every record that the data pass writes.
        if (!IsSkippedRecord(line)) ++count;
    }
    return count;
}

/// Imports a SeaSPY log. One object serves one import.
class CSeaSpyImport {
public:
    explicit CSeaSpyImport(ImportJob& job) : m_job(job), m_preview{.path = job.inputPath} {}

    Status Run();

private:
    Status ReadHead();
    Status TakeSettings(CColumnTextDraft& draft);
    Status ConvertRecords(CProgressWindow& window, CColumnFiles& files);

    ImportJob& m_job;
    CLineReader m_file;
    TextPreview m_preview;
    SeaSpySettings m_settings;
    long m_recordCount = 0;
    CNorvaDateTime m_dateTime;
    CNorvaGeographic m_geographic;
};

Status CSeaSpyImport::Run() {
    if (Status status = ReadHead(); !status) {
        status = ShowOpenFailure(std::move(status));
        ShowMessage(kNoLog);
        return status;
    }
    CColumnTextDraft draft(m_preview);
    if (Status status = TakeSettings(draft); !status) return status;
    if (Status status = CreateStore(m_job); !status) return status;
    if (m_job.asks && CAsciiImportDlg(draft).DoModal() != kButtonOk) return Status::Cancelled();
    m_settings.columns = draft.Settings().columns;

    CProgressWindow window("Loading data from the file");
    m_job.store->AddProfileToStructure(kLineName, m_recordCount);
    if (Status status = StartWriting(window, m_job.inputPath, m_settings.columns, *m_job.store); !status) return status;
    CColumnFiles files;
    if (Status status = CreateColumnFiles(files, m_job.inputPath, m_settings.columns.size()); !status) return status;
    if (Status status = ConvertRecords(window, files); !status) return status;
    if (Status status = HandOverColumns(window, files, m_settings.columns, *m_job.store); !status) return status;
    m_file.Close();
    m_job.settings = std::move(m_settings);
    return {};
}

Status CSeaSpyImport::ReadHead() {
    if (Status status = OpenText(m_file, m_job.inputPath); !status) return status;
    if (Status status = CheckHeader(m_file, m_preview); !status) return status;
    if (m_job.asks && m_preview.hasCoordinates) {
        m_settings.interpolated = AskYesNo("Do you want to import interpolated coordinates? ");
    }
    m_recordCount = ReadRecords(m_file, m_preview);
    return CheckPreview(m_file, m_preview);
}

Status CSeaSpyImport::TakeSettings(CColumnTextDraft& draft) {
    if (m_job.asks || std::holds_alternative<std::monostate>(m_job.settings)) return {};
    SeaSpySettings const* const given = std::get_if<SeaSpySettings>(&m_job.settings);
    if (given == nullptr) {
        return Status::Failure("The settings do not fit the file", m_job.inputPath,
                               "They are those of another format.");
    }
    m_settings.interpolated = given->interpolated;
    if (given->columns.empty()) return {};
    return draft.SetSettings({.skip = draft.Settings().skip, .columns = given->columns});
}

Status CSeaSpyImport::ConvertRecords(CProgressWindow& window, CColumnFiles& files) {
    std::vector<NorvaChannelStruct> const& columns = m_settings.columns;
    CRowReport report(columns);
    CRowConverter converter(columns, kFieldDelimiters,
                            {.date = GetSeaSPYDate, .time = GetSeaSPYTime, .upperCase = false}, m_dateTime,
                            m_geographic, files, report);
    CFilePercent percent(m_file.Length(), 1);
    bool const hasCoordinates = m_preview.hasCoordinates;
    int const count = static_cast<int>(columns.size());
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
            window.Reporter().FilePercent(percent.Value());
            window.Dialog().ShowFileName("Done percent : " + std::to_string(percent.Value()) + "% ");
        }
        bool const isUsed = isRecord && !IsSkippedRecord(record);
        ReportPart& part = isUsed ? records : isRecord ? leftOut : others;
        ++part.count;
        part.bytes += m_file.Offset() - offset;
        if (!isUsed) continue;
        bool const hidesCoordinates = hasCoordinates && !m_settings.interpolated && Contains(record, kInterpolated);
        if (records.count == 1) report.StartLine(kLineName, number);
        report.StartRow(record, number);
        CRecordCursor cursor(record, hasCoordinates);
        bool isShort = false;
        for (int i = 0; i < count; ++i) {
            std::string_view field;
            bool const isThere = cursor.Next(field);
            isShort = isShort || !isThere;
            if (hidesCoordinates && (i == kXField || i == kYField)) field = "*";
            if (columns[static_cast<std::size_t>(i)].dataType == DataType::kSkipped) continue;
            window.Reporter().ChannelPercent(i * 100LL / count);
            if (!(isThere ? converter.Value(i, field) : converter.Absent(i))) break;
        }
        std::string_view surplus;
        if (isShort) report.NoteRow(&ImportReport::fewerValues);
        if (cursor.Next(surplus)) report.NoteRow(&ImportReport::moreValues);
    }
    if (Status status = PassStatus(m_file, files, m_job.inputPath); !status) return status;
    converter.Finish();
    for (ReportPart const& part : {records, leftOut, others}) report.AddPart(part.name, part.count, part.bytes);
    if (hasCoordinates) {
        report.AddSetting("interpolated coordinates", m_settings.interpolated ? "imported" : "left out");
    }
    m_job.report = report.Take("lines", number, m_file.Offset(), m_file.Length());
    return {};
}

}  // namespace

Status PreviewSeaSpyFile(std::string const& path, TextPreview& preview) {
    preview = {.path = path};
    CLineReader file;
    if (Status status = OpenText(file, path); !status) return status;
    if (Status status = CheckHeader(file, preview); !status) return status;
    ReadRecords(file, preview);
    return CheckPreview(file, preview);
}

Status DescribeSeaSpyFile(DescribeJob const& job, FileDescription& description) {
    TextPreview preview;
    CLineReader file;
    if (Status status = OpenText(file, job.inputPath); !status) return status;
    if (!CheckHeader(file, preview)) {
        return file.Error() == 0 ? Status::Failure("") : Status::FileFailure("read", job.inputPath, file.Error());
    }
    long const records = ReadRecords(file, preview);
    std::int64_t interpolated = 0;
    std::int64_t others = 0;
    std::string_view line;
    file.Rewind();
    while (file.Next(line)) {
        if (!IsRecord(line) && !Trim(line).empty()) ++others;
        if (IsRecord(line) && Contains(line, kInterpolated)) ++interpolated;
    }
    if (file.Error() != 0) return Status::FileFailure("read", job.inputPath, file.Error());
    description.AddFact("records", std::int64_t{records});
    description.AddFact("lines that are no record", others);
    description.AddFact("coordinates", std::string(preview.hasCoordinates ? "yes" : "no"));
    if (preview.hasCoordinates) description.AddFact("records with interpolated coordinates", interpolated);
    description.tables = {DescribeColumns(GuessColumnText(preview))};
    return {};
}

Status ImportSeaSpyFile(ImportJob& job) {
    return CSeaSpyImport(job).Run();
}

}  // namespace norva
