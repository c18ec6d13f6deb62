#include "exchange/row_report.h"

namespace norva {

CRowReport::CRowReport(std::vector<NorvaChannelStruct> const& columns)
    : m_columns(columns), m_channels(columns.size()) {
    for (std::size_t i = 0; i < columns.size(); ++i) {
        m_channels[i].column = static_cast<int>(i) + 1;
        m_channels[i].settings = columns[i];
    }
}

void CRowReport::EndLine() {
    if (!m_report.lines.empty()) m_report.lines.back().locations = m_rowsOfLine;
    m_rowsOfLine = 0;
}

void CRowReport::StartLine(std::string const& name, std::uint64_t number) {
    EndLine();
    m_report.lines.push_back({name, 0, number, !m_names.insert(name).second});
}

void CRowReport::Note(ReportFinding& finding, std::string_view value) {
    if (finding.places.size() == ReportFinding::kMostPlaces) {  // where it stands need not be found
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

void CRowReport::Finish(std::string unit, std::uint64_t unitsRead, std::uint64_t bytesRead, std::uint64_t sourceSize) {
    FinishReport(Take(std::move(unit), unitsRead, bytesRead, sourceSize));
}

}  // namespace norva
