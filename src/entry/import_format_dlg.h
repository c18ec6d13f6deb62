#pragma once

#include "norva/dialog.h"

#include <vector>

namespace norva {

struct ImportFormat;

/// "Import Formats" (template 4063): the list of the formats that a level offers.
class CImportFormatDlg : public CDialog {
public:
    explicit CImportFormatDlg(int formatLevel);

    /// Code of the format chosen with OK; -1 for none.
    int FormatCode() const { return m_formatCode; }

protected:
    void OnInitDialog() override;
    void OnEvent(DialogEvent const& event) override;

private:
    std::vector<ImportFormat const*> m_formats;
    int m_formatCode = -1;
};

}  // namespace norva
