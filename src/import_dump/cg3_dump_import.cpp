#include "import_dump/cg3_dump_import.h"

#include "entry/import_formats.h"
#include "entry/progress_dlg.h"
#include "import_dump/cg3_import_dlg.h"
#include "norva/import_export.h"
#include "platform/last_error.h"
#include "platform/numbers.h"
#include "platform/paths.h"
#include "platform/text.h"
#include "store/value_rules.h"
#include "ui/control_ids.h"
#include "ui/messages.h"

#include <algorithm>
#include <cmath>

namespace norva {

namespace {

/// Columns whose title contains one of these are selected at the start.
constexpr std::string_view kDefaultColumns[] = {"STATION", "GRAV.", "E.T.C.", "TIME", kCG3HeightTitle};
constexpr std::size_t kLeastTextWidth = 8;

bool IsALine(std::string_view line) {
    return line.starts_with('A');
}

std::string_view WithoutTrailingDots(std::string_view token) {
    return token.substr(0, token.find_last_not_of(". ") + 1);
}

std::string_view TokenAt(std::string_view line, std::size_t position) {
    for (;; --position) {
        std::size_t const start = line.find_first_not_of(kCG3DataDelimiters);
        if (start == std::string_view::npos) return {};
        line.remove_prefix(start);
        std::size_t const end = std::min(line.find_first_of(kCG3DataDelimiters), line.size());
        if (position == 0) return line.substr(0, end);
        line.remove_prefix(end);
    }
}

int DecimalsOf(std::string_view token) {
    std::size_t const dot = token.find('.');
    return dot == std::string_view::npos ? 0 : static_cast<int>(token.size() - dot - 1);
}

double NumberOf(std::string_view token) {
    if (token.starts_with('*')) return kNoDataDouble;
    double const value = ReadNumber(token);
    return std::isfinite(value) ? value : kNoDataDouble;
}

}  // namespace

int CCG3DumpImport::Import(CNorvaFileUtil* store) {
    m_store = store;
    if (m_inputPath.empty()) {
        SetLastErrorText("There is no file to open");
        return 0;
    }
    if (!m_file.Open(m_inputPath)) {
        SetLastErrorText(FileErrorText("open", m_inputPath, m_file.Error()));
        return 0;
    }
    if (!ReadCG3DumpLayout(m_file, m_layout)) return FailReading();
    SelectDefaultColumns();
    CCG3ImportDlg dialog(m_layout.titles, m_importFlags);
    if (dialog.DoModal() != ids::CG3Import::kImport) {
        m_file.Close();
        return 0;
    }
    m_dateFormat = dialog.DateFormat();
    m_timeFormat = dialog.TimeFormat();
    DescribeChannels();
    if (!MeasureTexts()) return FailReading();

    CProgressDlg progress;
    progress.Create();
    progress.SetWindowTitle("Import");
    progress.ResetBars();
    progress.ShowFileName(m_inputPath);

    std::string const base(WithoutExtension(m_inputPath));
    bool const created = m_columnFiles.Create(base, static_cast<int>(m_channels.size()), m_inputPath);
    if (created && (!ParseData() || !WriteStore())) return 0;

    std::string const storePath = m_store->GetNorvaFileName();
    m_store->CloseCurFile();
    m_file.Close();
    progress.DestroyWindow();
    std::string const reason = GetLastErrorText();
    bool const sorts = dialog.SortByTime() != 0 && m_timeChannel >= 0;
    if (sorts && m_store->SetFileName(storePath, kReopenStore, nullptr) != 0) {
        // With nothing written this is an older store, which stays as it was.
        if (created) m_store->SortByChannel(nullptr, m_timeChannel, 1, -1, 1, -1);
        m_store->CloseCurFile();
    }
    if (!created) SetLastErrorText(reason);  // which opening a store has cleared
    return created ? 1 : 0;
}

int CCG3DumpImport::FailReading() const {
    ShowMessage(FileErrorText("read", m_inputPath, m_file.Error()));
    return 0;
}

void CCG3DumpImport::SelectDefaultColumns() {
    m_importFlags.clear();
    for (std::string const& title : m_layout.titles) {
        std::string const upper = ToUpper(title);
        bool const selected = std::any_of(std::begin(kDefaultColumns), std::end(kDefaultColumns),
                                          [&upper](std::string_view keyword) { return Contains(upper, keyword); });
        m_importFlags.push_back(selected ? 1 : 0);
    }
}

void CCG3DumpImport::DescribeChannels() {
    for (std::size_t position = 0; position < m_layout.titles.size(); ++position) {
        if (m_importFlags[position] == 0) continue;
        Column column;
        column.position = position;
        column.channel = static_cast<int>(m_channels.size());
        m_channels.push_back(DescribeColumn(column));
        if (position == m_layout.valueCount) {
            m_heightChannel = column.channel;
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
    date.templateFormat = m_dateFormat;
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
        channel.templateFormat = m_timeFormat;
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
            for (Column* const text : texts) {
                text->width = std::max(text->width, WithoutTrailingDots(TokenAt(line, text->position)).size());
            }
        }
        if (m_file.Error() != 0) return false;
    }
    for (Column const* const text : texts) {
        m_channels[static_cast<std::size_t>(text->channel)].arraySize = static_cast<int>(text->width);
    }
    return true;
}

bool CCG3DumpImport::ParseData() {
    for (std::size_t i = 0; i < m_layout.profiles.size(); ++i) {
        if (SeekData(m_layout.profiles[i])) {
            ParseProfile(m_layout.profiles[i]);
            WriteDates(i);
        }
        if (m_file.Error() != 0) {
            FailReading();
            return false;
        }
        if (m_columnFiles.Failed()) {
            ShowMessage(GetLastErrorText());
            return false;
        }
    }
    return true;
}

void CCG3DumpImport::ParseProfile(CG3LineRecord& profile) {
    profile.locationCount = 0;
    m_awaitsHeight = false;
    std::string_view line;
    while (NextDataLine(line) && !m_columnFiles.Failed()) {
        GetTokens(line, m_tokens, kCG3DataDelimiters);
        bool const isALine = !m_tokens.empty() && (m_tokens[0].front() == 'A' || m_tokens[0].front() == 'a');
        if (isALine && m_tokens.size() == 2) WriteHeight(NumberOf(m_tokens[1]));
        // Whatever else this line is, it is not the A-line of the data line before it.
        WriteHeight(kNoDataDouble);
        if (isALine || m_tokens.size() != m_layout.valueCount) continue;
        for (Column const& column : m_columns) WriteValue(column, m_tokens[column.position]);
        m_awaitsHeight = m_heightChannel >= 0;
        ++profile.locationCount;
    }
    WriteHeight(kNoDataDouble);
}

void CCG3DumpImport::WriteValue(Column const& column, std::string_view token) {
    switch (column.kind) {
        case Column::Kind::Number:
            WriteDouble(column.channel, NumberOf(token));
            break;
        case Column::Kind::Text:
            WriteText(column, token);
            break;
        case Column::Kind::Time: {
            double value = kNoDataDouble;
            if (!token.starts_with('*')) m_dateTime.GetDoubleTime(token, m_timeFormat, DecimalsOf(token), value);
            WriteDouble(column.channel, value);
            break;
        }
        case Column::Kind::Short: {
            std::int16_t const value = token.starts_with('*') ? kNoDataShort : ShortInRange(ReadNumber(token));
            if (char* const out = m_columnFiles.Append(column.channel, sizeof value)) {
                StoreLittle16(out, static_cast<std::uint16_t>(value));
            }
            break;
        }
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

void CCG3DumpImport::WriteHeight(double value) {
    if (m_awaitsHeight) WriteDouble(m_heightChannel, value);
    m_awaitsHeight = false;
}

void CCG3DumpImport::WriteDates(std::size_t profile) {
    double value = kNoDataDouble;
    if (profile < m_layout.dates.size()) m_dateTime.GetDoubleDate(m_layout.dates[profile], m_dateFormat, value);
    int const channel = static_cast<int>(m_channels.size()) - 1;
    for (long i = 0; i < m_layout.profiles[profile].locationCount; ++i) WriteDouble(channel, value);
}

bool CCG3DumpImport::WriteStore() {
    for (CG3LineRecord const& profile : m_layout.profiles) {
        m_store->AddProfileToStructure(profile.name, profile.locationCount);
    }
    for (NorvaChannelStruct const& channel : m_channels) m_store->AddChannelToStructure(channel);
    if (m_store->SaveProfileStructure() == 0 || m_store->SaveChannelStructure() == 0 ||
        m_store->StartWriteData() == 0) {
        return false;
    }
    for (int channel = 0; channel < m_columnFiles.Count(); ++channel) {
        if (m_columnFiles.HandOver(channel, *m_store)) continue;
        std::string const reason = GetLastErrorText();
        ShowMessage(reason.empty() ? "Couldn't write the file : " + m_store->GetNorvaFileName() : reason);
        return false;
    }
    return m_store->EndWriteData() != 0;
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

int DescribeCG3File(DescribeJob const& job, FileDescription& description) {
    CLineReader file;
    CG3DumpLayout layout;
    if (!file.Open(job.inputPath) || !ReadCG3DumpLayout(file, layout)) {
        SetLastErrorText(FileErrorText("read", job.inputPath, file.Error()));
        return 0;
    }
    if (layout.titles.empty()) {
        SetLastErrorText("Couldn't read the file : " + job.inputPath +
                         "\nNo line of column titles (STATION) follows two lines of dashes.");
        return 0;
    }
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
    return 1;
}

int RunCG3Import(ImportJob const& job) {
    CCG3DumpImport importer;
    importer.SetInputPath(job.inputPath);
    if (job.store->SetFileName(job.storePath, kCreateStore, job.owner) == 0) return 0;
    return importer.Import(job.store);
}

}  // namespace norva
