#include "formats/cg3/cg3_import_dlg.h"

#include "formats/cg3/cg3_import_template.h"
#include "formats/cg3/cg3_settings.h"
#include "norva/converters.h"
#include "ui/messages.h"

#include <algorithm>

namespace norva {

namespace {

using namespace ids::CG3Import;

constexpr int kTemplate = 4062;
int CodeOf(CControl const& combo, std::vector<int> const& codes) {
    return combo.selected.empty() ? -1 : codes[static_cast<std::size_t>(combo.selected.front())];
}

}  // namespace

CCG3ImportDlg::CCG3ImportDlg(std::vector<std::string> const& titles, Cg3Settings& settings)
    : CDialog(kTemplate), m_titles(titles), m_settings(settings) {}

void CCG3ImportDlg::OnInitDialog() {
    CNorvaDateTime const converter;
    std::vector<std::string> names;
    converter.GetImportDateTemplate(names, m_dateCodes);
    FillFormats(kDateFormat, names, m_dateCodes, m_settings.dateFormat);
    converter.GetImportTimeTemplate(names, m_timeCodes);
    FillFormats(kTimeFormat, names, m_timeCodes, m_settings.timeFormat);
    SetCheck(kSortByTime, m_settings.sortByTime);
    ShowColumns();
}

void CCG3ImportDlg::OnEvent(DialogEvent const& event) {
    bool const isClick = event.kind == DialogEvent::Kind::Click;
    if (isClick && event.control == kAdd) {
        MoveColumns(kColumnsInFile, m_inFile, true, "Please, select Column Header from \"Columns in File\" list");
    } else if (isClick && event.control == kRemove) {
        MoveColumns(kColumnsToImport, m_toImport, false,
                    "Please, select Column Header from \"Columns to Import\" list");
    } else if (isClick && event.control == kImport) {
        m_settings.sortByTime = Get(kSortByTime).checked;
        EndDialog(kImport);
    } else if (event.kind == DialogEvent::Kind::Choice && event.control == kDateFormat) {
        m_settings.dateFormat = CodeOf(Get(kDateFormat), m_dateCodes);
    } else if (event.kind == DialogEvent::Kind::Choice && event.control == kTimeFormat) {
        m_settings.timeFormat = CodeOf(Get(kTimeFormat), m_timeCodes);
    } else {
        CDialog::OnEvent(event);
    }
}

void CCG3ImportDlg::ShowColumns() {
    std::vector<std::string> inFile;
    std::vector<std::string> toImport;
    m_inFile.clear();
    m_toImport = *m_settings.columns;
    auto next = m_toImport.begin();
    for (int column = 0; column < static_cast<int>(m_titles.size()); ++column) {
        bool const imported = next != m_toImport.end() && *next == column;
        if (imported) ++next;
        if (!imported) m_inFile.push_back(column);
        (imported ? toImport : inFile).push_back(m_titles[static_cast<std::size_t>(column)]);
    }
    SetItems(kColumnsInFile, std::move(inFile));
    SetItems(kColumnsToImport, std::move(toImport));
    Enable(kImport, !m_toImport.empty());
}

void CCG3ImportDlg::MoveColumns(int list, std::vector<int> const& columns, bool chosen,
                                char const* nothingHighlighted) {
    std::vector<int> const& rows = Get(list).selected;
    if (rows.empty()) {
        ShowMessage(nothingHighlighted);
        return;
    }
    std::vector<int> moved;
    for (int const row : rows) moved.push_back(columns[static_cast<std::size_t>(row)]);
    ChooseCg3Columns(m_settings, moved, chosen);
    ShowColumns();
}

void CCG3ImportDlg::FillFormats(int combo, std::vector<std::string> names, std::vector<int> const& codes, int chosen) {
    SetItems(combo, std::move(names));
    auto const row = std::ranges::find(codes, chosen);
    if (row != codes.end()) SelectRow(combo, static_cast<int>(row - codes.begin()));
}

}  // namespace norva
