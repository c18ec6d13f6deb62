#include "formats/column_text/delimiters_dlg.h"

#include "formats/column_text/delimiters_template.h"

namespace norva {

using namespace ids::Delimiters;

CDelimitersDlg::CDelimitersDlg(HeaderDelimiters const& delimiters) : CDialog(4060), m_delimiters(delimiters) {}

void CDelimitersDlg::OnInitDialog() {
    SetCheck(kTab, m_delimiters.tab);
    SetCheck(kSpace, m_delimiters.space);
    SetCheck(kSemicolon, m_delimiters.semicolon);
    SetCheck(kComma, m_delimiters.comma);
    SetCheck(kOther, m_delimiters.other);
    SetText(kOtherText, m_delimiters.otherText);
}

void CDelimitersDlg::OnEvent(DialogEvent const& event) {
    if (event.kind == DialogEvent::Kind::Click && event.control == kButtonOk) {
        m_delimiters.tab = Get(kTab).checked;
        m_delimiters.space = Get(kSpace).checked;
        m_delimiters.semicolon = Get(kSemicolon).checked;
        m_delimiters.comma = Get(kComma).checked;
        m_delimiters.other = Get(kOther).checked;
        m_delimiters.otherText = Get(kOtherText).text;
    }
    CDialog::OnEvent(event);
}

}  // namespace norva
