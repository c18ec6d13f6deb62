#pragma once

#include "norva/dialog.h"
#include "norva/exporter_base.h"

#include <string>
#include <vector>

namespace norva {

/// "Export": the user moves lines and channels into two export lists, in the order in which they are to be written.
class CExportSelectionDlg : public CDialog {
public:
    CExportSelectionDlg();

    /// Store profile number of each line name.
    void SetProfileIndexTable(std::vector<int> const& table);
    void SetProfileNames(std::vector<std::string> const& names);
    void SetChannelNames(std::vector<std::string> const& names);
    void EnablePointId(int enabled) { m_pointIdEnabled = enabled; }

    /// The user's choice once the dialog has ended with "Export".
    ExportSelection const& Selection() const { return m_selection; }

    int exportUnits = 0;  ///< column units: preset by the exporter, then the user's choice

protected:
    void OnInitDialog() override;
    void OnEvent(DialogEvent const& event) override;

private:
    struct Entry {
        std::string name;
        int inExport = 0;
    };

    /// Lines or columns: their entries, the two lists and what each list shows (item numbers).
    struct Side {
        std::vector<Entry> entries;
        int existingList;
        int exportList;
        int addAll;
        int add;
        int remove;
        int removeAll;
        std::vector<int> existing;
        std::vector<int> exported;
    };

    bool HandleSide(Side& side, DialogEvent const& event);
    void MoveAll(Side& side, int inExport);
    void Add(Side& side);
    void Remove(Side& side);
    void ShowList(int list, std::vector<int> const& items, std::vector<Entry> const& entries);
    void SelectAfterMove(Side const& side, bool added, std::vector<int> const& moved, int oldRow);
    void Accept();

    Side m_lines;
    Side m_columns;
    std::vector<std::string> m_profileNames;
    std::vector<int> m_profileIndexTable;
    int m_pointIdEnabled = 1;
    ExportSelection m_selection;
};

}  // namespace norva
