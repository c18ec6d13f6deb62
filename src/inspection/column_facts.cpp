#include "inspection/column_facts.h"

#include "inspection/source_lines.h"
#include "platform/text.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace norva {

namespace {

constexpr std::size_t kShownText = 60;
constexpr std::uint64_t kNines[] = {0,       9,        99,        999,        9999,        99999,       999999,
                                    9999999, 99999999, 999999999, 9999999999, 99999999999, 999999999999};
constexpr std::uint64_t kTens[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};

bool IsCompactDay(NumberText const& number, Day& day) {
    if (!number.IsWhole() || number.isNegative || number.count != 8) return false;
    auto const digits = static_cast<int>(number.digits);
    day = {digits / 10000, digits / 100 % 100, digits % 100};
    return day.year >= 1900 && day.year < 2100 && IsCalendarDay(day);
}

bool IsCompactTime(NumberText const& number) {
    if (number.isNegative || number.hasExponent || number.decimals >= std::size(kTens)) return false;
    std::uint64_t const whole = number.digits / kTens[number.decimals];
    return whole < 240000 && whole / 100 % 100 < 60 && whole % 100 < 60;
}

bool IsPackedMinutes(NumberText const& number) {
    if (number.hasExponent || number.mark == '\0' || number.decimals >= std::size(kTens)) return false;
    std::uint64_t const whole = number.digits / kTens[number.decimals];
    return whole <= 18000 && whole % 100 < 60;
}

/// What every negative number of the shape has in common, which few others have.
bool MayBeNegativeDummy(NumberText const& number) {
    static constexpr std::array<std::uint64_t, 19> kNinths = [] {
        std::array<std::uint64_t, 19> ninths{0, 9};
        for (std::size_t i = 2; i < ninths.size(); ++i) ninths[i] = ninths[i - 1] * 10;
        return ninths;
    }();
    return number.digits >= kNinths[std::min(number.count, 18U)] || number.digits == 32768 ||
           number.digits == 2147483648U;
}

bool IsLabelText(std::string_view text) {
    std::size_t at = 0;
    while (at < text.size() && at < 4 && ((text[at] | 0x20) >= 'a' && (text[at] | 0x20) <= 'z')) ++at;
    bool const hasDigit = at < text.size();
    for (; at < text.size(); ++at) {
        if (!IsDigit(text[at])) return false;
    }
    return hasDigit;
}

}  // namespace

void CellSeen::Set(std::uint64_t at, std::string_view what) {
    line = at;
    text = what.substr(0, kShownText);
}

bool HasDummyShape(NumberText const& number) {
    std::uint32_t const decimals = number.decimals;
    if (number.hasExponent || number.count > 18) {
        if (number.exponent < 0 && number.count < 30) return false;
        auto const whole = static_cast<std::int64_t>(number.count) - decimals + number.exponent;
        // 1e30 to 1e38, and the largest floats that some writers take.
        return whole >= 31 && whole <= 39;
    }
    if (number.count > 12 || number.count < 2) return false;
    bool isNines = number.digits == kNines[number.count];
    if (!isNines && decimals > 0 && decimals < std::size(kTens) && number.count > decimals) {
        isNines = number.digits == kNines[number.count - decimals] * kTens[decimals];
        if (isNines) return number.isNegative || number.count - decimals >= 4;
    }
    // "9.9" and "0.99" are ordinary; "99.99" and "999" with a sign are not.
    if (isNines)
        return decimals == 0 ? number.isNegative || number.count >= 4
                             : number.count >= 4 && number.count - decimals >= 2;
    if (!number.isNegative) return false;
    if (number.digits == 99925 && decimals == 2) return true;
    return decimals == 0 && (number.digits == 32768 || number.digits == 2147483648U);
}

void CColumnFacts::SetMarks(std::vector<double> const* noData, std::vector<double> const* keep) {
    m_noData = noData;
    m_keep = keep;
    m_hasNoData = noData != nullptr && !noData->empty();
}

ValueRange CColumnFacts::Range() const {
    ValueRange range = m_range;
    double unit = 1;
    for (DecimalRange const& part : m_ranges) {
        if (part.low <= part.high) {
            range.Add(static_cast<double>(part.low) / unit);
            range.Add(static_cast<double>(part.high) / unit);
        }
        unit *= 10;
    }
    return range;
}

