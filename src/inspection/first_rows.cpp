#include "inspection/row_adaptor.h"
#include "inspection/source_lines.h"
#include "norva/inspection.h"

namespace norva {

namespace {

class CFirstRows : public IAdaptedSink {
public:
    CFirstRows(ColumnTextSettings const& settings, std::size_t most, std::vector<InspectedRow>& rows)
        : m_hasLabels(settings.labelColumn >= 0), m_most(most), m_rows(rows) {}

    bool Row(AdaptedRow const& row) override {
        if (m_rows.size() >= m_most) return false;
        InspectedRow& shown = m_rows.emplace_back();
        shown.line = row.number;
        shown.surveyLine = m_hasLabels ? std::string(row.label) : m_marker;
        shown.cells.reserve(row.cells.size());
        for (AdaptedCell const& cell : row.cells) shown.cells.push_back({WhatOf(cell), std::string(cell.text)});
        return m_rows.size() < m_most;
    }
    bool Line(LineView const& line) override {
        if (line.kind == TableLine::Marker) m_marker = line.label;
        return true;
    }

private:
    static InspectedCell::What WhatOf(AdaptedCell const& cell) {
        switch (cell.what) {
            case AdaptedCell::What::Missing:
                return InspectedCell::What::Missing;
            case AdaptedCell::What::Unreadable:
                return InspectedCell::What::Unreadable;
            default:
                return InspectedCell::What::Value;
        }
    }

    bool m_hasLabels;
    std::size_t m_most;
    std::vector<InspectedRow>& m_rows;
    std::string m_marker;
};

}  // namespace

Status ReadFirstRows(std::string const& path, ColumnTextSettings const& settings, std::size_t most,
                     std::vector<InspectedRow>& rows) {
    rows.clear();
    if (!settings.reading || !CRowAdaptor::CanRead(settings)) {
        return Status::Failure("The settings do not fit together", path);
    }
    CSourceLines lines;
    if (Status status = lines.Open(path); !status) return status;
    CFirstRows first(settings, most, rows);
    CRowAdaptor adaptor(settings, first);
    std::string_view line;
    bool goesOn = most > 0;
    while (goesOn && lines.Next(line)) goesOn = adaptor.Feed(line, lines.Number());
    if (goesOn) adaptor.Finish();
    return lines.Result(path);
}

}  // namespace norva
