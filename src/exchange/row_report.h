#pragma once

#include "exchange/report_places.h"
#include "norva/import_report.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// Whether a value of a channel that should not fall is below the one before. A clock that starts again at midnight
/// runs on.
inline bool RunsBackwards(double value, double before, bool isClock) {
    return value < before && !(isClock && before - value > 12);
}

/// What a pass over rows of text finds for the import's report.
class CRowReport {
public:
    /// `columns` are the settings of all columns, skipped ones too.
    explicit CRowReport(std::vector<NorvaChannelStruct> const& columns);

    /// The line that findings are in, which their values are views into; `number` counts from 1.
    void GoTo(std::string_view line, std::uint64_t number) {
        m_line = line;
        m_number = number;
    }
    /// One more location.
    void CountRow() { ++m_rowsOfLine; }
    /// Goes to a line that becomes a location.
    void StartRow(std::string_view line, std::uint64_t number) {
        GoTo(line, number);
        CountRow();
    }
    /// The rows from now on belong to a line of that name. `number` is that of its first row.
    void StartLine(std::string name, std::uint64_t number);
    /// Where lines are known before their rows: names and numbers of locations, for StartNextLine. The report keeps
    /// those that were started.
    void ExpectLines(std::vector<ReportLine> lines);
    /// As StartLine, for the next of them; null when there is none.
    ReportLine const* StartNextLine(std::uint64_t number);
    /// Lines that were started.
    std::size_t LineCount() const { return m_lineCount; }

    /// A value that is no part of the row stands at its end.
    void Note(ReportFinding& finding, std::string_view value);
    void NoteRow(ReportFinding ImportReport::*finding) { AddFinding(m_report.*finding, m_number, 1, m_line); }

    ReportChannel& Channel(int column) { return m_channels[static_cast<std::size_t>(column)]; }

    /// Counts a piece of the source; lines of one kind add up.
    void AddPart(std::string name, std::uint64_t count, std::uint64_t bytes);
    void AddSetting(std::string name, std::string value) {
        m_report.settings.push_back({std::move(name), std::move(value)});
    }
    /// The report of what was found.
    ImportReport Take(std::string unit, std::uint64_t unitsRead, std::uint64_t bytesRead, std::uint64_t sourceSize);

private:
    void EndLine();
    /// A set of all names would take more memory than the lines themselves.
    void MarkRepeatedLines();

    std::vector<NorvaChannelStruct> const& m_columns;
    std::string_view m_line;
    std::uint64_t m_number = 0;
    std::uint64_t m_rowsOfLine = 0;
    std::size_t m_lineCount = 0;
    std::vector<ReportChannel> m_channels;  ///< one a column
    ImportReport m_report;
};

}  // namespace norva
