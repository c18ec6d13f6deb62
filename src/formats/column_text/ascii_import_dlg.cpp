#include "formats/column_text/ascii_import_dlg.h"

#include "exchange/exception_guard.h"
#include "formats/column_text/delimiters_dlg.h"
#include "formats/column_text/set_channels_template.h"
#include "platform/numbers.h"
#include "platform/text.h"
#include "ui/messages.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace norva {

using namespace ids::SetChannels;

namespace {

/// Radio buttons in the order of ColumnType.
constexpr int kTypeRadios[] = {kText, kFloat, kDouble, kShort, kLong, kDate, kTime, kGeographic, kSkipColumn};

int RadioOf(ColumnType type) {
    return kTypeRadios[static_cast<std::size_t>(type)];
}

}  // namespace

CAsciiImportDlg::CAsciiImportDlg(CColumnTextDraft& draft)
    : CDialog(4003), m_draft(draft), m_delimiters(draft.UsualDelimiters()) {}

void CAsciiImportDlg::OnInitDialog() {
    ShowTemplates();
    std::vector<std::string> counts;
    for (int i = m_draft.FirstSkip(); i <= m_draft.LastSkip(); ++i) counts.push_back(std::to_string(i));
    SetItems(kSkipFirst, std::move(counts));
    SelectRow(kSkipFirst, std::max(m_draft.Settings().skip - m_draft.FirstSkip(), 0));
    if (m_draft.Preview().isSeaSpy) {
        Enable(kSkipFirst, false);
        Enable(kLineLabel, false);
    }
    ShowHeader();
    ShowPreview();
    ShowColumn();
}

void CAsciiImportDlg::ShowTemplates() {
    SetItems(kDateTemplate, DateTemplates().names);
    SetItems(kTimeTemplate, TimeTemplates().names);
    SelectRow(kDateTemplate, 0);
    SelectRow(kTimeTemplate, 0);
}

void CAsciiImportDlg::OnEvent(DialogEvent const& event) {
    using Kind = DialogEvent::Kind;
    int const column = SelectedColumn();
    switch (event.control) {
        case kFileHeader:
            if (event.kind == Kind::DoubleClick) Relabel(event.row);
            return;
        case kSkipFirst:
            ChangeSkip(m_draft.FirstSkip() + event.row);
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
            if (column >= 0) {
                auto const& templates = event.control == kDateTemplate ? DateTemplates() : TimeTemplates();
                Conclude(m_draft.SetTemplate(column, templates.codes[static_cast<std::size_t>(event.row)]));
            }
            return;
        case kLineLabel:
            MarkLineLabel(Get(kLineLabel).checked);
            return;
        case kName:
            if (column >= 0) {
                m_draft.SetName(column, event.text);
                ShowLabels();
            }
            return;
        case kUnits:
            if (column >= 0) m_draft.SetUnits(column, event.text);
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
    bool const isOther = count != m_draft.Settings().skip;
    Conclude(m_draft.SetSkip(count));
    if (isOther) ShowHeader();
    ShowPreview();
    ShowColumn();
}

void CAsciiImportDlg::Relabel(int headerLine) {
    if (!AskYesNo("Do you want to change the column labels?")) return;
    if (!m_draft.TakeHeaderLine(headerLine, m_delimiters, NumbersAsNames::Take)) {
        ShowMessage("Selected Header line is not appropriate.\nCheck Header Delimeters!");
        return;
    }
    ShowLabels();
    ShowColumn();
}

void CAsciiImportDlg::ChooseType(int radio) {
    int const column = SelectedColumn();
    if (column < 0) {
        CheckRadio(kText, 0);
        return;
    }
    auto const type = static_cast<ColumnType>(std::ranges::find(kTypeRadios, radio) - std::begin(kTypeRadios));
    Conclude(m_draft.SetType(column, type));
    ShowColumn();
    // Without a fitting template the box shows none, though the column keeps the one it had.
    if (radio == kDate) SelectRow(kDateTemplate, m_draft.FittingTemplate(column, type));
    if (radio == kTime) SelectRow(kTimeTemplate, m_draft.FittingTemplate(column, type));
}

void CAsciiImportDlg::MarkLineLabel(bool marks) {
    int const column = SelectedColumn();
    if (column < 0) {
        SetCheck(kLineLabel, false);
        return;
    }
    m_draft.SetLabelColumn(marks ? column : -1);
    ShowColumn();
}

void CAsciiImportDlg::SetTextSize(std::string const& text) {
    int const column = SelectedColumn();
    if (column < 0) return;
    // A text without characters cannot be stored: the size stays what it was.
    static_cast<void>(m_draft.SetTextSize(column, ReadInt(text)));
    SetText(kTextSize, std::to_string(Column(column).arraySize));
}

void CAsciiImportDlg::SetDelimiters() {
    CDelimitersDlg dialog(m_delimiters);
    if (dialog.DoModal() == kButtonOk) m_delimiters = dialog.Delimiters();
}

void CAsciiImportDlg::ShowHeader() {
    std::vector<std::string> lines;
    for (int i = 0; i < m_draft.HeaderCount(); ++i) {
        lines.push_back(ReplaceAll(m_draft.Preview().lines[static_cast<std::size_t>(i)].text, "\t", "    "));
    }
    SetItems(kFileHeader, std::move(lines));
}

void CAsciiImportDlg::ShowPreview() {
    std::vector<std::vector<std::string>> rows = m_draft.Rows();
    for (std::vector<std::string>& row : rows) row.resize(m_draft.Titles().size());
    ShowLabels();
    SetRows(kPreview, std::move(rows));
}

void CAsciiImportDlg::ShowLabels() {
    SetColumns(kPreview, m_draft.Titles());
}

void CAsciiImportDlg::ShowColumn() {
    int const column = SelectedColumn();
    bool const isAny = column >= 0;
    NorvaChannelStruct const settings = isAny ? Column(column) : NorvaChannelStruct{};
    int const radio = isAny ? RadioOf(TypeOf(settings)) : 0;
    CheckRadio(kText, radio);
    for (std::size_t i = 0; i < std::size(kTypeRadios); ++i) {
        Enable(kTypeRadios[i], m_draft.Allows(column, static_cast<ColumnType>(i)));
    }

    SetText(kTextSize, radio == kText ? std::to_string(settings.arraySize) : "");
    if (radio == kDate) SelectRow(kDateTemplate, DateTemplates().IndexOf(settings.templateFormat));
    if (radio == kTime) SelectRow(kTimeTemplate, TimeTemplates().IndexOf(settings.templateFormat));
    Enable(kTextSize, radio == kText);
    Enable(kDateTemplate, radio == kDate);
    Enable(kTimeTemplate, radio == kTime);

    SetText(kName, settings.name);
    SetText(kUnits, settings.units);
    Enable(kName, isAny);
    Enable(kUnits, isAny);
    SetCheck(kLineLabel, isAny && column == m_draft.Settings().labelColumn);
}

int CAsciiImportDlg::SelectedColumn() const {
    return Get(kPreview).column;
}

NorvaChannelStruct const& CAsciiImportDlg::Column(int column) const {
    return m_draft.Settings().columns[static_cast<std::size_t>(column)];
}

}  // namespace norva
