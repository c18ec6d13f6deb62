#pragma once

#include "inspection/cell_kind.h"
#include "inspection/line_split.h"
#include "norva/settings.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Rows that do not agree with their table.
namespace norva {

struct RowMend {
    enum class How : unsigned char {
        None,              ///< the row agrees as it stands
        QuotesNotDoubled,  ///< quotes inside of quotes stand for themselves
        PlainQuote,        ///< one quote without its partner
        PlainQuotes,       ///< every quote is an ordinary character
        OtherSeparator,
        SurplusSeparator,  ///< read without the empty part at `place`
        LackingPart,       ///< an empty part put in at `place`
        Shorter,           ///< empty parts put in at the end
        NextLines          ///< a quoted text goes on in the lines below
    };
    How how = How::None;
    int place = 0;  ///< part, from 1
    char separator = '\0';
    std::size_t found = 0;  ///< parts before mending
};

/// "one separator too many before part 4, read without it".
std::string MendText(RowMend const& mend, std::size_t width);

/// What the rules of a reading say about splitting and reading one cell.
SplitRule SplitRuleOf(TextReading const& reading);
CellRules CellRulesOf(TextReading const& reading);

/// Finds the reading of an odd row that suits the columns best. Costs a little more than a row that agrees: at most
/// some 30 splits.
class CRowMender {
public:
    /// Both have to outlive the mender.
    CRowMender(TextReading const& reading, std::vector<ColumnLook> const& looks);

    /// Replaces `parts`, one per column, as views into `line`. False when no reading suits.
    bool Mend(std::string_view line, std::vector<CellPart>& parts, RowMend& mend);

private:
    struct Found {
        double worth = 0;
        RowMend mend;
        std::vector<CellPart> parts;
    };

    double FitOf(CellPart const& part, std::size_t column);
    double FitOfText(CellPart const& part, ColumnLook const& look) const;
    void Try(double cost, RowMend const& mend);
    void TryCounts(std::string_view line, double cost, RowMend mend);
    void TryWithoutEmpty();
    void TryLackingPart();
    void TryShorter();
    bool SuitsTyped(std::vector<CellPart> const& parts, bool everyOne);

    TextReading const& m_reading;
    std::vector<ColumnLook> const& m_looks;
    SplitRule m_rule;
    CellRules m_cells;
    std::size_t m_width;
    std::vector<CellPart> m_parts;
    std::vector<double> m_left;
    std::vector<double> m_right;
    Found m_best;
    CellRead m_read;
};

}  // namespace norva
