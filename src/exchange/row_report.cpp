#include "exchange/row_report.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace norva {

CRowReport::CRowReport(std::vector<NorvaChannelStruct> const& columns)
    : m_columns(columns), m_channels(columns.size()) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        m_channels[i].column = static_cast<int>(i) + 1;
        m_channels[i].settings = columns[i];
    }
}

void CRowReport::EndLine() {
    if (m_lineCount > 0) m_report.lines[m_lineCount - 1].locations = m_rowsOfLine;
    m_rowsOfLine = 0;
}

void CRowReport::StartLine(std::string name, std::uint64_t number) {
    m_report.lines.push_back({std::move(name), 0, number, false});
    StartNextLine(number);
}

void CRowReport::ExpectLines(std::vector<ReportLine> lines) {
    m_report.lines = std::move(lines);
}

ReportLine const* CRowReport::StartNextLine(std::uint64_t number) {
    if (m_lineCount == m_report.lines.size()) return nullptr;
    EndLine();
    ReportLine& line = m_report.lines[m_lineCount++];
    line.sourceLine = number;
    return &line;
}

void CRowReport::MarkRepeatedLines() {
    std::vector<ReportLine>& lines = m_report.lines;
    std::vector<std::uint32_t> order(lines.size());  // a store has fewer lines than that
    std::iota(order.begin(), order.end(), 0U);
    std::ranges::sort(order, [&lines](std::uint32_t a, std::uint32_t b) {
        int const compared = lines[a].name.compare(lines[b].name);
        return compared != 0 ? compared < 0 : a < b;
    });
    for (std::size_t i = 1; i < order.size(); ++i) {
        lines[order[i]].isRepeated = lines[order[i]].name == lines[order[i - 1]].name;
    }
}

void CRowReport::Note(ReportFinding& finding, std::string_view value) {
    if (finding.places.size() >= MostPlaces()) {  // where it stands need not be found
        ++finding.count;
        return;
    }
    bool const isInside = value.data() >= m_line.data() && value.data() < m_line.data() + m_line.size();
    std::size_t const offset = isInside ? static_cast<std::size_t>(value.data() - m_line.data()) : m_line.size();
    AddFinding(finding, m_number, offset + 1, isInside ? value : std::string_view());
}

void CRowReport::AddPart(std::string name, std::uint64_t count, std::uint64_t bytes) {
    m_report.parts.push_back({std::move(name), count, bytes});
}

ImportReport CRowReport::Take(std::string unit, std::uint64_t unitsRead, std::uint64_t bytesRead,
                              std::uint64_t sourceSize) {
    EndLine();
    m_report.lines.resize(m_lineCount);
    MarkRepeatedLines();
    std::uint64_t const locations = m_report.LocationCount();
    for (ReportChannel& channel : m_channels) {
        channel.values = locations;
        if (channel.settings.dataType != DataType::kSkipped) m_report.channels.push_back(std::move(channel));
    }
    m_report.sourceSize = sourceSize;
    m_report.columns = m_columns;
    m_report.unit = std::move(unit);
    m_report.unitsRead = unitsRead;
    m_report.bytesRead = bytesRead;
    return std::move(m_report);
}

}  // namespace norva
