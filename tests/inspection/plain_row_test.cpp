#include "inspection/plain_row.h"
#include "inspection/line_kind.h"
#include "inspection/row_mending.h"
#include "support/classic_locale.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <string>
#include <vector>

using namespace norva;

namespace {

/// What a cell was read as, with all that is known of it.
std::string Described(CellRead const& read) {
    std::string text = std::to_string(static_cast<int>(read.kind));
    auto const add = [&](auto const&... values) { ((text += " " + std::to_string(values)), ...); };
    NumberText const& n = read.number;
    DateText const& d = read.when.date;
    TimeText const& t = read.when.time;
    switch (read.kind) {
        case CellKind::Missing:
            add(static_cast<int>(read.mark));
            break;
        case CellKind::Number:
            add(n.digits, n.decimals, n.count, n.length, n.exponent, static_cast<int>(n.mark), n.isNegative,
                n.hasExponent, n.hasLeadingZero);
            break;
        case CellKind::DateTime:
            add(read.when.hasZone, read.when.zoneMinutes);
            [[fallthrough]];
        case CellKind::Date:
        case CellKind::Time:
            if (read.kind != CellKind::Time)
                add(d.parts[0], d.parts[1], d.parts[2], static_cast<int>(d.form), d.orders);
            if (read.kind != CellKind::Date) add(t.seconds, t.decimals, t.hasSeconds);
            break;
        case CellKind::Position:
            add(read.position.degrees, static_cast<int>(read.position.letter), read.position.decimals);
            break;
        default:
            break;
    }
    return text;
}

bool HasLookOf(NumberText const& look, NumberText const& number) {
    return look.decimals == number.decimals && look.length == number.length && look.mark == number.mark &&
           look.isNegative == number.isNegative && !number.hasExponent && look.hasLeadingZero == number.hasLeadingZero;
}

struct PlainTable {
    TextReading reading;
    std::vector<ColumnLook> looks;

    PlainTable(char separator, std::vector<ColumnLook::Kind> const& kinds) {
        reading.separator = separator;
        reading.quote = '"';
        reading.commentMarks = {"/", "#"};
        for (ColumnLook::Kind const kind : kinds) looks.emplace_back().kind = kind;
    }
};

/// Whether the line is read in one go; what comes of it is then what splitting and reading one after the other give.
bool ReadsAsSplit(PlainTable const& table, std::string const& line) {
    std::vector<CellPart> parts(table.looks.size());
    std::vector<CellRead> reads(table.looks.size());
    if (!CPlainRows(table.reading, table.looks, RowsFor::Facts).Read(line, parts, reads)) return false;
    RC_ASSERT(!IsComment(line, table.reading.commentMarks));
    RC_ASSERT(!IsRule(line));
    std::vector<CellPart> split;
    RC_ASSERT(!SplitLine(line, SplitRuleOf(table.reading), split));
    bool const endsInSeparator = split.size() == parts.size() + 1 && split.back().text.empty();
    if (table.reading.trailingSeparator && endsInSeparator) split.pop_back();
    RC_ASSERT(split.size() == parts.size());
    bool hasValue = false;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        RC_ASSERT(parts[i].text == split[i].text);
        RC_ASSERT(parts[i].isQuoted == split[i].isQuoted);
        RC_ASSERT(parts[i].isEscaped == split[i].isEscaped);
        CellKind const kind = KindOf(table.looks[i].kind);
        CellRead read;
        ReadCell(split[i].text, CellRulesOf(table.reading), IsTyped(kind) ? kind : CellKind::Number,
                 table.looks[i].suffix, read);
        if (reads[i].kind == CellKind::Number && reads[i].number.isLook) {
            RC_ASSERT(HasLookOf(reads[i].number, read.number));
        } else {
            RC_ASSERT(Described(reads[i]) == Described(read));
        }
        RC_ASSERT(!IsTyped(kind) || read.kind == kind || read.kind == CellKind::Missing);
        hasValue = hasValue || (IsTyped(kind) && read.kind == kind);
    }
    RC_ASSERT(hasValue);
    return true;
}

}  // namespace

