#pragma once

#include "norva/dialog.h"

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

    // The user's choice once the dialog has ended with "Export".

    /// Store profile numbers in the order of the export list.
    std::vector<int> GetSelectedProfiles() const { return m_selectedProfiles; }
    /// Positions in the store's channel order, in the order of the export list.
    std::vector<int> GetSelectedChannels() const { return m_columns.exported; }
    int labelAsChannel = 0;
    int pointIdAsChannel = 0;
    int exportUnits = 0;  ///< before the dialog is shown: the exporter's preset, without which the box is disabled

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
    /// Moves the chosen items into the export list, or back from it into item order.
    void MoveChosen(Side& side, bool adding);
    void ShowLists(Side const& side);
    void Accept();

    Side m_lines;
    Side m_columns;
    std::vector<std::string> m_profileNames;
    std::vector<int> m_profileIndexTable;
    std::vector<int> m_selectedProfiles;
    int m_pointIdEnabled = 1;
};

}  // namespace norva