void CColumnFacts::AddAny(CellPart const& part, CellRead const& read, std::uint64_t line) {
    std::string_view const text = part.text;
    auto const kind = static_cast<std::size_t>(read.kind);
    ++rows;
    if (kinds[kind]++ < kOddCells) {
        if (!firsts[kind].IsSet()) firsts[kind].Set(line, text);
        odd[kind].push_back({line, std::string(text.substr(0, kShownText))});
    }
    // A character of Latin-1 becomes up to three bytes.
    bool const mayGrow = read.kind == CellKind::Text && text.size() * 3 > longestAsLatin1;
    if (text.size() > longest || mayGrow) AddText(text);
    if (m_tracksLabels) AddLabel(text, line);
    switch (read.kind) {
        case CellKind::Missing: {
            auto const mark = static_cast<std::size_t>(read.mark);
            if (marks[mark]++ == 0) markTexts[mark] = text;
            return;
        }
        case CellKind::Number: {
            if (!read.number.isLook) {
                AddNumber(text, read.number, line);
                return;
            }
            NumberText number;
            ScanNumberText(text, read.number.mark == ',' ? DecimalMarks::Comma : DecimalMarks::Point, number);
            if (AddNumber(text, number, line)) Learn(read.number);
            return;
        }
        case CellKind::Date:
            AddDate(read.when.date, text, line);
            return;
        case CellKind::DateTime:
            AddDate(read.when.date, text, line);
            if (read.when.hasZone) ++zoned;
            [[fallthrough]];
        case CellKind::Time:
            secondDecimals = std::max(secondDecimals, read.when.time.decimals);
            hasSeconds = hasSeconds || read.when.time.hasSeconds;
            return;
        case CellKind::Position:
            if (read.position.isPacked) ++packed;
            if (read.position.letter == 'N' || read.position.letter == 'S') ++latitudeLetters;
            if (read.position.letter == 'E' || read.position.letter == 'W') ++longitudeLetters;
            positionDecimals = std::max(positionDecimals, read.position.decimals);
            degrees.Add(read.position.degrees);
            return;
        default:
            return;
    }
}

void CColumnFacts::AddText(std::string_view text) {
    longest = std::max(longest, text.size());
    longestAsLatin1 = std::max(longestAsLatin1, Utf8LengthOfLatin1(text));
}

/// What stands between this number and others of its look will bring nothing new.
void CColumnFacts::Learn(NumberText const& look) {
    // Two digits below 60 may begin a time, or degrees with minutes, and so may all numbers between two of those.
    bool const isOpen = m_isOpenForm && look.whole > 1;
    bool const isCounted = look.mark == ',' && look.decimals == 3;
    bool const mayBeDummy = look.isNegative && look.mark == '\0' && look.whole == 5;
    if (m_hasNoData || isCounted || mayBeDummy || (isOpen && look.whole > 2)) return;
    if (Count(CellKind::Number) < kOddCells) return;
    KnownNumbers& known = m_known[look.isNegative ? 1 : 0][look.whole];
    if (known.decimals != look.decimals || known.mark != look.mark) {
        Settle(known);
        known = {};
    }
    known.decimals = look.decimals;
    known.mark = look.mark;
    known.isOpen = isOpen;
    known.low = std::min(known.low, look.lead);
    known.high = std::max(known.high, look.lead);
}

void CColumnFacts::Widen(KnownNumbers& known, std::string_view text, NumberText const& number) {
    known.low = std::min(known.low, number.lead);
    known.high = std::max(known.high, number.lead);
    std::int64_t value = 0;
    for (char const c : text) value = IsDigit(c) ? value * 10 + (c - '0') : value;
    if (number.isNegative) value = -value;
    DecimalRange& range = m_ranges[number.decimals];
    range.low = std::min(range.low, value);
    range.high = std::max(range.high, value);
}

void CColumnFacts::Settle(KnownNumbers& known) {
    rows += known.count;
    kinds[static_cast<std::size_t>(CellKind::Number)] += known.count;
    withPoint += known.mark == '.' ? known.count : 0;
    withComma += known.mark == ',' ? known.count : 0;
    withDecimals += known.mark != '\0' ? known.count : 0;
    known.count = 0;
}

void CColumnFacts::Settle() {
    for (auto& ofSign : m_known) {
        for (KnownNumbers& known : ofSign) Settle(known);
    }
}

