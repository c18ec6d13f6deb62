#pragma once

#include "formats/gbn/gbn_contents.h"
#include "norva/dialog.h"

#include <vector>

namespace norva {

/// "GBN File Import": which channels and lines of a file to import, under which names, as which data types.
class CGbnImportDlg : public CDialog {
public:
    /// Names, units, data types and ticks are written back into the tables, which stay the caller's.
    CGbnImportDlg(std::vector<GbnChannelEntry>& channels, std::vector<GbnLineEntry>& lines, int addFiducial);

    int AddFiducial() const { return m_addFiducial; }

protected:
    void OnInitDialog() override;
    void OnEvent(DialogEvent const& event) override;

private:
    void TakeCell(DialogEvent const& event);
    void SetTypeOfSelected();
    void TickSelected(bool on);
    void EnableContinue();
    /// Copies the ticks into the tables; false, with a message, when no channel or no line is left.
    bool TakeTicks();

    std::vector<GbnChannelEntry>& m_channels;
    std::vector<GbnLineEntry>& m_lines;
    int m_addFiducial;
    int m_lastList;  ///< the list that was clicked last
};

}  // namespace norva
