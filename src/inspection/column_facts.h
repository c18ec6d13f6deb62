#pragma once

#include "inspection/cell_kind.h"
#include "inspection/line_split.h"

#include <array>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

/// What one pass over a file finds out about each column, in memory that does not grow with the file.
namespace norva {

/// Where something was first seen, cut to a length that can be shown.
struct CellSeen {
    std::uint64_t line = 0;  ///< 0: never
    std::string text;

    bool IsSet() const { return line != 0; }
    void Set(std::uint64_t at, std::string_view what);
};

/// A number that may stand for a missing value.
struct DummySeen {
    double value = 0;
    std::string text;  ///< as first written
    std::uint64_t count = 0;
    std::uint64_t line = 0;
    std::uint32_t digits = 0;
    std::uint32_t decimals = 0;
    bool isWhole = true;
};

struct ValueRange {
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();

    bool IsSet() const { return low <= high; }
    void Add(double value) {
        low = value < low ? value : low;
        high = value > high ? value : high;
    }
};

/// Values of plain numbers by how many decimals they have: compared as whole numbers, without any conversion.
struct DecimalRange {
    std::int64_t low = std::numeric_limits<std::int64_t>::max();
    std::int64_t high = std::numeric_limits<std::int64_t>::min();
};

/// One order of a column's dates: whether all are dates in it, and how the days go on.
struct OrderFacts {
    CellSeen excludedBy;
    std::int64_t previous = 0;
    std::uint64_t days = 0;
    std::uint64_t same = 0;
    std::uint64_t near = 0;  ///< 1 to 3 days
    std::uint64_t far = 0;   ///< 27 days and more
    std::uint64_t other = 0;
    std::uint64_t back = 0;
};

class CColumnFacts {
public:
    static constexpr std::size_t kMostDummies = 8;
    static constexpr std::size_t kMostLabels = 4096;
    static constexpr std::size_t kOddCells = 8;
    static constexpr std::uint32_t kRangedDecimals = 10;

    void Add(CellPart const& part, CellRead const& read, std::uint64_t line) {
        if (read.kind != CellKind::Number || m_tracksLabels || !AddKnown(part.text, read.number))
            AddAny(part, read, line);
    }
    /// Has to be called behind the last row, before anything is asked.
    void Settle();
    /// Values that are missing by the user's word, or kept by it.
    void SetMarks(std::vector<double> const* noData, std::vector<double> const* keep);
    void TrackLabels() { m_tracksLabels = true; }

    std::uint64_t Count(CellKind kind) const { return kinds[static_cast<std::size_t>(kind)]; }
    std::uint64_t Present() const { return rows - Count(CellKind::Missing); }
    CellSeen const& First(CellKind kind) const { return firsts[static_cast<std::size_t>(kind)]; }
    /// Of all numbers but those that may stand for missing values.
    ValueRange Range() const;

    std::uint64_t rows = 0;
    std::array<std::uint64_t, kCellKinds> kinds{};
    std::array<CellSeen, kCellKinds> firsts;
    std::array<std::uint64_t, static_cast<std::size_t>(MissingMark::Count)> marks{};
    std::array<std::string, static_cast<std::size_t>(MissingMark::Count)> markTexts;
    /// The first cells of each kind that the column may turn out not to be made of.
    std::array<std::vector<CellSeen>, kCellKinds> odd;

    // Numbers.
    std::uint64_t withPoint = 0;
    std::uint64_t withComma = 0;
    std::uint64_t commaBeforeThree = 0;
    std::uint64_t withSuffix = 0;
    std::uint64_t withDecimals = 0;  ///< numbers with a mark or an exponent, dummies not among them
    std::uint32_t mostDigits = 0;
    std::uint32_t mostDecimals = 0;
    bool hasExponent = false;
    CellSeen needsMostDigits;
    CellSeen firstDecimal;
    CellSeen leadingZero;       ///< of whole numbers
    bool padsDecimals = false;  ///< "000142.5"
    std::vector<DummySeen> dummies;
    bool isCompactDate = true;    ///< every number is YYYYMMDD
    bool isCompactTime = true;    ///< every number is HHMMSS
    bool isPackedMinutes = true;  ///< every number is ddmm.mmmm
    ValueRange compactDays;