bool CColumnFacts::AddNumber(std::string_view text, NumberText const& number, std::uint64_t line) {
    if (number.length < text.size()) ++withSuffix;
    if (number.mark == '.') ++withPoint;
    if (number.mark == ',') {
        ++withComma;
        if (number.decimals == 3 && number.count > 3) ++commaBeforeThree;
    }
    if (isCompactDate) {
        Day day;
        isCompactDate = IsCompactDay(number, day);
        if (isCompactDate) compactDays.Add(static_cast<double>(DayNumber(day)));
    }
    if (isCompactTime) isCompactTime = IsCompactTime(number);
    if (isPackedMinutes) isPackedMinutes = IsPackedMinutes(number);
    m_isOpenForm = isCompactDate || isCompactTime || isPackedMinutes;
    // Ordinary numbers are told from those by their first digit.
    bool const mayBeDummy = text[0] == '9' || (number.isNegative && MayBeNegativeDummy(number)) || number.hasExponent ||
                            number.count > 18 || (m_noData != nullptr && !m_noData->empty());
    if (mayBeDummy && AddDummy(text, number, line)) return false;

    bool const isWhole = number.IsWhole();
    if (!isWhole) {
        if (withDecimals++ == 0) firstDecimal.Set(line, text);
        hasExponent = hasExponent || number.hasExponent;
    }
    if (number.hasLeadingZero) {
        if (!isWhole) {
            padsDecimals = true;
        } else if (!leadingZero.IsSet()) {
            leadingZero.Set(line, text);
        }
    }
    mostDecimals = std::max(mostDecimals, number.decimals);
    if (number.count > mostDigits) {
        std::uint32_t const digits = number.SignificantDigits();
        if (digits > mostDigits) {
            mostDigits = digits;
            needsMostDigits.Set(line, text);
        }
    }
    if (number.count <= 18 && number.decimals < kRangedDecimals && !number.hasExponent) {
        auto const digits = static_cast<std::int64_t>(number.digits);
        std::int64_t const value = number.isNegative ? -digits : digits;
        DecimalRange& range = m_ranges[number.decimals];
        range.low = std::min(range.low, value);
        range.high = std::max(range.high, value);
    } else {
        m_range.Add(ValueOf(number, text));
    }
    return true;
}

/// Whether the number is set apart as one that may stand for missing values.
bool CColumnFacts::AddDummy(std::string_view text, NumberText const& number, std::uint64_t line) {
    bool isOne = HasDummyShape(number);
    double value = 0;
    if (m_noData != nullptr && !m_noData->empty()) {
        value = ValueOf(number, text);
        isOne = isOne || std::find(m_noData->begin(), m_noData->end(), value) != m_noData->end();
    }
    if (!isOne) return false;
    value = ValueOf(number, text);
    if (m_keep != nullptr && std::find(m_keep->begin(), m_keep->end(), value) != m_keep->end()) return false;
    for (DummySeen& dummy : dummies) {
        if (dummy.value != value) continue;
        ++dummy.count;
        return true;
    }
    if (dummies.size() == kMostDummies) return false;
    dummies.push_back({value, std::string(text.substr(0, number.length)), 1, line, number.SignificantDigits(),
                       number.decimals, number.IsWhole()});
    return true;
}

void CColumnFacts::AddDate(DateText const& date, std::string_view text, std::uint64_t line) {
    ++dateForms[static_cast<std::size_t>(date.form)];
    dateSeparator = dateSeparator == '\0' ? date.separator : dateSeparator;
    hasShortYear = hasShortYear || date.isShortYear;
    for (std::size_t i = 0; i < byOrder.size(); ++i) {
        if (date.form != DateText::Form::Numbers || (date.orders & kDateOrderBits[i]) != 0) continue;
        orders &= ~kDateOrderBits[i];
        if (!byOrder[i].excludedBy.IsSet()) byOrder[i].excludedBy.Set(line, text);
    }
    if (date.form != DateText::Form::Numbers) return;
    if ((orders & (orders - 1)) == 0) return;  // decided already
    // Rows of one day follow each other.
    bool const isSame = date == m_date;
    m_date = date;
    std::int64_t lastDay = 0;
    bool hasDay = false;
    for (std::size_t i = 0; i < byOrder.size(); ++i) {
        if ((orders & kDateOrderBits[i]) == 0) continue;
        std::int64_t const day = isSame ? byOrder[i].previous : DayNumber(DayOf(date, kDateOrderBits[i]));
        if (hasDay && day != lastDay && !differsFirst.IsSet()) differsFirst.Set(line, text);
        lastDay = day;
        hasDay = true;
        OrderFacts& facts = byOrder[i];
        if (facts.days++ > 0) {
            std::int64_t const step = day - facts.previous;
            ++(step < 0     ? facts.back
               : step == 0  ? facts.same
               : step <= 3  ? facts.near
               : step >= 27 ? facts.far
                            : facts.other);
        }
        facts.previous = day;
    }
}

void CColumnFacts::AddLabel(std::string_view text, std::uint64_t line) {
    bool const isFirst = labelRuns == 0;
    if (!isFirst && text == m_label) return;
    m_label = text;
    ++labelRuns;
    if (!hasOddLabel) hasOddLabel = !IsLabelText(text);
    if (hasManyLabels) return;
    if (m_labels.size() == kMostLabels) {
        hasManyLabels = true;
    } else if (!m_labels.insert(std::hash<std::string_view>{}(text)).second && !hasLabelTwice) {
        hasLabelTwice = true;
        labelTwice.Set(line, text);
    }
}

}  // namespace norva
