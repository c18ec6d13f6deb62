#include "inspection/column_types.h"

#include "inspection/date_order.h"
#include "platform/numbers.h"
#include "platform/text.h"

#include <algorithm>
#include <cmath>

namespace norva {

namespace {

/// A single gives back six digits for certain, a double fifteen, and seventeen where they were written from one.
constexpr std::uint32_t kSingleDigits = 6;
constexpr std::uint32_t kDoubleDigits = 17;
constexpr double kMostWhole = 9007199254740992.0;
constexpr double kLeastSingle = 1.2e-38;
constexpr std::uint64_t kEnoughToSpoil = 20;

std::string Counted(std::uint64_t count, std::string_view what) {
    return std::to_string(count) + " " + std::string(what) + (count == 1 ? "" : "s");
}

std::string SeenText(CellSeen const& seen) {
    return seen.text + " (line " + std::to_string(seen.line) + ")";
}

bool NameHas(std::string_view name, std::initializer_list<std::string_view> words) {
    std::string const upper = ToUpper(name);
    return std::any_of(words.begin(), words.end(), [&](std::string_view word) { return Contains(upper, word); });
}

int DateTemplateOf(unsigned order, char separator, bool isShortYear) {
    bool const isSlash = separator == '/';
    if (order == kYearFirst) return isSlash ? (isShortYear ? 1 : 0) : 6;
    if (order == kMonthFirst) return isShortYear ? 5 : 4;
    return isSlash ? (isShortYear ? 3 : 2) : 7;
}

class CColumnPlanner {
public:
    CColumnPlanner(CColumnFacts const& facts, ColumnLook const& look, int source, ColumnNaming const& naming,
                   MissingNumbers const& missing, TextReading const& reading, InspectionOptions const& options)
        : m_facts(facts),
          m_look(look),
          m_source(source),
          m_naming(naming),
          m_missing(missing),
          m_reading(reading),
          m_options(options) {}

    ColumnPlan Run() {
        Decide();
        DoubtNumbers();
        return std::move(m_plan);
    }

private:
    void Decide() {
        std::uint64_t const present = m_facts.Present();
        if (std::ranges::find(m_options.textColumns, m_source) != m_options.textColumns.end()) return Text("as told");
        if (present == 0) return NoValues();
        if (m_naming.isLabel) return Text("names the lines of the survey");
        for (CellKind const kind :
             {CellKind::Number, CellKind::Date, CellKind::Time, CellKind::DateTime, CellKind::Position}) {
            if (!IsMadeOf(kind)) continue;
            switch (kind) {
                case CellKind::Number:
                    return Numbers();
                case CellKind::Date:
                    return Dates(false);
                case CellKind::Time:
                    return Times();
                case CellKind::DateTime:
                    return Dates(true);
                default:
                    return Positions();
            }
        }
        Texts();
    }

    /// Every cell is of the kind, or nearly every one of many.
    bool IsMadeOf(CellKind kind) const {
        std::uint64_t const count = m_facts.Count(kind);
        std::uint64_t const others = m_facts.Present() - count;
        if (count == 0) return false;
        if (others == 0) return true;
        if (kind == CellKind::Position || count < kEnoughToSpoil) return false;
        // Another word among whole numbers is a name, and so all of them are.
        if (kind == CellKind::Number && m_facts.withDecimals == 0) return false;
        return others == 1 || others * 100 <= m_facts.Present();
    }

    ColumnPlan::Channel& Add(int dataType, ColumnReading::Form form) {
        ColumnPlan::Channel added;
        added.channel.name = m_naming.name;
        added.channel.units = m_naming.units;
        added.channel.dataType = dataType;
        added.channel.decimalPlaces = 0;
        added.reading.source = m_source;
        added.reading.form = form;
        m_plan.channels.push_back(std::move(added));
        return m_plan.channels.back();
    }

    void Say(std::string choice, std::string evidence, bool isDoubt = false, std::string option = {}) {
        m_plan.findings.push_back({m_naming.name, std::move(choice), std::move(evidence), isDoubt, std::move(option)});
    }

