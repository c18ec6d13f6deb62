#include "formats/column_text/ascii_import_dlg.h"

#include "formats/column_text/delimiters_dlg.h"
#include "formats/column_text/set_channels_template.h"
#include "formats/column_text/text_line.h"
#include "norva/converters.h"
#include "platform/numbers.h"
#include "platform/text.h"
#include "ui/messages.h"

#include <algorithm>

namespace norva {

using namespace ids::SetChannels;

namespace {

constexpr int kTypeRadios[] = {kText, kFloat, kDouble, kShort, kLong, kDate, kTime, kGeographic, kSkipColumn};

// Fields of a SeaSPY record with a type of their own.
constexpr int kSeaSpyDate = 0;
constexpr int kSeaSpyTime = 1;
constexpr int kSeaSpyShorts[] = {3, 4, 9, 10};  // FSignal, FMeasureTime, RSignal, RMeasureTime
constexpr int kSeaSpyTimeTemplate = 1;

std::vector<std::string> SplitRow(std::string_view line, int csv) {
    std::vector<std::string_view> parts;
    GetTokens(line, parts, csv != 0 ? ",\n" : " ,\t\n");
    std::vector<std::string> tokens;
    tokens.reserve(parts.size());
    for (std::string_view const part : parts) tokens.emplace_back(TrimOf(part, "\""));
    return tokens;
}

int TypeRadio(NorvaChannelStruct const& column) {
    switch (column.dataType) {
        case DataType::kFloat:
            return kFloat;
        case DataType::kDouble:
            switch (column.displayFormat) {
                case DisplayFormat::kDate:
                    return kDate;
                case DisplayFormat::kTime:
                    return kTime;
                case DisplayFormat::kGeographic:
                    return kGeographic;
                default:
                    return kDouble;
            }
        case DataType::kInt:
        case DataType::kLong:
            return kLong;
        case DataType::kText:
            return kText;
        case DataType::kShort:
            return kShort;
        default:
            return kSkipColumn;
    }
}

int IndexOf(std::vector<int> const& codes, int code) {
    auto const found = std::ranges::find(codes, code);
    return found == codes.end() ? -1 : static_cast<int>(found - codes.begin());
}

}  // namespace

CAsciiImportDlg::CAsciiImportDlg() : CDialog(4003) {}

void CAsciiImportDlg::SetSeaSpy(int layout, std::string headerText) {
    m_seaSpyLayout = layout;
    m_seaSpyHeader = std::move(headerText);
}

void CAsciiImportDlg::Prepare() {
    if (m_columns == nullptr) return;
    auto const isData = [](std::string const& line) { return !IsCommentLine(line) && !HoldsSpacedLineWord(line); };
    auto const first = std::ranges::find_if(m_lines, isData);
    m_headerCount = static_cast<int>(first - m_lines.begin());
    m_skipCount = first == m_lines.end() ? 0 : m_headerCount;
    m_firstSkip = m_headerCount;

    m_delimiters = {};
    m_delimiters.comma = !IsSeaSpy();
    m_delimiters.tab = m_delimiters.space = !IsSeaSpy() && m_csv == 0;
    if (IsSeaSpy()) m_delimiters.space = true;

    SplitPreview();
    ResetLabels(m_rows.empty() ? 0 : m_rows.front().size());
    Guess();
}

void CAsciiImportDlg::SplitPreview() {
    m_rows.clear();
    for (auto i = static_cast<std::size_t>(m_skipCount); i < m_lines.size(); ++i) {
        m_rows.push_back(SplitRow(m_lines[i], m_csv));
    }
}

void CAsciiImportDlg::ResetLabels(std::size_t count) {
    m_labels.resize(count);
    for (std::size_t i = 0; i < count; ++i) m_labels[i] = "Ch" + std::to_string(i + 1);
}

void CAsciiImportDlg::Guess() {
    m_classes = GuessColumns(m_rows, m_labels, *m_columns);
}

void CAsciiImportDlg::ApplyClasses() {
    for (std::size_t i = 0; i < ColumnCount(); ++i) ApplyClass(m_classes[i], (*m_columns)[i]);
    if (m_labelColumn >= 0) (*m_columns)[static_cast<std::size_t>(m_labelColumn)].dataType = DataType::kSkipped;
}

void CAsciiImportDlg::OnInitDialog() {
    if (m_columns == nullptr) {
        EndDialog(kButtonCancel);
        return;
    }
    FillTemplates();
    std::vector<std::string> counts;
    for (int i = m_firstSkip; i < static_cast<int>(m_lines.size()); ++i) counts.push_back(std::to_string(i));
    bool const skipsTitles = m_csv != 0 && counts.size() > 1;
    SetItems(kSkipFirst, std::move(counts));
    SelectRow(kSkipFirst, skipsTitles ? 1 : 0);

    if (IsSeaSpy()) {
        PresetSeaSpy();
        Enable(kSkipFirst, false);
        Enable(kLineLabel, false);
    } else {
        ApplyClasses();
    }
    ShowHeader();
    ShowPreview();
    ShowColumn();
    if (skipsTitles) ChangeSkip(m_firstSkip + 1);
}

void CAsciiImportDlg::FillTemplates() {
    CNorvaDateTime const dateTime;
    dateTime.GetImportDateTemplate(m_dateTemplates, m_dateCodes);
    dateTime.GetImportTimeTemplate(m_timeTemplates, m_timeCodes);
    SetItems(kDateTemplate, m_dateTemplates);
    SetItems(kTimeTemplate, m_timeTemplates);
    SelectRow(kDateTemplate, 0);
    SelectRow(kTimeTemplate, 0);
}

void CAsciiImportDlg::PresetSeaSpy() {
    std::vector<std::string_view> fields;
    GetTokens(m_seaSpyHeader, fields, " \n");
    std::size_t const count = ColumnCount();
    m_labels.assign(fields.begin(), fields.end());
    while (m_labels.size() < count) m_labels.push_back("CH" + std::to_string(m_labels.size() + 1));
    if (m_labels.size() == count) SplitLabels();
    m_labels.resize(count);

    auto const preset = [&](int at, int dataType, int displayFormat, int templateFormat) {
        if (at >= static_cast<int>(count)) return;
        NorvaChannelStruct& column = (*m_columns)[static_cast<std::size_t>(at)];
        column.dataType = dataType;
        column.displayFormat = displayFormat;
        column.templateFormat = templateFormat;
    };
    preset(kSeaSpyDate, DataType::kDouble, DisplayFormat::kDate, 0);
    preset(kSeaSpyTime, DataType::kDouble, DisplayFormat::kTime, kSeaSpyTimeTemplate);
    for (int const at : kSeaSpyShorts) preset(at, DataType::kShort, DisplayFormat::kFixed, -1);
}

void CAsciiImportDlg::SplitLabels() {
    for (std::size_t i = 0; i < ColumnCount(); ++i) SplitNameAndUnits(m_labels[i], (*m_columns)[i]);
}

void CAsciiImportDlg::OnEvent(DialogEvent const& event) {
    using Kind = DialogEvent::Kind;
    NorvaChannelStruct* const column = SelectedColumn();
    switch (event.control) {
        case kFileHeader:
            if (event.kind == Kind::DoubleClick) Relabel(event.row);
            return;
        case kSkipFirst:
            ChangeSkip(m_firstSkip + event.row);
            return;
        case kDelimiters:
            SetDelimiters();
            return;
        case kPreview:
            ShowColumn();
            return;
        case kTextSize:
            SetTextSize(event.text);
            return;
        case kDateTemplate:
        case kTimeTemplate:
            if (column != nullptr) {
                auto const& codes = event.control == kDateTemplate ? m_dateCodes : m_timeCodes;
                column->templateFormat = codes[static_cast<std::size_t>(event.row)];
                m_isEdited = true;
            }
            return;
        case kLineLabel:
            MarkLineLabel(Get(kLineLabel).checked);
            return;
        case kName:
            if (column != nullptr) {
                column->name = event.text;
                m_labels[static_cast<std::size_t>(Get(kPreview).column)] = event.text;
                m_isEdited = true;
                ShowLabels();
            }
            return;
        case kUnits:
            if (column != nullptr) {
                column->units = event.text;
                m_isEdited = true;
            }
            return;
        case kHelp:
            ShowHelpTopic("%s::/html/ascii_import.htm");
            return;
        default:
            break;
    }
    if (std::ranges::find(kTypeRadios, event.control) != std::end(kTypeRadios)) {
        ChooseType(event.control);
    } else {
        CDialog::OnEvent(event);
    }
}

void CAsciiImportDlg::ChangeSkip(int count) {
    if (count != m_skipCount) {
        m_skipCount = count;
        m_headerCount = count;
        ShowHeader();
    }
    SplitPreview();
    std::size_t const columns = m_rows.front().size();
    if (columns != ColumnCount()) {
        ResetLabels(columns);
        std::size_t const known = std::min(m_columns->size(), columns);
        m_columns->resize(columns);
        for (std::size_t i = known; i < columns; ++i) (*m_columns)[i].name = m_labels[i];
        m_classes.resize(columns, ColumnClass::None);
        if (m_labelColumn >= static_cast<int>(columns)) m_labelColumn = -1;
    }
    if (!m_isEdited) Guess();
    ApplyClasses();
    ShowPreview();
    ShowColumn();
}

void CAsciiImportDlg::Relabel(int headerLine) {
    if (!AskYesNo("Do you want to change the column labels?")) return;
    std::vector<std::string> labels = SplitHeaderLine(m_lines[static_cast<std::size_t>(headerLine)], ColumnCount(),
                                                      m_delimiters, m_gravityMeterMode != 0);
    if (labels.size() != ColumnCount()) {
        ShowMessage("Selected Header line is not appropriate.\nCheck Header Delimeters!");
        return;
    }
    m_labels = std::move(labels);
    m_isEdited = true;
    SplitLabels();
    ShowLabels();
    ShowColumn();
}

void CAsciiImportDlg::ChooseType(int radio) {
    NorvaChannelStruct* const column = SelectedColumn();
    if (column == nullptr) {
        CheckRadio(kText, 0);
        return;
    }
    auto const at = static_cast<std::size_t>(Get(kPreview).column);
    m_isEdited = true;
    int templateIndex = -1;
    switch (radio) {
        case kText:
            ChooseText(at);
            break;
        case kFloat:
        case kDouble:
            column->dataType = radio == kFloat ? DataType::kFloat : DataType::kDouble;
            ChooseNumberFormat(at);
            break;
        case kShort:
            column->dataType = DataType::kShort;
            break;
        case kLong:
            column->dataType = DataType::kLong;
            break;
        case kDate:
            templateIndex = ChooseTemplate(at, DisplayFormat::kDate);
            break;
        case kTime:
            templateIndex = ChooseTemplate(at, DisplayFormat::kTime);
            break;
        case kGeographic:
            ChooseGeographic(at);
            break;
        default:
            column->dataType = DataType::kSkipped;
            break;
    }
    ShowColumn();
    // Without a fitting template the box shows none, though the column keeps the one it had.
    if (radio == kDate) SelectRow(kDateTemplate, templateIndex);
    if (radio == kTime) SelectRow(kTimeTemplate, templateIndex);
}

void CAsciiImportDlg::ChooseText(std::size_t column) {
    NorvaChannelStruct& settings = (*m_columns)[column];
    settings.dataType = DataType::kText;
    for (std::vector<std::string> const& row : m_rows) {
        if (column < row.size())
            settings.arraySize = std::max(settings.arraySize, static_cast<int>(row[column].size()));
    }
}

void CAsciiImportDlg::ChooseNumberFormat(std::size_t column) {
    NorvaChannelStruct& settings = (*m_columns)[column];
    bool const hasExponent = std::ranges::any_of(m_rows, [column](std::vector<std::string> const& row) {
        return column < row.size() && row[column].find('E', 1) != std::string::npos;
    });
    settings.displayFormat = hasExponent ? DisplayFormat::kExponent : DisplayFormat::kFixed;
    settings.decimalPlaces = hasExponent ? 3 : 6;
}

int CAsciiImportDlg::ChooseTemplate(std::size_t column, int displayFormat) {
    NorvaChannelStruct& settings = (*m_columns)[column];
    settings.dataType = DataType::kDouble;
    settings.displayFormat = displayFormat;
    if (column >= m_rows.front().size()) return -1;
    std::string const& token = m_rows.front()[column];
    bool const isDate = displayFormat == DisplayFormat::kDate;
    int const found = isDate ? MatchDateTemplate(m_dateTemplates, token) : MatchTimeTemplate(m_timeTemplates, token);
    if (found >= 0) settings.templateFormat = (isDate ? m_dateCodes : m_timeCodes)[static_cast<std::size_t>(found)];
    return found;
}

void CAsciiImportDlg::ChooseGeographic(std::size_t column) {
    NorvaChannelStruct& settings = (*m_columns)[column];
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

void CAsciiImportDlg::MarkLineLabel(bool marks) {
    NorvaChannelStruct* const column = SelectedColumn();
    if (column == nullptr) {
        SetCheck(kLineLabel, false);
        return;
    }
    m_labelColumn = -1;
    m_isEdited = true;
    if (marks) {
        m_labelColumn = Get(kPreview).column;
        column->dataType = DataType::kSkipped;
    }
    ShowColumn();
}

void CAsciiImportDlg::SetTextSize(std::string const& text) {
    NorvaChannelStruct* const column = SelectedColumn();
    if (column == nullptr) return;
    // A text without characters cannot be stored: the size stays what it was.
    if (int const size = ReadInt(text); size > 0) {
        column->arraySize = size;
        m_isEdited = true;
    }
    SetText(kTextSize, std::to_string(column->arraySize));
}

void CAsciiImportDlg::SetDelimiters() {
    CDelimitersDlg dialog(m_delimiters);
    if (dialog.DoModal() == kButtonOk) m_delimiters = dialog.Delimiters();
}

void CAsciiImportDlg::ShowHeader() {
    std::vector<std::string> lines;
    for (int i = 0; i < m_headerCount; ++i) {
        lines.push_back(ReplaceAll(m_lines[static_cast<std::size_t>(i)], "\t", "    "));
    }
    SetItems(kFileHeader, std::move(lines));
}

void CAsciiImportDlg::ShowPreview() {
    TokenRows rows = m_rows;
    for (std::vector<std::string>& row : rows) row.resize(ColumnCount());
    ShowLabels();
    SetRows(kPreview, std::move(rows));
}

void CAsciiImportDlg::ShowLabels() {
    SetColumns(kPreview, m_labels);
}

void CAsciiImportDlg::ShowColumn() {
    NorvaChannelStruct const* const column = SelectedColumn();
    int const radio = column == nullptr ? 0 : TypeRadio(*column);
    CheckRadio(kText, radio);
    for (int const type : kTypeRadios) Enable(type, IsAllowed(type));

    SetText(kTextSize, radio == kText ? std::to_string(column->arraySize) : "");
    if (radio == kDate) SelectRow(kDateTemplate, IndexOf(m_dateCodes, column->templateFormat));
    if (radio == kTime) SelectRow(kTimeTemplate, IndexOf(m_timeCodes, column->templateFormat));
    Enable(kTextSize, radio == kText);
    Enable(kDateTemplate, radio == kDate);
    Enable(kTimeTemplate, radio == kTime);

    SetText(kName, column == nullptr ? "" : column->name);
    SetText(kUnits, column == nullptr ? "" : column->units);
    Enable(kName, column != nullptr);
    Enable(kUnits, column != nullptr);
    SetCheck(kLineLabel, column != nullptr && Get(kPreview).column == m_labelColumn);
}

bool CAsciiImportDlg::IsAllowed(int radio) const {
    int const column = Get(kPreview).column;
    if (!IsSeaSpy() || column < 0 || radio == kSkipColumn) return true;
    // Dates and times of a log have a form of their own, which no other column has.
    if (column == kSeaSpyDate) return radio == kDate;
    if (column == kSeaSpyTime) return radio == kTime;
    if (radio == kDate || radio == kTime) return false;
    bool const isShort = std::ranges::find(kSeaSpyShorts, column) != std::end(kSeaSpyShorts);
    return !isShort || radio != kGeographic;
}

NorvaChannelStruct* CAsciiImportDlg::SelectedColumn() {
    int const column = Get(kPreview).column;
    return column < 0 || m_columns == nullptr ? nullptr : &(*m_columns)[static_cast<std::size_t>(column)];
}

}  // namespace norva
