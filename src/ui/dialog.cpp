#include "norva/dialog.h"

#include "norva/toolkit.h"

#include <algorithm>
#include <numeric>
#include <stdexcept>
#include <utility>

namespace norva {

namespace {

DialogTemplate const* RequireTemplate(int number) {
    DialogTemplate const* const found = FindDialogTemplate(number);
    if (found == nullptr) throw std::invalid_argument("no dialog template " + std::to_string(number));
    return found;
}

void CollectControls(TemplateNode const& node, std::vector<CControl>& controls) {
    if (node.kind == TemplateNode::Kind::Control || node.kind == TemplateNode::Kind::Group) {
        CControl control;
        control.node = &node;
        control.id = node.id;
        control.kind = node.control;
        if (control.kind == ControlKind::Static) control.text = node.label;
        control.columns.assign(node.titles.begin(), node.titles.end());
        controls.push_back(std::move(control));
    }
    for (TemplateNode const& child : node.children) CollectControls(child, controls);
}

void ClearSelection(CControl& control) {
    control.selected.clear();
    control.caret = -1;
    control.anchor = -1;
}

}  // namespace

CDialog::CDialog(int templateNumber) : m_template(RequireTemplate(templateNumber)), m_title(m_template->title) {
    CollectControls(m_template->root, m_controls);
}

CDialog::~CDialog() = default;

int CDialog::DoModal() {
    return CurrentToolkit().RunModal(*this);
}

void CDialog::Open() {
    m_ended = false;
    m_result = 0;
    OnInitDialog();
}

void CDialog::Abandon() {
    EndDialog(kButtonCancel);
}

void CDialog::OnInitDialog() {}

void CDialog::OnEvent(DialogEvent const& event) {
    if (event.kind == DialogEvent::Kind::Close) {
        EndDialog(kButtonCancel);
    } else if (event.kind == DialogEvent::Kind::Click &&
               (event.control == kButtonOk || event.control == kButtonCancel)) {
        EndDialog(event.control);
    }
}

void CDialog::EndDialog(int result) {
    m_ended = true;
    m_result = result;
}

void CDialog::SetTitle(std::string title) {
    m_title = std::move(title);
}

CControl* CDialog::Find(int id) {
    return const_cast<CControl*>(std::as_const(*this).FindControl(id));
}

CControl const* CDialog::FindControl(int id) const {
    auto const found = std::ranges::find(m_controls, id, &CControl::id);
    return found == m_controls.end() ? nullptr : &*found;
}

CControl const& CDialog::Get(int id) const {
    CControl const* const control = FindControl(id);
    if (control == nullptr) {
        throw std::out_of_range("no control " + std::to_string(id) + " in dialog " + std::to_string(TemplateNumber()));
    }
    return *control;
}

CControl& CDialog::Change(int id) {
    auto& control = const_cast<CControl&>(Get(id));
    ++control.revision;
    return control;
}

void CDialog::SetText(int id, std::string text) {
    Change(id).text = std::move(text);
}

void CDialog::Enable(int id, bool enabled) {
    Change(id).enabled = enabled;
}

void CDialog::SetCheck(int id, bool checked) {
    Change(id).checked = checked;
}

std::pair<std::size_t, std::size_t> CDialog::RadioGroup(int id) const {
    auto const position = static_cast<std::size_t>(&Get(id) - m_controls.data());
    auto const starts = [&](std::size_t i) {
        return m_controls[i].kind == ControlKind::Radio && m_controls[i].node->startsGroup;
    };
    std::size_t first = position;
    while (first > 0 && !starts(first)) --first;
    std::size_t last = position + 1;
    while (last < m_controls.size() && !starts(last)) ++last;
    return {first, last};
}

void CDialog::CheckRadio(int groupOf, int id) {
    auto const [first, last] = RadioGroup(groupOf);
    for (std::size_t i = first; i < last; ++i) {
        if (m_controls[i].kind == ControlKind::Radio) Change(m_controls[i].id).checked = m_controls[i].id == id;
    }
}

int CDialog::CheckedRadio(int groupOf) const {
    auto const [first, last] = RadioGroup(groupOf);
    for (std::size_t i = first; i < last; ++i) {
        if (m_controls[i].kind == ControlKind::Radio && m_controls[i].checked) return m_controls[i].id;
    }
    return 0;
}

void CDialog::SetItems(int id, std::vector<std::string> items) {
    CControl& control = Change(id);
    control.items = std::move(items);
    ClearSelection(control);
}

void CDialog::SetRows(int id, std::vector<std::vector<std::string>> rows) {
    CControl& control = Change(id);
    control.rows = std::move(rows);
    control.ticks.assign(control.node->checkBoxes ? control.rows.size() : 0, false);
    ClearSelection(control);
}

void CDialog::SetColumns(int id, std::vector<std::string> titles) {
    CControl& control = Change(id);
    control.columns = std::move(titles);
    if (control.column >= static_cast<int>(control.columns.size())) control.column = -1;
}

void CDialog::SetCell(int id, int row, int column, std::string text) {
    Change(id).rows.at(static_cast<std::size_t>(row)).at(static_cast<std::size_t>(column)) = std::move(text);
}

void CDialog::SetTick(int id, int row, bool on) {
    Change(id).ticks.at(static_cast<std::size_t>(row)) = on;
}

void CDialog::SelectRow(int id, int row) {
    CControl& control = Change(id);
    ClearSelection(control);
    if (row < 0 || row >= control.RowCount()) return;
    control.selected = {row};
    control.caret = row;
    control.anchor = row;
}

void CDialog::SelectAllRows(int id) {
    CControl& control = Change(id);
    control.selected.resize(static_cast<std::size_t>(control.RowCount()));
    std::iota(control.selected.begin(), control.selected.end(), 0);
}

int CDialog::SelectedRow(int id) const {
    CControl const& control = Get(id);
    return control.selected.empty() ? -1 : control.selected.front();
}

void CDialog::SelectColumn(int id, int column) {
    CControl& control = Change(id);
    control.column = column >= 0 && column < static_cast<int>(control.columns.size()) ? column : -1;
}

}  // namespace norva
