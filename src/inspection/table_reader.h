#pragma once

#include "inspection/plain_row.h"
#include "inspection/row_mending.h"

#include <cstdint>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

enum class TableLine : unsigned char {
    Marker,  ///< starts a line of the survey
    Comment,
    Rule,
    Blank,
    Above,         ///< stands above the data: names, units, preamble
    NamesAgain,    ///< the line of the names once more
    NothingAtEnd,  ///< a row of empty cells that no row follows
    Odd,           ///< suits the table in no reading
    OtherTable,    ///< one of many in a row that have another width in common
};

struct LineView {
    TableLine kind = TableLine::Blank;
    std::uint64_t number = 0;
    std::string_view text;
    std::string_view label;  ///< of a marker
    std::size_t parts = 0;   ///< of an odd line or one of another table
};

struct RowView {
    std::uint64_t number = 0;
    std::string_view text;
    std::span<CellPart const> parts;  ///< one per column
    std::span<CellRead const> reads;  ///< one per column
    RowMend mend;
};

/// Takes what a table reader makes of the lines. Views last until the call returns.
class IRowSink {
public:
    virtual ~IRowSink() = default;
    virtual void Row(RowView const& row) = 0;
    virtual void Line(LineView const& line) = 0;
};

/// Tells of every line of a text file, by the settings of its reading, what it is, and splits and reads the rows. It is
/// the one place that decides this: what an inspection counts is what an import stores. Rows come in the order of the
/// file; lines that are no rows and no markers may come before rows that stand above them.
class CTableReader {
public:
    /// All have to outlive the reader.
    CTableReader(TextReading const& reading, std::vector<ColumnLook> const& looks, RowsFor purpose, IRowSink& sink);

    void Feed(std::string_view line, std::uint64_t number);
    void Finish();

private:
    struct Held {
        std::string text;
        std::uint64_t number = 0;
        std::size_t parts = 0;
        bool isNothing = false;  ///< a row of empty cells
    };

    bool FeedPlain(std::string_view line, std::uint64_t number);
    void FeedTable(std::string_view line, std::uint64_t number, bool canJoin);
    bool GoesOnWith(std::string_view line, std::uint64_t number);
    void GiveUpJoining();
    bool ReadRow();
    bool IsNothing() const;
    bool HasStrayQuote() const;
    bool IsRowOfMarks();
    void HoldOdd(std::string_view line, std::uint64_t number, std::size_t parts);
    void Release(bool isEnd);
    void GiveRow(std::string_view line, std::uint64_t number, RowMend const& mend);
    void GiveLine(TableLine kind, std::string_view line, std::uint64_t number, std::size_t parts = 0,
                  std::string_view label = {});
    void GiveOdd(Held const& held);

    TextReading const& m_reading;
    std::vector<ColumnLook> const& m_looks;
    IRowSink& m_sink;
    SplitRule m_rule;
    CellRules m_cells;
    CRowMender m_mender;
    CPlainRows m_plainRows;
    bool m_isForFacts;
    std::vector<CellKind> m_kinds;
    std::size_t m_typed = 0;
    std::vector<CellPart> m_parts;
    std::vector<CellRead> m_reads;
    std::size_t m_misfits = 0;
    std::deque<Held> m_held;
    std::size_t m_oddInRow = 0;
    bool m_inOtherTable = false;
    std::vector<Held> m_open;  ///< lines of a row whose quoted text is not closed yet
    std::string m_joined;
};

}  // namespace norva