TEST(PlainRows, AreReadAsSplittingAndReadingWould) {
    test::CClassicLocale const classic;
    using Kind = ColumnLook::Kind;
    static std::vector<std::string> const kCells = {"1",
                                                    "-1.5",
                                                    "+.5",
                                                    "0",
                                                    "-0.000125",
                                                    "00012",
                                                    "123456789",
                                                    "1234567.1234567",
                                                    "-9999.99",
                                                    "12345678.9",
                                                    "5.",
                                                    "1E3",
                                                    "1.5D-3",
                                                    "450000,25",
                                                    "1,234",
                                                    "99999999999999999999",
                                                    "0.0",
                                                    "1.2.3",
                                                    "-",
                                                    "--",
                                                    "*",
                                                    "****",
                                                    "NaN",
                                                    "",
                                                    "",
                                                    "L10",
                                                    "line 7",
                                                    "#1",
                                                    "/x",
                                                    "\"a\"",
                                                    "\"1.5\"",
                                                    "\"a\"\"b\"",
                                                    "\"a, b\"",
                                                    "\"",
                                                    "a\"b",
                                                    "\"a\"b",
                                                    "27/02/2021",
                                                    "5/6/24",
                                                    "27-Feb-2021",
                                                    "9:05",
                                                    "09:05:07.",
                                                    "09:05:07.25",
                                                    "12:00:61",
                                                    "2021-02-27T01:02:03Z",
                                                    "12.30.00.0",
                                                    "0\xC2\xB0"
                                                    "30'S",
                                                    "\v1",
                                                    "41.25m",
                                                    "====",
                                                    "-15.27.08.20",
                                                    "1 2",
                                                    "1\t2",
                                                    "3.141592653589793"};
    int plain = 0;
    int rows = 0;
    rc::check([&] {
        std::vector<Kind> const kinds = *rc::gen::container<std::vector<Kind>>(
            *rc::gen::inRange<std::size_t>(1, 6), rc::gen::element(Kind::Number, Kind::Number, Kind::Number, Kind::Text,
                                                                   Kind::Date, Kind::Time, Kind::Position));
        PlainTable table(*rc::gen::element(',', ';', '\t', '|', ' ', '\0', '.'), kinds);
        table.reading.trailingSeparator = *rc::gen::element(false, true);
        table.looks[0].suffix = *rc::gen::element(std::string(), std::string("m"));
        for (int i = 0; i < 20; ++i) {
            std::string line;
            int const count = static_cast<int>(kinds.size()) + *rc::gen::element(0, 0, 0, 0, 1, -1);
            for (int part = 0; part < count; ++part) {
                if (part > 0) line += table.reading.separator;
                line += *rc::gen::element(std::string(), std::string(), std::string(" "), std::string("\t"));
                // Half of the cells are plain numbers, so that many rows are plain.
                line += *rc::gen::element(true, false) ? std::to_string(*rc::gen::inRange(-99999, 99999)) + ".25"
                                                       : kCells[*rc::gen::inRange<std::size_t>(0, kCells.size())];
                line += *rc::gen::element(std::string(), std::string(), std::string(" "));
            }
            ++rows;
            if (ReadsAsSplit(table, line)) ++plain;
        }
    });
    EXPECT_GT(plain * 20, rows) << "rows that are no test of anything";
}

TEST(PlainRows, AreToldFromRowsThatAreNot) {
    test::CClassicLocale const classic;
    using Kind = ColumnLook::Kind;
    struct {
        char separator;
        char const* line;
        bool isPlain;
    } const cases[] = {
        {',', "1,2.5,text", true}, {',', " 1 ,\t2.5 , a b ", true},
        {',', "1,,", true},        {',', "*,2.5,", true},
        {',', "1E5,2,x", true},    {',', "1,2,\"a, b\"", true},
        {' ', " 1\t 2  x ", true}, {'\t', "1\t 2\tx", true},
        {';', "1,5;2;x", true},    {',', ",,x", false},
        {',', "1,2", false},       {',', "1,2,x,", false},
        {',', "1,a,x", false},     {',', "1,2,\"a\"\"b\"", false},
        {',', "1,2,\"a", false},   {',', "1,2,a\"b", false},
        {',', "#1,2,x", false},    {',', "", false},
        {' ', "1 2", false},       {' ', "1 2 x y", false},
        {',', "1;2;x", false},
    };
    for (auto const& c : cases) {
        PlainTable const table(c.separator, {Kind::Number, Kind::Number, Kind::Text});
        EXPECT_EQ(ReadsAsSplit(table, c.line), c.isPlain) << c.line;
    }
}

/// Numbers of any length and shape have one reading.
TEST(PlainNumbers, AreScannedAsCloselyScannedOnes) {
    test::CClassicLocale const classic;
    rc::check([] {
        auto const digits = [] {
            return *rc::gen::container<std::string>(*rc::gen::inRange<std::size_t>(0, 12),
                                                    rc::gen::element('0', '0', '1', '5', '9'));
        };
        std::string const text = *rc::gen::element(std::string(), std::string("-"), std::string("+")) + digits() +
                                 *rc::gen::element(std::string(), std::string("."), std::string(",")) + digits();
        auto const marks =
            *rc::gen::element(DecimalMarks::None, DecimalMarks::Point, DecimalMarks::Comma, DecimalMarks::Both);
        std::string const line = text + ";1.5;2021-02-27;abcdef";
        CellRead quick;
        CellRead close;
        quick.kind = close.kind = CellKind::Number;
        char const* const after = ScanPlainNumber(line.data(), line.data() + line.size(), marks, quick.number);
        bool const isNumber = ScanNumberText(line, marks, close.number);
        if (after == nullptr) {
            RC_ASSERT(!isNumber || text.size() > 8);
            return;
        }
        RC_ASSERT(isNumber);
        RC_ASSERT(after == line.data() + close.number.length);
        RC_ASSERT(Described(quick) == Described(close));
        NumberText look;
        RC_ASSERT(ScanPlainLook(line.data(), line.data() + line.size(), marks, look) == after);
        RC_ASSERT(HasLookOf(look, close.number));
    });
}