    // Texts, and every cell of a column that may become text.
    std::size_t longest = 0;
    std::size_t longestAsLatin1 = 0;  ///< in the UTF-8 that Latin-1 becomes

    // Labels of lines of the survey.
    std::uint64_t labelRuns = 0;
    bool hasLabelTwice = false;
    CellSeen labelTwice;
    bool hasManyLabels = false;
    bool hasOddLabel = false;  ///< not up to four letters and digits

    // Dates and times.
    unsigned orders = 7;
    std::array<OrderFacts, 3> byOrder;
    CellSeen differsFirst;  ///< first date that two orders read as different days
    char dateSeparator = '\0';
    bool hasShortYear = false;
    std::array<std::uint64_t, 3> dateForms{};
    int secondDecimals = 0;
    bool hasSeconds = false;
    std::uint64_t zoned = 0;

    // Positions.
    std::uint64_t packed = 0;
    std::uint64_t latitudeLetters = 0;
    std::uint64_t longitudeLetters = 0;
    int positionDecimals = 0;
    ValueRange degrees;

private:
    /// Numbers of one sign and one length before the mark, between two that were looked at closely: there is nothing
    /// new in them, and they are only counted.
    struct KnownNumbers {
        std::uint64_t low = ~std::uint64_t{0};
        std::uint64_t high = 0;
        std::uint64_t count = 0;
        std::uint32_t decimals = 0;
        char mark = '\0';
        bool isOpen = false;  ///< numbers outside of them may be of another form than dates, times or minutes
    };
    static constexpr std::size_t kMostWhole = 8;

    bool AddKnown(std::string_view text, NumberText const& number) {
        if (!number.isLook) return false;
        KnownNumbers& known = m_known[number.isNegative ? 1 : 0][number.whole];
        std::uint64_t const first = number.lead >> 56;
        bool const isKnown = known.low <= known.high && number.decimals == known.decimals &&
                             number.mark == known.mark && text.size() <= longest &&
                             number.whole + number.decimals - (first == '0' ? 1 : 0) <= mostDigits;
        // Leading zeros, and numbers that may stand for missing values: "99...", "-9...".
        bool const isSpecial =
            number.hasLeadingZero || (first == '9' && (number.isNegative || (number.lead >> 48 & 0xFF) == '9'));
        if (!isKnown || isSpecial) return false;
        if (number.lead <= known.low || number.lead >= known.high) {
            if (known.isOpen) return false;
            Widen(known, text, number);
        }
        ++known.count;
        return true;
    }
    void Widen(KnownNumbers& known, std::string_view text, NumberText const& number);
    void Learn(NumberText const& look);
    void Settle(KnownNumbers& known);
    void AddAny(CellPart const& part, CellRead const& read, std::uint64_t line);
    /// False for numbers that may stand for missing values.
    bool AddNumber(std::string_view text, NumberText const& number, std::uint64_t line);
    bool AddDummy(std::string_view text, NumberText const& number, std::uint64_t line);
    void AddDate(DateText const& date, std::string_view text, std::uint64_t line);
    void AddLabel(std::string_view text, std::uint64_t line);
    void AddText(std::string_view text);

    std::array<std::array<KnownNumbers, kMostWhole + 1>, 2> m_known;
    std::array<DecimalRange, kRangedDecimals> m_ranges;
    ValueRange m_range;
    std::vector<double> const* m_noData = nullptr;
    std::vector<double> const* m_keep = nullptr;
    bool m_tracksLabels = false;
    bool m_hasNoData = false;
    bool m_isOpenForm = true;  ///< every number may be a date, a time or minutes written as one
    std::string m_label;
    std::unordered_set<std::size_t> m_labels;
    DateText m_date;  ///< the last of those whose days were counted
};

/// Whether a number has the shape of those that stand for missing values: -9999, 99.99, -999.25, 1e32 and the like.
bool HasDummyShape(NumberText const& number);

}  // namespace norva
