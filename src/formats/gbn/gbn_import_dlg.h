#pragma once

#include "formats/gbn/gbn_contents.h"
#include "norva/dialog.h"
#include "norva/settings.h"

namespace norva {

/// "GBN File Import": which channels and lines of a file to import, under which names, as which data types.
class CGbnImportDlg : public CDialog {
public:
    /// `settings` are edited in place; they start as those that change nothing.
    CGbnImportDlg(GbnContents const& contents, GbnSettings& settings);

protected:
    void OnInitDialog() override;
    void OnEvent(DialogEvent const& event) override;

private:
    void TakeCell(DialogEvent const& event);
    void SetTypeOfSelected();
    void TickSelected(bool on);
    void EnableContinue();
    /// Makes the ticks the choice of the settings; false, with a message, when no channel or no line is left.
    bool TakeTicks();

    GbnContents const& m_contents;
    GbnSettings& m_settings;
    int m_lastList;  ///< the list that was clicked last
};

}  // namespace norva
