#pragma once

#include "norva/dialog.h"
#include "norva/settings.h"

#include <string>
#include <vector>

namespace norva {

/// "Scintrex CG3 Dump Import" (template 4062): which columns of the dump become channels, and how its dates and times
/// are written.
class CCG3ImportDlg : public CDialog {
public:
    /// `settings`, whose columns are set, are edited in place.
    CCG3ImportDlg(std::vector<std::string> const& titles, Cg3Settings& settings);

protected:
    void OnInitDialog() override;
    void OnEvent(DialogEvent const& event) override;

private:
    /// Fills both lists, and allows "Import" while there is something to import.
    void ShowColumns();
    /// Moves the highlighted titles of a list to the other one.
    void MoveColumns(int list, std::vector<int> const& columns, bool chosen, char const* nothingHighlighted);
    void FillFormats(int combo, std::vector<std::string> names, std::vector<int> const& codes, int chosen);

    std::vector<std::string> const& m_titles;
    Cg3Settings& m_settings;
    std::vector<int> m_inFile;    ///< columns in the rows of "Columns in File:"
    std::vector<int> m_toImport;  ///< columns in the rows of "Columns to Import:"
    std::vector<int> m_dateCodes;
    std::vector<int> m_timeCodes;
};

}  // namespace norva
