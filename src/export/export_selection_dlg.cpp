#include "export/export_selection_dlg.h"

#include "ui/control_ids.h"
#include "ui/messages.h"

#include <algorithm>

namespace norva {

using namespace ids::Export;

namespace {

std::vector<int> AllItems(std::size_t count) {
    std::vector<int> items(count);
    for (std::size_t i = 0; i < count; ++i) items[i] = static_cast<int>(i);
    return items;
}

}  // namespace

CExportSelectionDlg::CExportSelectionDlg()
    : CDialog(4000),
      m_lines{{}, kExistingLines, kExportLines, kLinesAddAll, kLinesAdd, kLinesRemove, kLinesRemoveAll, {}, {}},
      m_columns{{},          kExistingColumns, kExportColumns,    kColumnsAddAll,
                kColumnsAdd, kColumnsRemove,   kColumnsRemoveAll, {},
                {}} {}

void CExportSelectionDlg::SetProfileIndexTable(std::vector<int> const& table) {
    m_profileIndexTable = table;
}

void CExportSelectionDlg::SetProfileNames(std::vector<std::string> const& names) {
    m_profileNames = names;
    for (std::string const& name : names) m_lines.entries.push_back({name, 0});
}

void CExportSelectionDlg::SetChannelNames(std::vector<std::string> const& names) {
    for (std::string const& name : names) m_columns.entries.push_back({name, 0});
}

void CExportSelectionDlg::OnInitDialog() {
    Enable(kPointId, m_pointIdEnabled != 0);
    Enable(kUnits, exportUnits == 1);
    CheckRadio(kLabelAsChannel, kLabelAsLine);
    SetCheck(kPointId, false);
    SetCheck(kUnits, exportUnits != 0);
    for (Side* const side : {&m_lines, &m_columns}) {
        MoveAll(*side, 0);
        if (!side->existing.empty()) SelectRow(side->existingList, 0);
    }
}

void CExportSelectionDlg::OnEvent(DialogEvent const& event) {
    if (HandleSide(m_lines, event) || HandleSide(m_columns, event)) return;
    if (event.kind == DialogEvent::Kind::Click && event.control == kButtonOk) {
        Accept();
    } else if (event.kind == DialogEvent::Kind::Click && event.control == kHelp) {
        ShowHelpTopic("%s::/html/save_other_formats.htm");
    } else {
        CDialog::OnEvent(event);
    }
}

bool CExportSelectionDlg::HandleSide(Side& side, DialogEvent const& event) {
    bool const click = event.kind == DialogEvent::Kind::Click;
    bool const twice = event.kind == DialogEvent::Kind::DoubleClick;
    if (click && event.control == side.addAll) {
        MoveAll(side, 1);
    } else if (click && event.control == side.removeAll) {
        MoveAll(side, 0);
    } else if ((click && event.control == side.add) || (twice && event.control == side.existingList)) {
        Add(side);
    } else if ((click && event.control == side.remove) || (twice && event.control == side.exportList)) {
        Remove(side);
    } else {
        return false;
    }
    return true;
}

void CExportSelectionDlg::ShowList(int list, std::vector<int> const& items, std::vector<Entry> const& entries) {
    std::vector<std::string> texts;
    texts.reserve(items.size());
    for (int const item : items) texts.push_back(entries[static_cast<std::size_t>(item)].name);
    SetItems(list, std::move(texts));
}

void CExportSelectionDlg::MoveAll(Side& side, int inExport) {
    for (Entry& entry : side.entries) entry.inExport = inExport;
    side.exported = inExport != 0 ? AllItems(side.entries.size()) : std::vector<int>();
    side.existing = inExport != 0 ? std::vector<int>() : AllItems(side.entries.size());
    ShowList(side.existingList, side.existing, side.entries);
    ShowList(side.exportList, side.exported, side.entries);
}

void CExportSelectionDlg::Add(Side& side) {
    std::vector<int> const rows = Get(side.existingList).ChosenRows();
    if (rows.empty()) return;
    std::vector<int> moved;
    std::vector<int> left;
    std::size_t next = 0;
    for (std::size_t row = 0; row < side.existing.size(); ++row) {
        bool const chosen = next < rows.size() && rows[next] == static_cast<int>(row);
        if (chosen) ++next;
        (chosen ? moved : left).push_back(side.existing[row]);
    }
    for (int const item : moved) side.entries[static_cast<std::size_t>(item)].inExport = 1;
    side.existing = std::move(left);
    side.exported.insert(side.exported.end(), moved.begin(), moved.end());
    SelectAfterMove(side, true, moved, rows.front());
}

void CExportSelectionDlg::Remove(Side& side) {
    std::vector<int> const rows = Get(side.exportList).ChosenRows();
    if (rows.empty()) return;
    std::vector<int> moved;
    std::vector<int> left;
    std::size_t next = 0;
    for (std::size_t row = 0; row < side.exported.size(); ++row) {
        bool const chosen = next < rows.size() && rows[next] == static_cast<int>(row);
        if (chosen) ++next;
        (chosen ? moved : left).push_back(side.exported[row]);
    }
    for (int const item : moved) side.entries[static_cast<std::size_t>(item)].inExport = 0;
    side.exported = std::move(left);
    // The existing list is always in item order, so that inserting before the next larger item is a merge.
    side.existing.insert(side.existing.end(), moved.begin(), moved.end());
    std::sort(side.existing.begin(), side.existing.end());
    SelectAfterMove(side, false, moved, rows.front());
}

void CExportSelectionDlg::SelectAfterMove(Side const& side, bool added, std::vector<int> const& moved, int oldRow) {
    std::vector<int> const& source = added ? side.existing : side.exported;
    std::vector<int> const& target = added ? side.exported : side.existing;
    int const sourceList = added ? side.existingList : side.exportList;
    int const targetList = added ? side.exportList : side.existingList;
    ShowList(side.existingList, side.existing, side.entries);
    ShowList(side.exportList, side.exported, side.entries);
    auto const row = std::find(target.begin(), target.end(), moved.back());
    SelectRow(targetList, static_cast<int>(row - target.begin()));
    if (!source.empty()) SelectRow(sourceList, std::min(oldRow, static_cast<int>(source.size()) - 1));
}

void CExportSelectionDlg::Accept() {
    if (m_lines.exported.empty()) {
        ShowMessage("Select Profile(s) to Export");
        return;
    }
    if (m_columns.exported.empty()) {
        ShowMessage("Select Channel(s) to Export");
        return;
    }
    m_selection.labelAsChannel = CheckedRadio(kLabelAsChannel) == kLabelAsChannel ? 1 : 0;
    m_selection.pointIdAsChannel = Get(kPointId).checked ? 1 : 0;
    m_selection.exportUnits = exportUnits = Get(kUnits).checked ? 1 : 0;
    m_selection.channels = m_columns.exported;
    m_selection.profiles.clear();
    for (int const item : m_lines.exported) {
        std::string const& text = m_lines.entries[static_cast<std::size_t>(item)].name;
        auto const found = std::find(m_profileNames.begin() + item, m_profileNames.end(), text);
        auto const position = static_cast<std::size_t>(found - m_profileNames.begin());
        if (found != m_profileNames.end() && position < m_profileIndexTable.size()) {
            m_selection.profiles.push_back(m_profileIndexTable[position]);
        }
    }
    EndDialog(kButtonOk);
}

}  // namespace norva
