#include "formats/cg3/cg3_import_dlg.h"

#include "formats/cg3/cg3_import_template.h"
#include "norva/converters.h"
#include "ui/messages.h"

#include <algorithm>

namespace norva {

namespace {

using namespace ids::CG3Import;

constexpr int kTemplate = 4062;
/// Date and time format chosen at the start: YY/MM/DD and HH:MM:SS.S, as the instrument writes them.
constexpr int kFirstFormat = 1;

int CodeOf(CControl const& combo, std::vector<int> const& codes) {
    return combo.selected.empty() ? -1 : codes[static_cast<std::size_t>(combo.selected.front())];
}

}  // namespace

CCG3ImportDlg::CCG3ImportDlg(std::vector<std::string> const& titles, std::vector<int>& importFlags)
    : CDialog(kTemplate), m_titles(titles), m_importFlags(importFlags) {}

void CCG3ImportDlg::OnInitDialog() {
    CNorvaDateTime const converter;
    std::vector<std::string> names;
    converter.GetImportDateTemplate(names, m_dateCodes);
    FillFormats(kDateFormat, names, m_dateCodes, m_dateFormat);
    converter.GetImportTimeTemplate(names, m_timeCodes);
    FillFormats(kTimeFormat, names, m_timeCodes, m_timeFormat);
    SetCheck(kSortByTime, true);
    ShowColumns();
}

void CCG3ImportDlg::OnEvent(DialogEvent const& event) {
    bool const isClick = event.kind == DialogEvent::Kind::Click;
    if (isClick && event.control == kAdd) {
        MoveColumns(kColumnsInFile, m_inFile, 1, "Please, select Column Header from \"Columns in File\" list");
    } else if (isClick && event.control == kRemove) {
        MoveColumns(kColumnsToImport, m_toImport, 0, "Please, select Column Header from \"Columns to Import\" list");
    } else if (isClick && event.control == kImport) {
        m_sortByTime = Get(kSortByTime).checked ? 1 : 0;
        EndDialog(kImport);
    } else if (event.kind == DialogEvent::Kind::Choice && event.control == kDateFormat) {
        m_dateFormat = CodeOf(Get(kDateFormat), m_dateCodes);
    } else if (event.kind == DialogEvent::Kind::Choice && event.control == kTimeFormat) {
        m_timeFormat = CodeOf(Get(kTimeFormat), m_timeCodes);
    } else {
        CDialog::OnEvent(event);
    }
}

void CCG3ImportDlg::ShowColumns() {
    std::vector<std::string> inFile;
    std::vector<std::string> toImport;
    m_inFile.clear();
    m_toImport.clear();
    for (std::size_t column = 0; column < m_titles.size(); ++column) {
        bool const imported = m_importFlags[column] != 0;
        (imported ? m_toImport : m_inFile).push_back(column);
        (imported ? toImport : inFile).push_back(m_titles[column]);
    }
    SetItems(kColumnsInFile, std::move(inFile));
    SetItems(kColumnsToImport, std::move(toImport));
    Enable(kImport, !m_toImport.empty());
}

void CCG3ImportDlg::MoveColumns(int list, std::vector<std::size_t> const& columns, int flag,
                                char const* nothingHighlighted) {
    std::vector<int> const& rows = Get(list).selected;
    if (rows.empty()) {
        ShowMessage(nothingHighlighted);
        return;
    }
    for (int const row : rows) m_importFlags[columns[static_cast<std::size_t>(row)]] = flag;
    ShowColumns();
}

void CCG3ImportDlg::FillFormats(int combo, std::vector<std::string> names, std::vector<int> const& codes, int& chosen) {
    SetItems(combo, std::move(names));
    auto const first = std::find(codes.begin(), codes.end(), kFirstFormat);
    if (first == codes.end()) return;
    SelectRow(combo, static_cast<int>(first - codes.begin()));
    chosen = kFirstFormat;
}

}  // namespace norva
