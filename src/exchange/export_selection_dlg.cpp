#include "exchange/export_selection_dlg.h"

#include "exchange/export_selection_template.h"
#include "ui/messages.h"

#include <algorithm>
#include <numeric>

namespace norva {

using namespace ids::Export;

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
        MoveChosen(side, true);
    } else if ((click && event.control == side.remove) || (twice && event.control == side.exportList)) {
        MoveChosen(side, false);
    } else {
        return false;
    }
    return true;
}

void CExportSelectionDlg::ShowLists(Side const& side) {
    for (bool const exported : {false, true}) {
        std::vector<std::string> texts;
        for (int const item : exported ? side.exported : side.existing) {
            texts.push_back(side.entries[static_cast<std::size_t>(item)].name);
        }
        SetItems(exported ? side.exportList : side.existingList, std::move(texts));
    }
}

void CExportSelectionDlg::MoveAll(Side& side, int inExport) {
    for (Entry& entry : side.entries) entry.inExport = inExport;
    std::vector<int> items(side.entries.size());
    std::iota(items.begin(), items.end(), 0);
    (inExport != 0 ? side.exported : side.existing) = std::move(items);
    (inExport != 0 ? side.existing : side.exported).clear();
    ShowLists(side);
}

void CExportSelectionDlg::MoveChosen(Side& side, bool adding) {
    std::vector<int>& source = adding ? side.existing : side.exported;
    std::vector<int>& target = adding ? side.exported : side.existing;
    int const sourceList = adding ? side.existingList : side.exportList;
    int const targetList = adding ? side.exportList : side.existingList;
    std::vector<int> const rows = Get(sourceList).ChosenRows();
    if (rows.empty()) return;

    int const flag = adding ? 1 : 0;
    int moved = 0;
    for (int const row : rows) {
        moved = source[static_cast<std::size_t>(row)];
        side.entries[static_cast<std::size_t>(moved)].inExport = flag;
        target.push_back(moved);
    }
    std::erase_if(source, [&](int item) { return side.entries[static_cast<std::size_t>(item)].inExport == flag; });
    // The existing list is always in item order: inserting each before the next larger item comes to the same.
    if (!adding) std::sort(target.begin(), target.end());

    ShowLists(side);
    SelectRow(targetList, static_cast<int>(std::find(target.begin(), target.end(), moved) - target.begin()));
    if (!source.empty()) SelectRow(sourceList, std::min(rows.front(), static_cast<int>(source.size()) - 1));
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
    labelAsChannel = CheckedRadio(kLabelAsChannel) == kLabelAsChannel ? 1 : 0;
    pointIdAsChannel = Get(kPointId).checked ? 1 : 0;
    exportUnits = Get(kUnits).checked ? 1 : 0;
    m_selectedProfiles.clear();
    for (int const item : m_lines.exported) {
        std::string const& text = m_lines.entries[static_cast<std::size_t>(item)].name;
        auto const found = std::find(m_profileNames.begin() + item, m_profileNames.end(), text);
        auto const position = static_cast<std::size_t>(found - m_profileNames.begin());
        if (found != m_profileNames.end() && position < m_profileIndexTable.size()) {
            m_selectedProfiles.push_back(m_profileIndexTable[position]);
        }
    }
    EndDialog(kButtonOk);
}

}  // namespace norva
