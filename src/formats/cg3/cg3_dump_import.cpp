#include "formats/cg3/cg3_dump_import.h"

#include "exchange/exception_guard.h"
#include "exchange/progress_dlg.h"
#include "exchange/store_call.h"
#include "formats/cg3/cg3_format.h"
#include "formats/cg3/cg3_import_dlg.h"
#include "formats/cg3/cg3_import_template.h"
#include "formats/cg3/cg3_settings.h"
#include "platform/last_error.h"
#include "platform/numbers.h"
#include "platform/paths.h"
#include "platform/text.h"
#include "store/value_rules.h"
#include "ui/messages.h"

#include <algorithm>
#include <cmath>

namespace norva {

namespace {

constexpr std::size_t kLeastTextWidth = 8;

bool IsALine(std::string_view line) {
    return line.starts_with('A');
}

std::string_view WithoutTrailingDots(std::string_view token) {
    return token.substr(0, token.find_last_not_of(". ") + 1);
}

int DecimalsOf(std::string_view token) {
    std::size_t const dot = token.find('.');
    return dot == std::string_view::npos ? 0 : static_cast<int>(token.size() - dot - 1);
}

/// Outside the range of every type, and so no-data.
constexpr double kTooLarge = std::numeric_limits<double>::infinity();

}  // namespace

Status CCG3DumpImport::Import() {
    for (auto const step : {&CCG3DumpImport::OpenInput, &CCG3DumpImport::ObtainSettings}) {
        if (Status status = (this->*step)(); !status) return status;
    }
    DescribeChannels();
    if (!MeasureTexts()) return ReadFailure();
    StartReport();

    std::optional<CProgressWindow> window(std::in_place, "Import", m_inputPath);
    std::string const base(WithoutExtension(m_inputPath));
    Status created = m_columnFiles.Create(base, static_cast<int>(m_channels.size()), m_inputPath);
    if (created) {
        if (Status status = Convert(); !status) return status;
    }
    std::string const storePath = m_store.GetNorvaFileName();
    Status closed = CallStore(m_store, [this] { return m_store.CloseCurFile(); });
    window.reset();
    if (created && !closed) return closed;
    std::string sorted = "no";
    if (m_settings.sortByTime && m_timeChannel >= 0)
        sorted = Sort(storePath, created.IsGood()) ? "yes" : "no, it failed";
    if (!created) return std::move(created).Silent();
    m_job.report = Report(std::move(sorted));
    m_job.settings = std::move(m_settings);
    return {};
}

Status CCG3DumpImport::OpenInput() {
    if (m_inputPath.empty()) return Status::Failure("There is no file to open").Silent();
    if (!m_file.Open(m_inputPath)) return Status::FileFailure("open", m_inputPath, m_file.Error()).Silent();
    return ReadCG3DumpLayout(m_file, m_layout) ? CheckCG3Columns(m_inputPath, m_layout) : ReadFailure();
}

Status CCG3DumpImport::ObtainSettings() {
    if (m_job.asks) {
        m_settings.columns = UsualCg3Columns(m_layout.titles);
        CCG3ImportDlg dialog(m_layout.titles, m_settings);
        return dialog.DoModal() == ids::CG3Import::kImport ? Status() : Status::Cancelled();
    }
    Status status = m_job.TakeSettings(m_settings);
    return status ? CompleteCg3Settings(m_settings, m_inputPath, m_layout.titles) : status;
}

Status CCG3DumpImport::Convert() {
    Status status = ParseData();
    return status ? WriteStore() : Shown(std::move(status));
}

bool CCG3DumpImport::Sort(std::string const& storePath, bool isWritten) {
    Status status = CallStore(m_store, [&] { return m_store.SetFileName(storePath, kReopenStore, nullptr); });
    if (status) {
        // With nothing written this is an older store, which stays as it was.
        if (isWritten) {
            status = CallStore(m_store, [this] { return m_store.SortByChannel(nullptr, m_timeChannel, 1, -1, 1, -1); });
        }
        Status closed = CallStore(m_store, [this] { return m_store.CloseCurFile(); });
        if (status) status = std::move(closed);
    }
    if (!status && isWritten) {
        ShowMessage("The lines were imported, but could not be sorted by time : " + storePath + "\n" + status.Text());
        ClearLastErrorText();  // the import goes on
    }
    return status.IsGood();
}

void CCG3DumpImport::DescribeChannels() {
    for (int const chosen : *m_settings.columns) {
        auto const position = static_cast<std::size_t>(chosen);
        Column column;
        column.position = position;
        column.channel = static_cast<int>(m_channels.size());
        m_channels.push_back(DescribeColumn(column));
        if (position == m_layout.valueCount) {
            m_heightChannel = m_height.channel = column.channel;
            continue;
        }
        if (m_channels.back().displayFormat == DisplayFormat::kTime) m_timeChannel = column.channel;
        m_columns.push_back(column);
    }
    // Only the last of several time columns holds times; the others are read as numbers.
    for (Column& column : m_columns) {
        if (column.channel == m_timeChannel) column.kind = Column::Kind::Time;
    }
    NorvaChannelStruct date;
    date.name = "Date";
    date.dataType = DataType::kDouble;
    date.displayFormat = DisplayFormat::kDate;
    date.decimalPlaces = 0;
    date.templateFormat = m_settings.dateFormat;
    m_date.channel = static_cast<int>(m_channels.size());
    m_channels.push_back(date);
}

NorvaChannelStruct CCG3DumpImport::DescribeColumn(Column& column) const {
    std::string const& title = m_layout.titles[column.position];
    NorvaChannelStruct channel;
    channel.dataType = DataType::kDouble;
    if (column.position == m_layout.valueCount) {
        channel.name = "Height";
        return channel;
    }
    channel.name = title;
    std::string const upper = ToUpper(title);
    if (Contains(upper, "TIME")) {
        channel.displayFormat = DisplayFormat::kTime;
        channel.decimalPlaces = 0;
        channel.templateFormat = m_settings.timeFormat;
    } else if (Contains(upper, "REJ")) {
        channel.dataType = DataType::kShort;
        column.kind = Column::Kind::Short;
    } else if (Contains(upper, "STATION")) {
        channel.dataType = DataType::kText;
        channel.recordType = 1;
        column.kind = Column::Kind::Text;
    }
    return channel;
}

bool CCG3DumpImport::MeasureTexts() {
    std::vector<Column*> texts;
    for (Column& column : m_columns) {
        if (column.kind != Column::Kind::Text) continue;
        column.width = kLeastTextWidth;
        texts.push_back(&column);
    }
    if (texts.empty()) return true;
    std::string_view line;
    for (CG3LineRecord const& profile : m_layout.profiles) {
        if (!SeekData(profile)) return false;
        while (NextDataLine(line)) {
            if (IsALine(line)) continue;
            GetTokens(line, m_tokens, kCG3DataDelimiters);
            for (Column* const text : texts) {
                if (text->position >= m_tokens.size()) continue;
                text->width = std::max(text->width, WithoutTrailingDots(m_tokens[text->position]).size());
            }
        }
        if (m_file.Error() != 0) return false;
    }
    for (Column const* const text : texts) {
        m_channels[static_cast<std::size_t>(text->channel)].arraySize = static_cast<int>(text->width);
    }
    return true;
}

Status CCG3DumpImport::ParseData() {
    for (std::size_t i = 0; i < m_layout.profiles.size(); ++i) {
        if (SeekData(m_layout.profiles[i])) {
            ParseProfile(m_layout.profiles[i]);
            WriteDates(i);
        }
        if (m_file.Error() != 0) return ReadFailure();
        if (m_columnFiles.Failed()) return m_columnFiles.Error();
    }
    return {};
}

void CCG3DumpImport::ParseProfile(CG3LineRecord& profile) {
    profile.locationCount = 0;
    m_heightRow = 0;
    for (Column& column : m_columns) column.previous = -std::numeric_limits<double>::infinity();
    std::uint64_t number = profile.titleLine;
    m_report->StartLine(profile.name, number + 1);
    std::string_view line;
    for (std::uint64_t offset = m_file.Offset(); m_file.Next(line) && !IsCG3DashLine(line); offset = m_file.Offset()) {
        ++number;
        m_report->GoTo(line, number);
        line = Trim(line);
        bool const isEmpty = line.empty() || line == kCG3TransferEnd;
        ReportPart& part = m_parts[isEmpty ? kEmpty : ParseDataLine(profile, line, number)];
        ++part.count;
        part.bytes += m_file.Offset() - offset;
        if (m_columnFiles.Failed()) return;
    }
    MissHeight();
}

CCG3DumpImport::DataPart CCG3DumpImport::ParseDataLine(CG3LineRecord& profile, std::string_view line,
                                                       std::uint64_t number) {
    GetTokens(line, m_tokens, kCG3DataDelimiters);
    if (!m_tokens.empty() && (m_tokens[0].front() == 'A' || m_tokens[0].front() == 'a')) {
        bool const isHeight = m_heightRow != 0 && m_tokens.size() == 2;
        if (isHeight) {
            m_heightRow = 0;
            WriteNumber(m_height, m_tokens[1]);
        }
        MissHeight();
        bool const isUnwanted = m_layout.hasALines && m_heightChannel < 0;
        if (isHeight || isUnwanted) return kHeights;
    } else {
        // Whatever else this line is, it is not the A-line of the data line before it.
        MissHeight();
        if (m_tokens.size() == m_layout.valueCount) {
            m_report->CountRow();
            for (Column& column : m_columns) WriteValue(column, m_tokens[column.position]);
            if (m_heightChannel >= 0) m_heightRow = number;
            ++profile.locationCount;
            return kDataRows;
        }
    }
    m_report->NoteRow(&ImportReport::leftOut);
    return kLeftOut;
}

void CCG3DumpImport::WriteValue(Column& column, std::string_view token) {
    switch (column.kind) {
        case Column::Kind::Number:
            return WriteNumber(column, token);
        case Column::Kind::Text:
            return WriteText(column, token);
        case Column::Kind::Time:
            return WriteTime(column, token);
        case Column::Kind::Short:
            return WriteShort(column, token);
    }
}

void CCG3DumpImport::WriteNumber(Column& column, std::string_view token) {
    double const value = NumberOf(column, token);
    WriteDouble(column.channel, std::isfinite(value) ? value : kNoDataDouble);
}

double CCG3DumpImport::NumberOf(Column& column, std::string_view token) {
    if (token.starts_with('*')) {
        m_report->Note(Found(column).noData, token);
        return kTooLarge;
    }
    NumberRead const read = ScanNumber(token);
    bool const isWhole = read.consumed == token.size();
    // Most values lie between those that came before, which were in order.
    if (isWhole && read.value >= column.minimum && read.value <= column.maximum) return read.value;
    if (read.consumed == 0) {
        m_report->Note(Found(column).unreadable, token);
        return 0;
    }
    // The instrument marks a value that it has corrected for tilt.
    bool const isCorrected = token.substr(read.consumed) == "*";
    if (!isWhole && !isCorrected) m_report->Note(Found(column).withRest, token);
    double const limit = column.kind == Column::Kind::Short ? kNoDataShort : kNoDataDouble;
    bool const isMark = read.value == limit;
    bool const isTooLarge =
        column.kind == Column::Kind::Short ? std::fabs(read.value) > limit : !std::isfinite(read.value);
    if (isMark) {
        m_report->Note(Found(column).noData, token);
    } else if (isTooLarge) {
        m_report->Note(Found(column).outOfRange, token);
    } else {
        column.minimum = std::min(column.minimum, read.value);
        column.maximum = std::max(column.maximum, read.value);
    }
    return read.value;
}

void CCG3DumpImport::WriteTime(Column& column, std::string_view token) {
    double value = kNoDataDouble;
    if (token.starts_with('*')) {
        m_report->Note(Found(column).noData, token);
    } else if (m_dateTime.GetDoubleTime(token, m_settings.timeFormat, DecimalsOf(token), value) == 0) {
        m_report->Note(Found(column).unreadable, token);
    } else {
        if (RunsBackwards(value, column.previous, true)) m_report->Note(Found(column).backwards, token);
        column.previous = value;
        column.minimum = std::min(column.minimum, value);
        column.maximum = std::max(column.maximum, value);
    }
    WriteDouble(column.channel, value);
}

void CCG3DumpImport::WriteShort(Column& column, std::string_view token) {
    double const number = NumberOf(column, token);
    std::int16_t const value = ShortInRange(number);
    if (value != kNoDataShort && value != number) m_report->Note(Found(column).withFraction, token);
    if (char* const out = m_columnFiles.Append(column.channel, sizeof value)) {
        StoreLittle16(out, static_cast<std::uint16_t>(value));
    }
}

void CCG3DumpImport::WriteDouble(int channel, double value) {
    if (char* const out = m_columnFiles.Append(channel, sizeof value)) StoreDouble(out, value);
}

void CCG3DumpImport::WriteText(Column const& column, std::string_view token) {
    ToUpper(WithoutTrailingDots(token), m_text);
    m_text.resize(column.width, ' ');
    m_columnFiles.AppendBytes(column.channel, m_text.data(), m_text.size());
}

void CCG3DumpImport::MissHeight() {
    if (m_heightRow == 0) return;
    AddFinding(Found(m_height).missing, m_heightRow, 1, {});
    m_heightRow = 0;
    WriteDouble(m_heightChannel, kNoDataDouble);
}

void CCG3DumpImport::WriteDates(std::size_t profile) {
    long const count = m_layout.profiles[profile].locationCount;
    ReportChannel& found = Found(m_date);
    double value = kNoDataDouble;
    if (profile >= m_layout.dates.size()) {
        found.missing.count += static_cast<std::uint64_t>(count);
    } else if (m_dateTime.GetDoubleDate(m_layout.dates[profile], m_settings.dateFormat, value) == 0) {
        found.unreadable.count += static_cast<std::uint64_t>(count);
    } else if (count > 0) {
        m_date.minimum = std::min(m_date.minimum, value);
        m_date.maximum = std::max(m_date.maximum, value);
    }
    for (long i = 0; i < count; ++i) WriteDouble(m_date.channel, value);
}

void CCG3DumpImport::StartReport() {
    m_report.emplace(m_channels);
    for (Column const& column : m_columns) Found(column).column = static_cast<int>(column.position) + 1;
    if (m_heightChannel >= 0) Found(m_height).column = static_cast<int>(m_layout.valueCount) + 1;
    Found(m_date).column = 0;
}

ImportReport CCG3DumpImport::Report(std::string sorted) {
    auto const setRange = [this](Column const& column) {
        if (column.minimum > column.maximum) return;
        ReportChannel& channel = Found(column);
        channel.hasRange = true;
        channel.minimum = column.minimum;
        channel.maximum = column.maximum;
    };
    for (Column const& column : m_columns) setRange(column);
    if (m_heightChannel >= 0) setRange(m_height);
    setRange(m_date);
    for (ReportPart const& part : m_layout.parts) m_report->AddPart(part.name, part.count, part.bytes);
    for (ReportPart const& part : m_parts) m_report->AddPart(part.name, part.count, part.bytes);
    m_report->AddSetting("sorted by time", std::move(sorted));
    return m_report->Take("lines", m_layout.lineCount, m_layout.byteCount, m_file.Length());
}

Status CCG3DumpImport::WriteStore() {
    for (CG3LineRecord const& profile : m_layout.profiles) {
        m_store.AddProfileToStructure(profile.name, profile.locationCount);
    }
    for (NorvaChannelStruct const& channel : m_channels) m_store.AddChannelToStructure(channel);
    Status described = CallStore(m_store, [this] {
        bool const isSaved = m_store.SaveProfileStructure() != 0 && m_store.SaveChannelStructure() != 0;
        return isSaved ? m_store.StartWriteData() : 0;
    });
    if (!described) return described;
    for (int channel = 0; channel < m_columnFiles.Count(); ++channel) {
        Status status = m_columnFiles.HandOver(channel, m_store);
        if (status) continue;
        ShowMessage(status.Text());
        return status;
    }
    return CallStore(m_store, [this] { return m_store.EndWriteData(); });
}

bool CCG3DumpImport::SeekData(CG3LineRecord const& profile) {
    std::string_view titles;
    return m_file.Seek(profile.dataStart) && m_file.Next(titles);
}

bool CCG3DumpImport::NextDataLine(std::string_view& line) {
    while (m_file.Next(line)) {
        if (IsCG3DashLine(line)) return false;
        line = Trim(line);
        if (!line.empty()) return true;
    }
    return false;
}

Status DescribeCG3File(DescribeJob const& job, FileDescription& description) {
    CG3DumpLayout layout;
    if (Status status = ReadCG3DumpLayout(job.inputPath, layout); !status) return status;
    if (Status status = CountCG3Readings(job.inputPath, layout); !status) return status;
    FileDescription::Table columns{"columns", {"title"}, {}};
    for (std::string const& title : layout.titles) columns.rows.push_back({title});
    FileDescription::Table lines{"lines", {"name", "date", "readings"}, {}};
    std::int64_t readings = 0;
    for (std::size_t i = 0; i < layout.profiles.size(); ++i) {
        CG3LineRecord const& profile = layout.profiles[i];
        lines.rows.push_back({profile.name, i < layout.dates.size() ? layout.dates[i] : std::string(),
                              std::int64_t{profile.locationCount}});
        readings += profile.locationCount;
    }
    description.AddFact("readings", readings);
    description.AddFact("heights in A-lines", std::string(layout.hasALines ? "yes" : "no"));
    description.tables = {std::move(columns), std::move(lines)};
    return {};
}

Status ImportCG3File(ImportJob& job) {
    Status status =
        CallStore(*job.store, [&] { return job.store->SetFileName(job.storePath, kCreateStore, job.owner); });
    return status ? CCG3DumpImport(job).Import() : status;
}

}  // namespace norva
