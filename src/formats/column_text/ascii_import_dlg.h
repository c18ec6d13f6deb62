#pragma once

#include "norva/column_text.h"
#include "norva/dialog.h"

#include <string>

namespace norva {

/// "Import: Set Channels" (template 4003): shows and changes how a text file's columns are to be read. The draft holds
/// the settings; it has to outlive the dialog.
class CAsciiImportDlg : public CDialog {
public:
    explicit CAsciiImportDlg(CColumnTextDraft& draft);

protected:
    void OnInitDialog() override;
    void OnEvent(DialogEvent const& event) override;

private:
    void ShowTemplates();
    void ChangeSkip(int count);
    void Relabel(int headerLine);
    void ChooseType(int radio);
    void MarkLineLabel(bool marks);
    void SetTextSize(std::string const& text);
    void SetDelimiters();

    void ShowHeader();
    void ShowPreview();
    void ShowLabels();
    /// Shows the settings of the selected column.
    void ShowColumn();

    /// The column selected in the preview; -1 for none.
    int SelectedColumn() const;
    NorvaChannelStruct const& Column(int column) const;

    CColumnTextDraft& m_draft;
    HeaderDelimiters m_delimiters;
};

}  // namespace norva
