#pragma once

#include "formats/column_text/header_labels.h"
#include "norva/dialog.h"

namespace norva {

/// "Delimiters" (template 4060): the characters that separate the labels of a header line.
class CDelimitersDlg : public CDialog {
public:
    explicit CDelimitersDlg(HeaderDelimiters const& delimiters);

    /// What was set when the dialog ended with "Set".
    HeaderDelimiters const& Delimiters() const { return m_delimiters; }

protected:
    void OnInitDialog() override;
    void OnEvent(DialogEvent const& event) override;

private:
    HeaderDelimiters m_delimiters;
};

}  // namespace norva
