#include "entry/import_format_dlg.h"

#include "entry/import_format_template.h"
#include "entry/import_formats.h"

namespace norva {

using namespace ids::ImportFormats;

CImportFormatDlg::CImportFormatDlg(int formatLevel) : CDialog(4063), m_formats(OfferedImportFormats(formatLevel)) {}

void CImportFormatDlg::OnInitDialog() {
    std::vector<std::string> labels;
    for (ImportFormat const* const format : m_formats) labels.emplace_back(format->label);
    SetItems(kFormats, std::move(labels));
    SelectRow(kFormats, 0);
}

void CImportFormatDlg::OnEvent(DialogEvent const& event) {
    bool const accepts = event.kind == DialogEvent::Kind::DoubleClick ||
                         (event.kind == DialogEvent::Kind::Click && event.control == kButtonOk);
    if (!accepts) {
        CDialog::OnEvent(event);
        return;
    }
    int const row = SelectedRow(kFormats);
    if (row < 0) return;
    m_formatCode = static_cast<int>(m_formats[static_cast<std::size_t>(row)]->code);
    EndDialog(kButtonOk);
}

}  // namespace norva
