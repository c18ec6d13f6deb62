#pragma once

#include "norva/dialog.h"

#include <string>
#include <vector>

namespace norva {

/// "Scintrex CG3 Dump Import" (template 4062): which columns of the dump become channels, and how its dates and times
/// are written.
class CCG3ImportDlg : public CDialog {
public:
    /// Works on the import flags (0 or 1, one a title) in place.
    CCG3ImportDlg(std::vector<std::string> const& titles, std::vector<int>& importFlags);

    /// What the controls said last.
    int SortByTime() const { return m_sortByTime; }
    int DateFormat() const { return m_dateFormat; }  ///< code, -1 until chosen
    int TimeFormat() const { return m_timeFormat; }  ///< code, -1 until chosen

protected:
    void OnInitDialog() override;
    void OnEvent(DialogEvent const& event) override;

private:
    /// Fills both lists from the import flags, and allows "Import" while there is something to import.
    void ShowColumns();
    /// Moves the highlighted titles of a list to the other one.
    void MoveColumns(int list, std::vector<std::size_t> const& columns, int flag, char const* nothingHighlighted);
    void FillFormats(int combo, std::vector<std::string> names, std::vector<int> const& codes, int& chosen);

    std::vector<std::string> const& m_titles;
    std::vector<int>& m_importFlags;
    std::vector<std::size_t> m_inFile;    ///< columns in the rows of "Columns in File:"
    std::vector<std::size_t> m_toImport;  ///< columns in the rows of "Columns to Import:"
    std::vector<int> m_dateCodes;
    std::vector<int> m_timeCodes;
    int m_sortByTime = 1;
    int m_dateFormat = -1;
    int m_timeFormat = -1;
};

}  // namespace norva
