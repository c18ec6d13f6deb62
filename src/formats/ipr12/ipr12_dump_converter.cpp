#include "formats/ipr12/ipr12_dump_converter.h"

#include "exchange/exception_guard.h"
#include "exchange/report_places.h"
#include "formats/ipr12/ipr12_format.h"
#include "platform/numbers.h"
#include "platform/text.h"
#include "platform/tokens.h"

#include <algorithm>
#include <utility>

namespace norva {

namespace {

constexpr std::string_view kTemporaryName = "IPR_temp.xyz";
constexpr std::string_view kMissing = "*";
constexpr CDelimiters kDelimiters{" ,|\t\n#"};
constexpr CDelimiters kReadingDelimiters{" ,\t\n#"};
constexpr std::size_t kStationLineTokens = 10;
constexpr std::size_t kHeaderLines = 5;
constexpr std::size_t kChannelLineTokens = 6;
/// Slots before the "|" of a reading line.
constexpr std::size_t kLeftSlots = 7;
/// Every reading of a station repeats them, so that without a bound a short dump makes a text of any size.
constexpr std::size_t kMostStationValues = 255;

std::string const& TitleAt(std::vector<std::string> const& titles, std::size_t index) {
    static std::string const missing(kMissing);
    return index < titles.size() ? titles[index] : missing;
}

/// Puts the tokens of the text into the last of the `count` slots that end with `last`, in order; false, with the slots
/// as they are, when there are more.
bool FillFromRight(std::string_view text, std::size_t last, std::size_t count, CIPR12DumpConverter::Slots& slots) {
    CIPR12DumpConverter::Slots tokens;
    std::size_t found = 0;
    CTokenCursor cursor(text, kReadingDelimiters);
    for (std::string_view token; cursor.Next(token); ++found) {
        if (found == count) return false;
        tokens[found] = token;
    }
    std::copy_n(tokens.begin(), found, slots.begin() + static_cast<std::ptrdiff_t>(last + 1 - found));
    return true;
}

}  // namespace

std::array<ReportPart, 5> const CIPR12DumpConverter::kNoLines = {{{"lines of headers", 0, 0},
                                                                  {"lines of stations", 0, 0},
                                                                  {"lines of readings", 0, 0},
                                                                  {"empty", 0, 0},
                                                                  {"left out", 0, 0}}};

Status CIPR12DumpConverter::ConvertToXYZ(std::string const& inputPath, std::string const& outputPath) {
    if (!m_file.Open(inputPath)) return Shown(Status::Failure("Could not open the file!"));
    bool const accepted = CheckFormat();
    if (!accepted && m_file.Error() == 0) {
        return Shown(Status::Failure("Could not handle data format!\nPlease check the IPR_12 format."));
    }
    CReplacementFile output;
    if (accepted && !output.Open(outputPath)) {
        return Status::FileFailure("create", outputPath, output.Error()).Silent();
    }
    if (accepted && m_file.Rewind()) {
        m_lineNumber = m_pending = m_pendingBytes = 0;
        m_parts = kNoLines;
        ReadHeader();
        CountAs(kHeaders);
        WriteTitles(output);
        ConvertData(&output);
    }
    if (m_file.Error() != 0) return Shown(Status::FileFailure("read", inputPath, m_file.Error()));
    if (m_wideStationLine != 0) return Shown(TooManyStationValues(inputPath));
    m_source.report.bytesRead = m_file.Offset();
    m_source.report.sourceSize = m_file.Length();
    m_file.Close();
    if (!output.Commit(false)) return Shown(Status::FileFailure("write", outputPath, output.Error()));
    return {};
}

Status CIPR12DumpConverter::TooManyStationValues(std::string const& inputPath) const {
    return Status::Failure("Couldn't read the file", inputPath,
                           "The line has " + std::to_string(m_stationValues.size()) +
                               " station values; a station of an IPR_12 dump has at most " +
                               std::to_string(kMostStationValues) + ".")
        .At("line " + std::to_string(m_wideStationLine));
}

bool CIPR12DumpConverter::CheckFormat() {
    bool found = false;
    while (!found && NextLine()) found = TokenContains("Station");
    if (!found || m_tokens.size() != kStationLineTokens) return false;
    std::size_t lines = 1;
    while (lines <= kHeaderLines && NextLine() && !TokenContains("*")) ++lines;
    return lines == kHeaderLines;
}

void CIPR12DumpConverter::ReadHeader() {
    enum class Section { None, Station, Readings };
    Section section = Section::None;
    int step = 0;
    while (NextLine()) {
        if (TokenContains("P-Line:")) {
            m_lineName = Token(1);
            continue;
        }
        if (TokenContains("Station")) {
            section = Section::Station;
            step = 1;
            KeepTokens(1, m_stationTitles);
        } else if (section == Section::Station && m_tokens.size() == kChannelLineTokens) {
            step = 2;
            m_channelTitles.insert(m_channelTitles.end(), m_tokens.begin(), m_tokens.end());
        }
        if (TokenContains("D:")) {
            section = Section::Readings;
            step = 1;
            KeepTokens(1, m_voltageTitles);
        } else if (section == Section::Readings && step == 1) {
            step = 2;
            KeepTokens(0, m_firstReadingTitles);
        } else if (section == Section::Readings) {
            KeepTokens(0, m_secondReadingTitles);
            return;
        }
    }
}

void CIPR12DumpConverter::WriteTitles(CReplacementFile& output) {
    m_row = "//Data from sicntrex IPR_12 MULTI-CHANNEL dump file \n/";
    for (char const* title : {"PLine", "R1Y", "R2Y"}) AppendRightAligned(m_row, title, 10);
    for (std::size_t i = 0; i < m_channelTitles.size(); ++i) {
        std::string const& title = m_channelTitles[i];
        switch (i) {
            case 1:
                AppendRightAligned(m_row, "C1Y", 10);
                break;
            case 2:
                AppendRightAligned(m_row, "C2Y", 10);
                break;
            case 3:
                AppendRightAligned(m_row, title + "(mA)", 10);
                break;
            case 4:
                AppendRightAligned(m_row, title + "(Sec)", 14);
                break;
            default:
                AppendRightAligned(m_row, title, 10);
        }
    }
    for (std::string const& title : m_voltageTitles) AppendRightAligned(m_row, title + "(mV)", 15);
    for (Strings const* titles : {&m_firstReadingTitles, &m_secondReadingTitles}) {
        for (std::size_t i = 0; i < kLeftSlots; ++i) AppendRightAligned(m_row, TitleAt(*titles, i) + "(mV)", 15);
    }
    AppendRightAligned(m_row, "Ms", 12);
    AppendRightAligned(m_row, TitleAt(m_firstReadingTitles, 8), 12);
    AppendRightAligned(m_row, "RMS", 10);
    AppendRightAligned(m_row, TitleAt(m_secondReadingTitles, 8), 10);
    m_row.push_back('\n');

    m_lineName.resize(ConvertLineName(m_lineName).size());
    if (!m_lineName.empty()) m_lineCoordinate = ConvertPosition(m_lineName);
    m_row.append("Line  ").append(m_lineName).append(" \n");
    output.Write(m_row);
    m_textLines = 3;
}

void CIPR12DumpConverter::ConvertData(CReplacementFile* output) {
    Group group = Group::None;
    int step = 0;
    m_readingNumber = 0;
    m_stationGroups = 0;
    m_surveyLines.assign(1, {m_lineName, 0});
    while ((output == nullptr || output->Error() == 0) && NextLine()) {
        if (TokenContains("---")) {
            StartSurveyLine(output);
            CountAs(kHeaders);
            group = Group::Inside;
            step = 0;
            continue;
        }
        if (TokenContains("*")) {
            CountAs(kHeaders);
            group = Group::Inside;
            step = 0;
            continue;
        }
        bool const isPositions = group == Group::Inside && step == 0;
        if (isPositions) {
            step = 1;
            KeepTokens(1, m_positions);
        } else if (group == Group::Inside && step == 1) {
            step = 2;
            KeepTokens(0, m_stationValues);
            if (m_stationValues.size() > kMostStationValues) {
                m_wideStationLine = m_lineNumber;
                return;
            }
            for (Strings* values : {&m_positions, &m_stationValues}) {
                for (std::string& value : *values) {
                    value = ConvertPosition(value);
                    if (value.empty()) value = kMissing;
                }
            }
            m_readingNumber = 0;
            ++m_stationGroups;
            CountAs(kStations);
            continue;
        }
        if (TokenContains(":")) {
            step = 1;
            group = Group::Readings;
            ConvertReading(output);
            CountAs(kReadings);
        } else if (isPositions) {
            CountAs(kStations);
        } else {
            NoteLine(m_source.report.leftOut, m_line);
            CountAs(kLeftOut);
        }
    }
}

void CIPR12DumpConverter::StartSurveyLine(CReplacementFile* output) {
    std::string name;
    while (NextLine() && !TokenContains("*")) {
        if (TokenContains("P-Line:")) name = Token(1);
    }
    if (name.empty()) return;
    m_surveyLines.push_back({std::string(ConvertLineName(name)), 0});
    m_row.assign("LINE  ").append(ConvertLineName(name)).append("\n");
    if (output == nullptr) return;
    output->Write(m_row);
    ++m_textLines;
}

void CIPR12DumpConverter::ConvertReading(CReplacementFile* output) {
    ++m_readingNumber;
    ++m_surveyLines.back().readings;
    KeepTokens(1, m_recordValues);
    std::uint64_t const sourceLine = m_lineNumber;
    std::string_view line;
    bool isWhole = ReadLine(line);
    m_firstReadingLine.assign(isWhole ? line : std::string_view());
    if (!ReadSlots(m_firstReadingLine, m_firstReadingValues)) NoteLine(m_source.report.moreValues, m_firstReadingLine);
    isWhole = ReadLine(line);
    if (!isWhole) line = {};
    if (!ReadSlots(line, m_secondReadingValues)) NoteLine(m_source.report.moreValues, line);
    if (!isWhole) ++m_source.report.cutRecords.count;
    if (output == nullptr) return;

    std::size_t const k = m_readingNumber;
    std::string_view const start = k <= kSlots ? PositionForReading(k - 1) : kMissing;
    std::string_view end = k < kSlots ? PositionForReading(k) : kMissing;
    std::string beyond;
    if (k == kSlots && m_positions.size() >= kSlots) {
        // The ninth electrode pair ends beyond the last position: one more step of the same length.
        AppendInteger(beyond, 2 * std::int64_t{ReadInt(m_positions[8])} - ReadInt(m_positions[7]));
        end = beyond;
    }
    m_fields.resize(3 + m_stationValues.size() + m_recordValues.size() + 2 * kSlots);
    TextField* field = m_fields.data();
    for (std::string_view const position : {std::string_view(m_lineCoordinate), start, end}) *field++ = {position, 10};
    for (std::string const& value : m_stationValues) *field++ = {value, 10};
    for (std::string const& value : m_recordValues) *field++ = {value, 10};
    for (Slots const* slots : {&m_firstReadingValues, &m_secondReadingValues}) {
        for (std::size_t i = 0; i < kLeftSlots; ++i) *field++ = {(*slots)[i], 10};
    }
    for (std::size_t i = kLeftSlots; i < kSlots; ++i) *field++ = {m_firstReadingValues[i], 12};
    for (std::size_t i = kLeftSlots; i < kSlots; ++i) *field++ = {m_secondReadingValues[i], 10};
    m_row.clear();
    AppendRightAligned(m_row, m_fields);
    m_row.push_back('\n');
    output->Write(m_row);
    ++m_source.rows;
    m_source.lines.Add(++m_textLines, sourceLine);
}

std::string_view CIPR12DumpConverter::PositionForReading(std::size_t index) const {
    return index < m_positions.size() ? std::string_view(m_positions[index]) : kMissing;
}

bool CIPR12DumpConverter::ReadSlots(std::string_view line, Slots& slots) {
    slots.fill(kMissing);
    std::size_t const bar = line.find('|');
    bool const leftFits = FillFromRight(line.substr(0, bar), kLeftSlots - 1, kLeftSlots, slots);
    if (bar == std::string_view::npos) return leftFits;
    std::string_view const right = line.substr(bar + 1);
    bool const rightFits =
        right.find('|') == std::string_view::npos && FillFromRight(right, kSlots - 1, kSlots - kLeftSlots, slots);
    return leftFits && rightFits;
}

std::string CIPR12DumpConverter::ConvertPosition(std::string_view value) {
    std::size_t directions = 0;
    std::size_t length = value.size();
    bool isNegative = false;
    for (std::size_t i = 0; i < value.size(); ++i) {
        char const c = value[i];
        bool const isDirection = c == 'N' || c == 'S' || c == 'E' || c == 'W';
        if (isDirection || c == '+') length = std::min(length, i);
        if (!isDirection) continue;
        ++directions;
        isNegative = c == 'S' || c == 'W';
    }
    std::string position(directions == 1 && isNegative ? "-" : "");
    return position.append(value.substr(0, length));
}

std::string_view CIPR12DumpConverter::ConvertLineName(std::string_view name) {
    return name.substr(0, name.find('+'));
}

bool CIPR12DumpConverter::NextLine() {
    while (ReadLine(m_line)) {
        std::string_view const line = Trim(m_line);
        if (line.empty()) {
            CountEmptyLine();
            continue;
        }
        GetTokens(line, m_tokens, kDelimiters);
        return true;
    }
    m_tokens.clear();
    return false;
}

bool CIPR12DumpConverter::ReadLine(std::string_view& line) {
    std::uint64_t const offset = m_file.Offset();
    if (!m_file.Next(line)) return false;
    ++m_lineNumber;
    ++m_pending;
    m_pendingBytes += m_file.Offset() - offset;
    m_lineBytes = m_file.Offset() - offset;
    return true;
}

void CIPR12DumpConverter::CountEmptyLine() {
    ReportPart& part = m_parts[kEmpty];
    ++part.count;
    part.bytes += m_lineBytes;
    --m_pending;
    m_pendingBytes -= m_lineBytes;
}

void CIPR12DumpConverter::CountAs(Part kind) {
    ReportPart& part = m_parts[kind];
    part.count += std::exchange(m_pending, 0);
    part.bytes += std::exchange(m_pendingBytes, 0);
}

void CIPR12DumpConverter::NoteLine(ReportFinding& finding, std::string_view line) {
    AddFinding(finding, m_lineNumber, 0, line);
}

ConvertedSource CIPR12DumpConverter::TakeSource() {
    m_source.report.unit = "lines";
    m_source.report.unitsRead = m_lineNumber;
    m_source.report.parts.assign(m_parts.begin(), m_parts.end());
    return std::move(m_source);
}

std::string_view CIPR12DumpConverter::Token(std::size_t index) const {
    return index < m_tokens.size() ? m_tokens[index] : std::string_view();
}

bool CIPR12DumpConverter::TokenContains(std::string_view text) const {
    return Contains(Token(0), text);
}

void CIPR12DumpConverter::KeepTokens(std::size_t first, Strings& values) const {
    first = std::min(first, m_tokens.size());
    values.assign(m_tokens.begin() + static_cast<std::ptrdiff_t>(first), m_tokens.end());
}

Status CIPR12DumpConverter::Describe(std::string const& inputPath, FileDescription& description) {
    bool const accepted = m_file.Open(inputPath) && CheckFormat() && m_file.Rewind();
    if (accepted) {
        m_lineNumber = 0;
        ReadHeader();
        m_lineName.resize(ConvertLineName(m_lineName).size());
        ConvertData(nullptr);
    }
    if (m_file.Error() != 0) return Status::FileFailure("read", inputPath, m_file.Error());
    if (!accepted) return Status::Failure({});
    if (m_wideStationLine != 0) return TooManyStationValues(inputPath);
    std::int64_t readings = 0;
    FileDescription::Table lines{"lines", {"name", "readings"}, {}};
    for (SurveyLine const& line : m_surveyLines) {
        lines.rows.push_back({line.name, line.readings});
        readings += line.readings;
    }
    FileDescription::Table columns{"columns", {"title"}, {}};
    for (Strings const* titles : {&m_channelTitles, &m_voltageTitles, &m_firstReadingTitles, &m_secondReadingTitles}) {
        for (std::string const& title : *titles) columns.rows.push_back({title});
    }
    description.AddFact("station groups", m_stationGroups);
    description.AddFact("readings", readings);
    description.tables = {std::move(columns), std::move(lines)};
    return {};
}

Status DescribeIpr12File(DescribeJob const& job, FileDescription& description) {
    return CIPR12DumpConverter().Describe(job.inputPath, description);
}

Status ImportIpr12File(ImportJob& job) {
    return RunConvertedImport(job, kTemporaryName, ConvertBy<CIPR12DumpConverter>, ConvertBy<CIPR12DumpConverter>);
}

Status InspectIpr12File(std::string const& path, InspectionOptions const& options, Inspection& inspection) {
    InspectionOptions told = options;
    told.separator.reset();
    told.headerLine.reset();
    return InspectConvertedText(path, kTemporaryName, ConvertBy<CIPR12DumpConverter>, told, inspection);
}

Status PreviewIpr12File(std::string const& path, TextPreview& preview) {
    return PreviewConvertedText(path, kTemporaryName, ConvertBy<CIPR12DumpConverter>, preview);
}

}  // namespace norva
