#pragma once

#include "inspection/cell_kind.h"
#include "inspection/line_split.h"
#include "norva/settings.h"

#include <array>
#include <span>
#include <string_view>
#include <vector>

namespace norva {

/// What rows are read for.
enum class RowsFor {
    Facts,  ///< cells of text columns are read as well; of many numbers the look is enough
    Values
};

/// Splits and reads the rows that most files are made of in one go: as many cells as there are columns, each of its
/// column's kind or missing, at least one of a typed column present. Such a line is no comment, rule, marker or line of
/// names either. Every other line is left to the reader that looks closely.
class CPlainRows {
public:
    /// Both have to outlive it.
    CPlainRows(TextReading const& reading, std::vector<ColumnLook> const& looks, RowsFor purpose);

    /// Fills `parts` and `reads`, one per column each. False, with neither to be used, when the line is not so.
    bool Read(std::string_view line, std::span<CellPart> parts, std::span<CellRead> reads) const;

private:
    struct Column {
        CellKind kind = CellKind::Missing;
        bool isPlainNumber = false;  ///< nothing stands behind the numbers
        std::string_view suffix;
    };

    bool IsGap(char c) const { return m_isGap[static_cast<unsigned char>(c)]; }
    bool EndsCell(char c) const { return m_endsCell[static_cast<unsigned char>(c)]; }
    bool Fits(Column const& column, std::string_view text, CellRead& read) const;
    char const* EndOfQuoted(char const* begin, char const* end) const;
    char const* ScanNumber(char const* begin, char const* end, NumberText& number) const {
        return m_isForFacts ? ScanPlainLook(begin, end, m_rules.marks, number)
                            : ScanPlainNumber(begin, end, m_rules.marks, number);
    }

    std::vector<Column> m_columns;
    CellRules m_rules;
    char m_quote;
    bool m_hasQuote;
    bool m_hasBackslash;
    bool m_isByGaps;
    bool m_isForFacts;
    bool m_isUsable;
    bool m_mayEndInSeparator;
    std::array<bool, 256> m_isGap{};     ///< blanks around a cell that do not separate
    std::array<bool, 256> m_endsCell{};  ///< separates
    std::array<bool, 256> m_startsOther{};
};

}  // namespace norva