    /// "; 12 missing (*)", with each mark and its count where there are several.
    std::string MissingText() const {
        std::string text;
        std::uint64_t const missing = m_facts.Count(CellKind::Missing);
        if (missing > 0) {
            text = ", " + std::to_string(missing) + " missing (";
            bool isFirst = true;
            for (std::size_t i = 0; i < m_facts.marks.size(); ++i) {
                if (m_facts.marks[i] == 0) continue;
                if (!isFirst) text += ", ";
                isFirst = false;
                text += m_facts.markTexts[i].empty() ? "empty" : m_facts.markTexts[i];
                if (m_facts.marks[i] != missing) text += " " + std::to_string(m_facts.marks[i]);
            }
            text += ")";
        }
        ValueRange const range = m_facts.Range();
        for (DummySeen const& dummy : m_missing.missing) {
            text += ", " + dummy.text + " stands for missing (" + std::to_string(dummy.count);
            if (range.IsSet()) {
                text += "; others ";
                AppendShortest(text, range.low);
                text += " to ";
                AppendShortest(text, range.high);
            }
            text += ")";
        }
        return text;
    }

    void TellSpoilt(CellKind kind) {
        for (std::size_t other = 0; other < m_facts.odd.size(); ++other) {
            if (other == static_cast<std::size_t>(kind) || other == static_cast<std::size_t>(CellKind::Missing))
                continue;
            for (CellSeen const& seen : m_facts.odd[other]) {
                m_plan.spoilt.push_back({seen.line, seen.line, InspectedLine::What::SpoiltCell, seen.text,
                                         m_naming.name + ": \"" + seen.text + "\" is read as a missing value"});
            }
        }
        std::uint64_t const others = m_facts.Present() - m_facts.Count(kind);
        if (others > m_plan.spoilt.size()) {
            Say("", Counted(others, "cell") + " read as missing values, the first " +
                        std::to_string(m_plan.spoilt.size()) + " listed");
        }
    }

    std::string NumbersText(std::string_view what) const {
        std::uint64_t count = m_facts.Count(CellKind::Number);
        for (DummySeen const& dummy : m_missing.missing) count -= dummy.count;
        return Counted(count, what);
    }

    void NoValues() {
        // Empty cells say nothing; marks that stand among numbers do.
        bool const hasMark =
            m_facts.Count(CellKind::Missing) > m_facts.marks[static_cast<std::size_t>(MissingMark::Empty)];
        if (hasMark) {
            Add(DataType::kFloat, ColumnReading::Form::Plain);
            // Sodium is Na, and a dash may be a remark.
            bool isWord = false;
            for (MissingMark const mark :
                 {MissingMark::NA, MissingMark::None, MissingMark::Dash, MissingMark::Question}) {
                isWord = isWord || m_facts.marks[static_cast<std::size_t>(mark)] > 0;
            }
            return Say("single", "no value in any row" + MissingText() + (isWord ? "; they may be texts" : ""), isWord,
                       isWord ? "--column '" + m_naming.name + ":type=text'" : "");
        }
        Add(DataType::kText, ColumnReading::Form::Plain);
        Say("text 1", m_facts.rows == 0 ? "no rows" : "empty in every row");
    }

    void Text(std::string const& evidence, bool isDoubt = false) {
        ColumnPlan::Channel& added = Add(DataType::kText, ColumnReading::Form::Plain);
        bool const isLatin = m_reading.encoding == TextReading::Encoding::Latin1;
        std::size_t const width = std::max<std::size_t>(1, isLatin ? m_facts.longestAsLatin1 : m_facts.longest);
        added.channel.recordType = 1;
        added.channel.arraySize = static_cast<int>(width);
        Say("text " + std::to_string(width), evidence, isDoubt);
    }

    void Texts() {
        std::uint64_t const present = m_facts.Present();
        CellKind most = CellKind::Number;
        for (int kind = static_cast<int>(CellKind::Number); kind < kCellKinds; ++kind) {
            if (m_facts.Count(static_cast<CellKind>(kind)) > m_facts.Count(most)) most = static_cast<CellKind>(kind);
        }
        static constexpr std::string_view kPlural[] = {"",         "", "numbers", "dates", "times", "dates with times",
                                                       "positions"};
        std::uint64_t const count = m_facts.Count(most);
        if (count * 2 < present) {
            // Only an empty cell and stars are no text here: sodium is Na.
            auto const marks = [&](MissingMark mark) { return m_facts.marks[static_cast<std::size_t>(mark)]; };
            return Text("the longest of " +
                        Counted(m_facts.rows - marks(MissingMark::Empty) - marks(MissingMark::Star), "text"));
        }
        CellSeen other;
        for (std::size_t kind = 1; kind < m_facts.firsts.size(); ++kind) {
            CellSeen const& first = m_facts.firsts[kind];
            if (kind != static_cast<std::size_t>(most) && first.IsSet() && (!other.IsSet() || first.line < other.line))
                other = first;
        }
        Text(std::to_string(count) + " of " + std::to_string(present) + " are " +
                 std::string(kPlural[static_cast<std::size_t>(most)]) + ", " + SeenText(other) + " is none",
             true);
    }

