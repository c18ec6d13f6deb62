#include "formats/column_text/column_guess.h"
#include "formats/column_text/header_labels.h"
#include "formats/column_text/text_line.h"
#include "norva/column_text.h"
#include "norva/converters.h"
#include "platform/numbers.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <utility>

namespace norva {

namespace {

constexpr std::array<std::pair<std::string_view, ColumnType>, 9> kTypeNames = {{{"text", ColumnType::Text},
                                                                                {"float", ColumnType::Float},
                                                                                {"double", ColumnType::Double},
                                                                                {"short", ColumnType::Short},
                                                                                {"long", ColumnType::Long},
                                                                                {"date", ColumnType::Date},
                                                                                {"time", ColumnType::Time},
                                                                                {"geographic", ColumnType::Geographic},
                                                                                {"skip", ColumnType::Skipped}}};

// Fields of a SeaSPY record with a type of their own.
constexpr int kSeaSpyDate = 0;
constexpr int kSeaSpyTime = 1;
constexpr int kSeaSpyShorts[] = {3, 4, 9, 10};  // FSignal, FMeasureTime, RSignal, RMeasureTime
constexpr int kSeaSpyTimeTemplate = 1;

std::string Count(std::size_t count, char const* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string Quoted(std::string_view text) {
    constexpr std::size_t longest = 100;
    return "\"" + std::string(text.substr(0, longest)) + (text.size() > longest ? "...\"" : "\"");
}

/// The values of a preview line as the dialog shows them.
std::vector<std::string> SplitRow(std::string_view line, bool isCsv) {
    std::vector<std::string_view> parts;
    GetTokens(line, parts, isCsv ? ",\n" : " ,\t\n");
    std::vector<std::string> values;
    values.reserve(parts.size());
    for (std::string_view const part : parts) values.emplace_back(TrimOf(part, "\""));
    return values;
}

bool IsDataLine(PreviewLine const& line) {
    return !IsCommentLine(line.text) && !HoldsSpacedLineWord(line.text);
}

bool IsNumber(std::string_view text) {
    std::size_t const length = ScanNumber(text).consumed;
    return length > 0 && length == text.size();
}

Status Misfit(TextPreview const& preview, std::string reason) {
    return Status::Failure("The settings do not fit the file", preview.path, std::move(reason));
}

Status CheckColumn(TextPreview const& preview, NorvaChannelStruct const& column, std::size_t index) {
    std::string const which = "Column " + std::to_string(index + 1) + " (" + Quoted(column.name) + "): ";
    if (column.dataType < DataType::kSkipped || column.dataType > DataType::kShort) {
        return Misfit(preview, which + "there is no data type " + std::to_string(column.dataType) + ".");
    }
    if (column.dataType == DataType::kText && column.arraySize < 1) {
        return Misfit(preview, which + "a text has 1 character at least.");
    }
    ColumnType const type = TypeOf(column);
    bool const hasTemplate = type == ColumnType::Date || type == ColumnType::Time;
    ValueTemplates const& templates = type == ColumnType::Date ? DateTemplates() : TimeTemplates();
    // Without a template (-1) a date or time is read as by the first one.
    if (hasTemplate && column.templateFormat != -1 && templates.IndexOf(column.templateFormat) < 0) {
        return Misfit(preview, which + "there is no template " + std::to_string(column.templateFormat) + " of a " +
                                   std::string(ColumnTypeName(type)) + ".");
    }
    return {};
}

bool IsAllowedInSeaSpy(int column, ColumnType type) {
    if (type == ColumnType::Skipped) return true;
    // Dates and times of a log have a form of their own, which no other column has.
    if (column == kSeaSpyDate) return type == ColumnType::Date;
    if (column == kSeaSpyTime) return type == ColumnType::Time;
    if (type == ColumnType::Date || type == ColumnType::Time) return false;
    bool const isShort = std::ranges::find(kSeaSpyShorts, column) != std::end(kSeaSpyShorts);
    return !isShort || type != ColumnType::Geographic;
}

}  // namespace

ColumnType TypeOf(NorvaChannelStruct const& column) {
    switch (column.dataType) {
        case DataType::kFloat:
            return ColumnType::Float;
        case DataType::kDouble:
            switch (column.displayFormat) {
                case DisplayFormat::kDate:
                    return ColumnType::Date;
                case DisplayFormat::kTime:
                    return ColumnType::Time;
                case DisplayFormat::kGeographic:
                    return ColumnType::Geographic;
                default:
                    return ColumnType::Double;
            }
        case DataType::kInt:
        case DataType::kLong:
            return ColumnType::Long;
        case DataType::kText:
            return ColumnType::Text;
        case DataType::kShort:
            return ColumnType::Short;
        default:
            return ColumnType::Skipped;
    }
}

std::string_view ColumnTypeName(ColumnType type) {
    return kTypeNames[static_cast<std::size_t>(type)].first;
}

std::optional<ColumnType> FindColumnType(std::string_view name) {
    auto const found = std::ranges::find(kTypeNames, name, &decltype(kTypeNames)::value_type::first);
    return found == kTypeNames.end() ? std::nullopt : std::optional(found->second);
}

int ValueTemplates::IndexOf(int code) const {
    auto const found = std::ranges::find(codes, code);
    return found == codes.end() ? -1 : static_cast<int>(found - codes.begin());
}

ValueTemplates const& DateTemplates() {
    static ValueTemplates const templates = [] {
        ValueTemplates all;
        CNorvaDateTime().GetImportDateTemplate(all.names, all.codes);
        return all;
    }();
    return templates;
}

ValueTemplates const& TimeTemplates() {
    static ValueTemplates const templates = [] {
        ValueTemplates all;
        CNorvaDateTime().GetImportTimeTemplate(all.names, all.codes);
        return all;
    }();
    return templates;
}

CColumnTextDraft::CColumnTextDraft(TextPreview preview) : m_preview(std::move(preview)) {
    auto const first = std::ranges::find_if(m_preview.lines, IsDataLine);
    m_firstSkip = m_headerCount = static_cast<int>(first - m_preview.lines.begin());
    m_settings.skip = first == m_preview.lines.end() ? 0 : m_headerCount;

    SplitRows();
    ResetTitles(m_rows.empty() ? 0 : m_rows.front().size());
    Guess();
    if (m_preview.isSeaSpy) {
        PresetSeaSpy();
        return;
    }
    ApplyClasses();
    if (m_preview.isCsv && m_firstSkip < LastSkip()) static_cast<void>(SetSkip(m_firstSkip + 1));
}

HeaderDelimiters CColumnTextDraft::UsualDelimiters() const {
    HeaderDelimiters delimiters;
    delimiters.comma = !m_preview.isSeaSpy;
    delimiters.tab = !m_preview.isSeaSpy && !m_preview.isCsv;
    delimiters.space = m_preview.isSeaSpy || !m_preview.isCsv;
    return delimiters;
}

void CColumnTextDraft::SplitRows() {
    m_rows.clear();
    for (auto i = static_cast<std::size_t>(m_settings.skip); i < m_preview.lines.size(); ++i) {
        m_rows.push_back(SplitRow(m_preview.lines[i].text, m_preview.isCsv));
    }
}

void CColumnTextDraft::ResetTitles(std::size_t count) {
    m_titles.resize(count);
    for (std::size_t i = 0; i < count; ++i) m_titles[i] = "Ch" + std::to_string(i + 1);
}

void CColumnTextDraft::Guess() {
    m_classes = GuessColumns(m_rows, m_titles, m_settings.columns);
}

void CColumnTextDraft::ApplyClasses() {
    for (std::size_t i = 0; i < m_titles.size(); ++i) ApplyClass(m_classes[i], m_settings.columns[i]);
    if (m_settings.labelColumn >= 0) Column(m_settings.labelColumn).dataType = DataType::kSkipped;
}

void CColumnTextDraft::PresetSeaSpy() {
    std::size_t const count = m_titles.size();
    m_titles = m_preview.titles;
    while (m_titles.size() < count) m_titles.push_back("CH" + std::to_string(m_titles.size() + 1));
    if (m_titles.size() == count) SplitTitles();
    m_titles.resize(count);

    auto const preset = [&](int at, int dataType, int displayFormat, int templateFormat) {
        if (at >= ColumnCount()) return;
        NorvaChannelStruct& column = Column(at);
        column.dataType = dataType;
        column.displayFormat = displayFormat;
        column.templateFormat = templateFormat;
    };
    preset(kSeaSpyDate, DataType::kDouble, DisplayFormat::kDate, 0);
    preset(kSeaSpyTime, DataType::kDouble, DisplayFormat::kTime, kSeaSpyTimeTemplate);
    for (int const at : kSeaSpyShorts) preset(at, DataType::kShort, DisplayFormat::kFixed, -1);
}

void CColumnTextDraft::SplitTitles() {
    for (std::size_t i = 0; i < m_titles.size(); ++i) SplitNameAndUnits(m_titles[i], m_settings.columns[i]);
}

NorvaChannelStruct& CColumnTextDraft::Column(int column) {
    if (column < 0) throw std::out_of_range("column " + std::to_string(column));
    return m_settings.columns.at(static_cast<std::size_t>(column));
}

Status CColumnTextDraft::SetSkip(int count) {
    if (count < m_firstSkip || count > LastSkip()) {
        std::string const can = m_firstSkip > LastSkip()
                                    ? "no line of the preview holds data."
                                    : std::to_string(m_firstSkip) + " to " + std::to_string(LastSkip()) + " can.";
        return Misfit(m_preview,
                      Count(static_cast<std::size_t>(std::max(count, 0)), "line") + " cannot be skipped: " + can);
    }
    if (count != m_settings.skip) m_settings.skip = m_headerCount = count;
    SplitRows();
    std::size_t const columns = m_rows.front().size();
    if (columns != m_titles.size()) {
        ResetTitles(columns);
        std::size_t const known = std::min(m_settings.columns.size(), columns);
        m_settings.columns.resize(columns);
        for (std::size_t i = known; i < columns; ++i) m_settings.columns[i].name = m_titles[i];
        m_classes.resize(columns, ColumnClass::None);
        if (m_settings.labelColumn >= ColumnCount()) m_settings.labelColumn = -1;
    }
    if (!m_isEdited) Guess();
    ApplyClasses();
    return {};
}

Status CColumnTextDraft::TakeHeaderLine(int line, HeaderDelimiters const& delimiters, NumbersAsNames numbers) {
    auto const fail = [this](std::string reason) {
        return Status::Failure("The columns cannot be named", m_preview.path, std::move(reason));
    };
    if (line < 0 || line > LastSkip()) {
        return fail("There is no line " + std::to_string(line + 1) + " among the first " +
                    Count(m_preview.lines.size(), "line") + " with text.");
    }
    PreviewLine const& header = m_preview.lines[static_cast<std::size_t>(line)];
    std::vector<std::string> titles = SplitHeaderLine(header.text, m_titles.size(), delimiters, m_preview.readsHyphens);
    std::string const place = "Line " + std::to_string(header.number);
    if (titles.size() != m_titles.size()) {
        return fail(
            place + " has " + Count(CountHeaderLabels(header.text, delimiters, m_preview.readsHyphens), "name") +
            ", the data " + Count(m_titles.size(), "column") + "; the first row is " +
            Quoted(m_rows.empty() ? "" : m_preview.lines[static_cast<std::size_t>(m_settings.skip)].text) + ".");
    }
    if (numbers == NumbersAsNames::Refuse && !titles.empty() && std::ranges::all_of(titles, IsNumber)) {
        return fail(place + " is made of numbers: " + Quoted(header.text) + ".");
    }
    m_titles = std::move(titles);
    m_isEdited = true;
    SplitTitles();
    return {};
}

Status CColumnTextDraft::SetType(int column, ColumnType type) {
    NorvaChannelStruct& settings = Column(column);
    if (!Allows(column, type)) {
        return Misfit(m_preview, "Column " + std::to_string(column + 1) + " (" + Quoted(settings.name) +
                                     ") of such a log cannot be of the type " + std::string(ColumnTypeName(type)) +
                                     ".");
    }
    auto const at = static_cast<std::size_t>(column);
    m_isEdited = true;
    switch (type) {
        case ColumnType::Text:
            ChooseText(at);
            break;
        case ColumnType::Float:
        case ColumnType::Double:
            settings.dataType = type == ColumnType::Float ? DataType::kFloat : DataType::kDouble;
            ChooseNumberFormat(at);
            break;
        case ColumnType::Short:
            settings.dataType = DataType::kShort;
            break;
        case ColumnType::Long:
            settings.dataType = DataType::kLong;
            break;
        case ColumnType::Date:
        case ColumnType::Time:
            ChooseTemplate(column, type);
            break;
        case ColumnType::Geographic:
            ChooseGeographic(at);
            break;
        case ColumnType::Skipped:
            settings.dataType = DataType::kSkipped;
            break;
    }
    return {};
}

void CColumnTextDraft::ChooseText(std::size_t column) {
    NorvaChannelStruct& settings = m_settings.columns[column];
    settings.dataType = DataType::kText;
    for (std::vector<std::string> const& row : m_rows) {
        if (column < row.size())
            settings.arraySize = std::max(settings.arraySize, static_cast<int>(row[column].size()));
    }
}

void CColumnTextDraft::ChooseNumberFormat(std::size_t column) {
    NorvaChannelStruct& settings = m_settings.columns[column];
    bool const hasExponent = std::ranges::any_of(m_rows, [column](std::vector<std::string> const& row) {
        return column < row.size() && row[column].find('E', 1) != std::string::npos;
    });
    settings.displayFormat = hasExponent ? DisplayFormat::kExponent : DisplayFormat::kFixed;
    settings.decimalPlaces = hasExponent ? 3 : 6;
}

void CColumnTextDraft::ChooseTemplate(int column, ColumnType type) {
    NorvaChannelStruct& settings = Column(column);
    bool const isDate = type == ColumnType::Date;
    settings.dataType = DataType::kDouble;
    settings.displayFormat = isDate ? DisplayFormat::kDate : DisplayFormat::kTime;
    int const fitting = FittingTemplate(column, type);
    if (fitting < 0) return;
    settings.templateFormat = (isDate ? DateTemplates() : TimeTemplates()).codes[static_cast<std::size_t>(fitting)];
}

int CColumnTextDraft::FittingTemplate(int column, ColumnType dateOrTime) const {
    if (m_rows.empty() || static_cast<std::size_t>(column) >= m_rows.front().size()) return -1;
    std::string const& value = m_rows.front()[static_cast<std::size_t>(column)];
    return dateOrTime == ColumnType::Date ? MatchDateTemplate(DateTemplates().names, value)
                                          : MatchTimeTemplate(TimeTemplates().names, value);
}

void CColumnTextDraft::ChooseGeographic(std::size_t column) {
    NorvaChannelStruct& settings = m_settings.columns[column];
    settings.dataType = DataType::kDouble;
    settings.displayFormat = DisplayFormat::kGeographic;
    settings.templateFormat = 0;
    settings.decimalPlaces = 0;
    CNorvaGeographic const geographic;
    for (std::vector<std::string> const& row : m_rows) {
        if (column >= row.size()) continue;
        double value = 0;
        int places = 0;
        geographic.GetDoubleData(row[column], 0, value, places);
        settings.decimalPlaces = std::max(settings.decimalPlaces, places);
    }
}

Status CColumnTextDraft::SetTemplate(int column, int code) {
    NorvaChannelStruct& settings = Column(column);
    ColumnType const type = TypeOf(settings);
    std::string const which = "Column " + std::to_string(column + 1) + " (" + Quoted(settings.name) + "): ";
    if (type != ColumnType::Date && type != ColumnType::Time) {
        return Misfit(m_preview, which + "a template goes with the types date and time.");
    }
    if ((type == ColumnType::Date ? DateTemplates() : TimeTemplates()).IndexOf(code) < 0) {
        return Misfit(m_preview, which + "there is no template " + std::to_string(code) + " of a " +
                                     std::string(ColumnTypeName(type)) + ".");
    }
    settings.templateFormat = code;
    m_isEdited = true;
    return {};
}

Status CColumnTextDraft::SetTextSize(int column, int size) {
    NorvaChannelStruct& settings = Column(column);
    if (size < 1) {
        return Misfit(m_preview, "Column " + std::to_string(column + 1) + " (" + Quoted(settings.name) +
                                     "): a text has 1 character at least.");
    }
    settings.arraySize = size;
    m_isEdited = true;
    return {};
}

void CColumnTextDraft::SetName(int column, std::string name) {
    Column(column).name = name;
    m_titles[static_cast<std::size_t>(column)] = std::move(name);
    m_isEdited = true;
}

void CColumnTextDraft::SetUnits(int column, std::string units) {
    Column(column).units = std::move(units);
    m_isEdited = true;
}

void CColumnTextDraft::SetLabelColumn(int column) {
    if (column >= 0) Column(column).dataType = DataType::kSkipped;
    m_settings.labelColumn = std::max(column, -1);
    m_isEdited = true;
}

bool CColumnTextDraft::Allows(int column, ColumnType type) const {
    return !m_preview.isSeaSpy || column < 0 || IsAllowedInSeaSpy(column, type);
}

Status CColumnTextDraft::SetSettings(ColumnTextSettings settings) {
    if (Status status = CheckColumnText(m_preview, settings); !status) return status;
    m_settings = std::move(settings);
    m_headerCount = m_settings.skip;
    SplitRows();
    m_titles.clear();
    for (NorvaChannelStruct const& column : m_settings.columns) m_titles.push_back(column.name);
    m_classes.resize(m_titles.size(), ColumnClass::None);
    m_isEdited = true;
    return {};
}

ColumnTextSettings GuessColumnText(TextPreview const& preview) {
    return CColumnTextDraft(preview).Settings();
}

Status CheckColumnText(TextPreview const& preview, ColumnTextSettings const& settings) {
    std::size_t const lines = preview.lines.size();
    if (settings.skip < 0 || (settings.skip > 0 && static_cast<std::size_t>(settings.skip) >= lines)) {
        return Misfit(preview, "Of its first " + Count(lines, "line") + " with text, " + std::to_string(settings.skip) +
                                   " cannot be skipped.");
    }
    if (settings.reading) return Misfit(preview, "Text that is read by rules of its own is not supported.");
    if (lines > 0) {
        // The dialog counts the columns of the line that comes after those skipped, whatever it is.
        auto const top = preview.lines.begin() + settings.skip;
        auto const data = std::find_if(top, preview.lines.end(), IsDataLine);
        PreviewLine const& row = data == preview.lines.end() ? *top : *data;
        std::size_t const count = SplitRow(row.text, preview.isCsv).size();
        if (count != settings.columns.size() && SplitRow(top->text, preview.isCsv).size() != settings.columns.size()) {
            return Misfit(preview, Count(settings.columns.size(), "column") + " are set, but line " +
                                       std::to_string(row.number) + ", the first row, has " + std::to_string(count) +
                                       ": " + Quoted(row.text));
        }
    }
    int const columns = static_cast<int>(settings.columns.size());
    if (settings.labelColumn < -1 || settings.labelColumn >= columns) {
        return Misfit(preview, "There is no column " + std::to_string(std::int64_t{settings.labelColumn} + 1) +
                                   " to take the names of lines from.");
    }
    for (std::size_t i = 0; i < settings.columns.size(); ++i) {
        if (Status status = CheckColumn(preview, settings.columns[i], i); !status) return status;
        if (preview.isSeaSpy && !IsAllowedInSeaSpy(static_cast<int>(i), TypeOf(settings.columns[i]))) {
            return Misfit(preview, "Column " + std::to_string(i + 1) + " of such a log cannot be of the type " +
                                       std::string(ColumnTypeName(TypeOf(settings.columns[i]))) + ".");
        }
    }
    return {};
}

}  // namespace norva
