#pragma once

#include "inspection/column_facts.h"
#include "inspection/table_reader.h"
#include "norva/inspection.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace norva {

/// What the pass over the whole file gathers: counts of the lines, facts of the columns, lines that do not agree.
class CFilePass : public IRowSink {
public:
    CFilePass(std::size_t columns, InspectionOptions const& options);

    void Row(RowView const& row) override;
    void Line(LineView const& line) override;
    /// Has to be called behind the last line.
    void Settle();

    std::vector<CColumnFacts> columns;
    InspectionCounts counts;
    std::vector<InspectedLine> lines;   ///< the first ones
    std::vector<std::string> labels;    ///< the first ones
    std::vector<std::string> oddTexts;  ///< lines that were left out, for a second look at the file
    std::uint64_t rowsBeforeMarker = 0;
    std::optional<std::pair<std::size_t, std::size_t>> position;  ///< columns of latitude and longitude
    std::uint64_t atZero = 0;                                     ///< rows with 0 in both
    std::uint64_t firstAtZero = 0;                                ///< line of the first of them
    std::uint64_t otherTables = 0;
    std::uint64_t firstNamesAgain = 0;

    std::uint64_t OddLines() const { return counts.leftOut + counts.otherTable; }

private:
    void List(InspectedLine line);

    std::uint64_t m_lastOfOtherTable = 0;
};

}  // namespace norva