    void Numbers() {
        std::uint64_t decimals = m_facts.withDecimals;
        std::uint32_t digits = m_facts.mostDigits;
        std::uint32_t places = m_facts.mostDecimals;
        ValueRange range = m_facts.Range();
        for (DummySeen const& kept : m_missing.kept) {
            if (!kept.isWhole) decimals += kept.count;
            digits = std::max(digits, kept.digits);
            places = std::max(places, kept.decimals);
            range.Add(kept.value);
        }
        if (!range.IsSet()) {
            Add(DataType::kFloat, ColumnReading::Form::Plain);
            AddMissing();
            return Say("single", "no value in any row" + MissingText());
        }
        if (ByName(decimals, range)) return;
        if (decimals == 0) {
            if (m_facts.leadingZero.IsSet() && !m_facts.padsDecimals && m_look.suffix.empty()) {
                return Text(SeenText(m_facts.leadingZero) + " has a leading zero");
            }
            return WholeNumbers(range);
        }
        bool const isTiny = m_facts.hasExponent && std::max(std::fabs(range.low), std::fabs(range.high)) < kLeastSingle;
        bool const isDouble = digits > kSingleDigits || isTiny;
        ColumnPlan::Channel& added = Add(isDouble ? DataType::kDouble : DataType::kFloat, ColumnReading::Form::Plain);
        added.channel.decimalPlaces = static_cast<int>(std::min<std::uint32_t>(places, 15));
        if (m_facts.hasExponent) {
            added.channel.displayFormat = DisplayFormat::kExponent;
            added.channel.decimalPlaces = static_cast<int>(std::min<std::uint32_t>(digits > 0 ? digits - 1 : 0, 15));
        }
        AddMissing();
        std::string evidence = m_facts.needsMostDigits.IsSet()
                                   ? SeenText(m_facts.needsMostDigits) + " needs " + Counted(digits, "digit") + "; "
                                   : std::string();
        Say(isDouble ? "double" : "single", evidence + NumbersText("number") + MissingText());
        if (digits > kDoubleDigits) {
            Say("double", SeenText(m_facts.needsMostDigits) + " has more digits than a double holds", true);
        }
        TellSpoilt(CellKind::Number);
        TellSuffix();
    }

    void WholeNumbers(ValueRange const& range) {
        double const largest = std::max(std::fabs(range.low), std::fabs(range.high));
        if (largest >= kMostWhole) return Text("whole numbers of more digits than a double holds");
        int const type = largest <= 32766         ? DataType::kShort
                         : largest < 2147483647.0 ? DataType::kLong
                                                  : DataType::kDouble;
        Add(type, ColumnReading::Form::Plain);
        AddMissing();
        std::string evidence = NumbersText("whole number") + ", ";
        AppendShortest(evidence, range.low);
        evidence += " to ";
        AppendShortest(evidence, range.high);
        Say(type == DataType::kShort ? "short" : type == DataType::kLong ? "long" : "double", evidence + MissingText());
        TellSuffix();
    }

    void AddMissing() {
        for (DummySeen const& dummy : m_missing.missing) m_plan.channels.back().reading.missing.push_back(dummy.text);
    }

    void TellSuffix() {
        if (m_look.suffix.empty() || m_facts.withSuffix == 0) return;
        Say("", "\"" + m_look.suffix + "\" behind " + Counted(m_facts.withSuffix, "number") + " is taken off", true);
    }

    /// Numbers that are dates, times or positions by the name of their column, or by their looks.
    bool ByName(std::uint64_t decimals, ValueRange const& range) {
        std::string const& name = m_naming.name;
        bool const isPure = m_facts.Count(CellKind::Number) == m_facts.Present() && m_missing.kept.empty();
        if (!isPure || !m_look.suffix.empty()) return false;
        if (m_facts.isCompactDate && decimals == 0) {
            bool const isNamed = NameHas(name, {"DATE", "DAY", "YMD", "YYYYMMDD", "FECHA", "DATUM", "DATA"});
            double const days = m_facts.compactDays.high - m_facts.compactDays.low;
            if (isNamed || (days >= 2 && days < 3 * 366)) {
                CompactDates(!isNamed);
                return true;
            }
            WholeNumbers(range);
            Say("", "every number reads as a date YYYYMMDD as well", true, "--column '" + name + ":type=date'");
            return true;
        }
        if (m_facts.isCompactTime && NameHas(name, {"TIME", "HHMMSS", "HMS", "UTC", "GMT", "CLOCK", "HORA"}) &&
            range.high > 86400) {
            AddTime(ColumnReading::Form::CompactTime, static_cast<int>(m_facts.mostDecimals), true);
            Say("time", "HHMMSS by the name of the column; every minute and second is below 60" + MissingText());
            AddMissing();
            return true;
        }
        if (NameHas(name, {"EPOCH", "UNIX", "POSIX", "TIME", "STAMP"})) {
            bool const isSeconds = range.low >= 1e9 && range.high < 1e10;
            bool const isMilliseconds = decimals == 0 && range.low >= 1e12 && range.high < 1e13;
            if (isSeconds || isMilliseconds) {
                EpochTimes(isMilliseconds ? 1000 : 1);
                return true;
            }
        }
        bool const isLatitude = NameHas(name, {"LAT"});
        bool const isLongitude = NameHas(name, {"LON"});
        double const largest = std::max(std::fabs(range.low), std::fabs(range.high));
        if ((isLatitude || isLongitude) && m_facts.isPackedMinutes && largest > 180 &&
            largest <= (isLatitude ? 9000 : 18000)) {
            Geographic(ColumnReading::Form::PackedMinutes, static_cast<int>(m_facts.mostDecimals));
            Say("degrees", "ddmm.mmmm by the name of the column; all minutes are below 60" + MissingText(), true,
                "--column '" + name + ":type=double'");
            AddMissing();
            return true;
        }
        if (largest > 90 && (NameHas(name, {"LATITUDE"}) || ToUpper(name) == "LAT")) {
            Say("", "latitudes beyond 90 degrees: latitude and longitude may have changed places", true);
        }
        return false;
    }

    void CompactDates(bool isDoubt) {
        AddDate(ColumnReading::Form::CompactDate, kYearFirst, '-', false);
        Say("YYYYMMDD",
            std::string(isDoubt ? "every number is a day within three years"
                                : "by the name of the column; every number is a day") +
                MissingText(),
            isDoubt, isDoubt ? "--column '" + m_naming.name + ":type=long'" : "");
        AddMissing();
    }

    void EpochTimes(std::int64_t divisor) {
        AddDate(ColumnReading::Form::EpochSeconds, kYearFirst, '-', false);
        m_plan.channels.back().channel.name += "_date";
        m_plan.channels.back().reading.epochDivisor = divisor;
        AddMissing();
        AddTime(ColumnReading::Form::EpochSeconds, divisor == 1000 ? 3 : static_cast<int>(m_facts.mostDecimals), true);
        m_plan.channels.back().channel.name += "_time";
        m_plan.channels.back().reading.epochDivisor = divisor;
        AddMissing();
        Say("date, time", std::string(divisor == 1000 ? "milliseconds" : "seconds") +
                              " since 1970 by the name of the column, in UTC" + MissingText());
    }

    void AddDate(ColumnReading::Form form, unsigned order, char separator, bool isShortYear) {
        ColumnPlan::Channel& added = Add(DataType::kDouble, form);
        added.channel.displayFormat = DisplayFormat::kDate;
        added.channel.templateFormat = DateTemplateOf(order, separator, isShortYear);
        added.reading.order = OrderName(order);
    }

    void AddTime(ColumnReading::Form form, int decimals, bool hasSeconds) {
        ColumnPlan::Channel& added = Add(DataType::kDouble, form);
        added.channel.displayFormat = DisplayFormat::kTime;
        added.channel.templateFormat = !hasSeconds ? 3 : decimals == 0 ? 0 : decimals == 1 ? 1 : 2;
        added.channel.decimalPlaces = decimals;
    }

    void Dates(bool hasTime) {
        DateOrder const order = FindDateOrder(m_facts, m_options.dates);
        if (order.order == 0) {
            return Text("dates in different orders: " + SeenText(m_facts.byOrder[0].excludedBy) +
                            " has no day first, " + SeenText(m_facts.byOrder[1].excludedBy) + " no month first",
                        true);
        }
        using Form = ColumnReading::Form;
        bool const isNamed = m_facts.dateForms[0] == 0 && m_facts.dateForms[1] > 0;
        bool const isDayOfYear = m_facts.dateForms[0] == 0 && !isNamed;
        char const separator = isNamed || isDayOfYear ? '-' : m_facts.dateSeparator;
        AddDate(hasTime       ? Form::DateTime
                : isDayOfYear ? Form::DayOfYear
                              : Form::Date,
                isDayOfYear ? kYearFirst : order.order, separator, m_facts.hasShortYear && !isNamed);
        if (hasTime) {
            m_plan.channels.back().channel.name += "_date";
            AddTime(Form::DateTime, m_facts.secondDecimals, m_facts.hasSeconds);
            m_plan.channels.back().channel.name += "_time";
            m_plan.channels.back().reading.order = OrderName(order.order);
        }
        std::string choice = isNamed       ? "DD-MMM-YYYY"
                             : isDayOfYear ? "YYYY-DDD"
                                           : DateFormText(order.order, separator, m_facts.hasShortYear);
        if (isNamed &&
            m_facts.First(hasTime ? CellKind::DateTime : CellKind::Date).text.find_first_of("0123456789") != 0)
            choice = "MMM DD YYYY";
        if (hasTime) choice += " time";
        std::string evidence = order.evidence + MissingText();
        if (hasTime) evidence += "; a date and a time channel";
        if (m_facts.zoned > 0) evidence += ", in UTC";
        std::string option;
        if (order.isDoubt) {
            option = "--dates " + OrderName(order.order);
            for (unsigned const rival : kDateOrderBits) {
                if ((order.rivals & rival) != 0) option += "|" + OrderName(rival);
            }
        }
        Say(std::move(choice), std::move(evidence), order.isDoubt, std::move(option));
        std::uint64_t const cells = m_facts.Count(CellKind::DateTime);
        if (hasTime && m_facts.zoned > 0 && m_facts.zoned < cells) {
            Say("",
                "only " + std::to_string(m_facts.zoned) + " of " + std::to_string(cells) +
                    " have a zone; the others are taken for UTC",
                true);
        }
        TellSpoilt(hasTime ? CellKind::DateTime : CellKind::Date);
    }

    void Times() {
        AddTime(ColumnReading::Form::Time, m_facts.secondDecimals, m_facts.hasSeconds);
        Say("time", Counted(m_facts.Count(CellKind::Time), "time") + MissingText());
        TellSpoilt(CellKind::Time);
    }

    void Geographic(ColumnReading::Form form, int decimals) {
        ColumnPlan::Channel& added = Add(DataType::kDouble, form);
        added.channel.displayFormat = DisplayFormat::kGeographic;
        added.channel.templateFormat = 0;
        added.channel.decimalPlaces = std::clamp(decimals, 2, 9);
    }

    void Positions() {
        Geographic(ColumnReading::Form::Degrees, m_facts.positionDecimals);
        std::string evidence = Counted(m_facts.Count(CellKind::Position), "position") + ", ";
        AppendFixed(evidence, m_facts.degrees.low, 6);
        evidence += " to ";
        AppendFixed(evidence, m_facts.degrees.high, 6);
        if (m_facts.latitudeLetters + m_facts.longitudeLetters > 0) evidence += "; the letter gives the sign";
        Say("degrees", evidence + MissingText());
        if (m_facts.latitudeLetters > 0 && m_facts.longitudeLetters > 0) {
            Say("", "latitudes and longitudes in one column", true);
        }
    }

    void DoubtNumbers() {
        for (MissingNumbers::Doubt const& doubt : m_missing.doubts) {
            std::string option;
            option = "--no-data " + doubt.dummy.text;
            Say(doubt.dummy.text, "line " + std::to_string(doubt.dummy.line) + ": " + doubt.reason + "; kept", true,
                std::move(option));
        }
    }

    CColumnFacts const& m_facts;
    ColumnLook const& m_look;
    int m_source;
    ColumnNaming const& m_naming;
    MissingNumbers const& m_missing;
    TextReading const& m_reading;
    InspectionOptions const& m_options;
    ColumnPlan m_plan;
};

}  // namespace

ColumnPlan PlanColumn(CColumnFacts const& facts, ColumnLook const& look, int source, ColumnNaming const& naming,
                      MissingNumbers const& missing, TextReading const& reading, InspectionOptions const& options) {
    return CColumnPlanner(facts, look, source, naming, missing, reading, options).Run();
}

}  // namespace norva
