#include "platform/numbers.h"

#include "norva/converters.h"
#include "platform/text.h"

#include <gtest/gtest.h>
#include <locale.h>
#include <rapidcheck.h>
#include <stdio.h>

#include <bit>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

namespace norva {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// The C locale for this thread, whatever the tests run under.
class CPlainLocale {
public:
    CPlainLocale() : m_plain(newlocale(LC_ALL_MASK, "C", nullptr)), m_before(uselocale(m_plain)) {}
    ~CPlainLocale() {
        uselocale(m_before);
        freelocale(m_plain);
    }

private:
    locale_t m_plain;
    locale_t m_before;
};

std::string Printf(char const* format, int decimals, double value) {
    CPlainLocale const plain;
    std::string text(2000, '\0');
    text.resize(static_cast<std::size_t>(snprintf(text.data(), text.size(), format, decimals, value)));
    return text;
}

/// Every bit pattern is as likely as any other.
template <typename Float, typename Bits>
Float AnyFinite() {
    auto const value = std::bit_cast<Float>(*rc::gen::resize(rc::kNominalSize, rc::gen::arbitrary<Bits>()));
    RC_PRE(std::isfinite(value));
    return value;
}

bool ReadsAsStrtod(std::string const& text) {
    CPlainLocale const plain;
    char* end = nullptr;
    double const expected = std::strtod(text.c_str(), &end);
    NumberRead const read = ScanNumber(text);
    return std::bit_cast<std::uint64_t>(read.value) == std::bit_cast<std::uint64_t>(expected) &&
           read.consumed == static_cast<std::size_t>(end - text.c_str());
}

/// Separated by "|"; "0..." stands for 400 zeros.
constexpr std::string_view kEdges =
    ".|-|-.e5|+-5|--5|abc|12abc|1,5|.5|5.|5.e1|1e|1e+|1e5x|1E-2| \t\r\n\v\f+7|1 2|-0|1e999|-1e999|1e-999|-1e-999|0e999|"
    "1e99999999999999999999|1e-99999999999999999999|4.9e-324|2.4e-324|1.7976931348623158e308|1.7976931348623159e308|"
    "9007199254740993|0.1e23|0...1.5|10...e-400|0.0...1e401|10...|0.0...1|-10...e-99999999999|9223372036854775808.5|"
    "99999999999999999999e-20|"
    // Halfway between two doubles, or as near to it as few digits come; at the smallest and largest ones.
    "2.2250738585072011e-308|2.2250738585072012e-308|2.4703282292062327208e-324|2.4703282292062328e-324|"
    "1.00000000000000011102230246251565404|1.00000000000000011102230246251565405|"
    "1.00000000000000011102230246251565404236316680908203125|"
    "1.000000000000000111022302462515654042363166809082031251|6.631236846766476e-316|8.10109172351e-10|"
    "9007199254740991.4999999999999999999999999999999995|62.5364939768271845828|3.518437208883201171875e13|"
    "0.500000000000000166533453693773481063544750213623046875|1090544144181609348671888949248|"
    "358416272e-33|7385721e303|9.5e-322|1.17549435082228750797e-38|1.7976931348623158079372897140530341507993413e308";

TEST(Numbers, ReadsTheLongestLeadingDecimalNumber) {
    std::vector<std::string_view> edges;
    GetTokens(kEdges, edges, "|");
    for (std::string_view const edge : edges) {
        std::string const text = ReplaceAll(edge, "0...", std::string(400, '0'));
        EXPECT_TRUE(ReadsAsStrtod(text)) << text << " gives " << ReadNumber(text);
    }
    EXPECT_EQ(ScanNumber("").consumed, 0U);
    EXPECT_EQ(ReadNumber("1e999"), kInfinity);
    for (char const* const word : {"nan", "inf", "-Infinity"}) EXPECT_EQ(ScanNumber(word).consumed, 0U) << word;
    EXPECT_EQ(ScanNumber("0x10").consumed, 1U);
    EXPECT_EQ(ScanNumber(std::string_view("1\0002", 3)).consumed, 1U);
    EXPECT_EQ(ReadNumber(std::string_view("123", 2)), 12) << "nothing beyond the view is read";
}

TEST(Numbers, ReadsWhatStrtodReads) {
    EXPECT_TRUE(rc::check([] {
        RC_ASSERT(ReadsAsStrtod(
            *rc::gen::container<std::string>(rc::gen::elementOf(std::string("0123456789012345..+-eE 5")))));
        int const decimals = *rc::gen::inRange(0, 22);
        auto const value = AnyFinite<double, std::uint64_t>();
        RC_ASSERT(ReadsAsStrtod(Printf("%.*e", decimals, value)));
        RC_ASSERT(ReadsAsStrtod(Printf("%.*f", decimals, std::fmod(value, 1e9))));
    }));
    std::mt19937_64 random(11);
    for (int i = 0; i < 200'000; ++i) {
        std::string text = std::to_string(random()).substr(0, random() % 19 + 1);
        text.insert(random() % text.size(), ".");
        if (random() % 2 == 0) text += "e" + std::to_string(static_cast<int>(random() % 60) - 30);
        ASSERT_TRUE(ReadsAsStrtod(text)) << text;
    }
}

TEST(Numbers, ReadsIntegersUpToTheLimits) {
    constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
    for (char const* const none : {"", "x1", "+-1", "-", " "}) EXPECT_EQ(ReadInteger(none), 0) << none;
    EXPECT_EQ(ReadInteger(" 57 %"), 57);
    EXPECT_EQ(ReadInteger("-12.9"), -12);
    EXPECT_EQ(ReadInteger("+9223372036854775807"), kMax);
    EXPECT_EQ(ReadInteger("9223372036854775808"), kMax);
    EXPECT_EQ(ReadInteger("-9223372036854775807"), -kMax);
    EXPECT_EQ(ReadInteger("-9223372036854775809"), -kMax - 1);
    EXPECT_EQ(ReadInt("2147483648"), 2147483647);
    EXPECT_EQ(ReadInt("-99999999999999999999"), -2147483647 - 1);
}

bool WritesAsPrintf(double value, int decimals) {
    std::string fixed = ">";
    std::string exponent = ">";
    AppendFixed(fixed, value, decimals);
    AppendExponent(exponent, value, decimals);
    return fixed == Printf(">%.*f", decimals, value) && exponent == Printf(">%.*e", decimals, value);
}

TEST(Numbers, WritesWhatPrintfWrites) {
    double const most = std::numeric_limits<double>::max();
    double const values[] = {0.0,
                             -0.0,
                             0.5,
                             1.5,
                             2.5,
                             -2.5,
                             0.125,
                             0.375,
                             1e300,
                             -1e22,
                             most,
                             4.9e-324,
                             1.0e30,
                             0.05,
                             9.995,
                             999999.5,
                             18446744073709551616.0,
                             18446744073709549568.0,
                             kInfinity,
                             -kInfinity,
                             std::nan(""),
                             -0.0001,
                             4503599627370496.5,
                             9007199254740993.0};
    for (double const value : values) {
        for (int const decimals : {-7, -1, 0, 1, 2, 3, 6, 9, 14, 15, 16, 17, 22, 400, 1074}) {
            EXPECT_TRUE(WritesAsPrintf(value, decimals)) << value << " with " << decimals;
        }
    }
    EXPECT_TRUE(rc::check("any double", [] {
        RC_ASSERT(WritesAsPrintf(AnyFinite<double, std::uint64_t>(), *rc::gen::inRange(-1, 25)));
    }));
    // Ties in binary, and decimals with a double beside them.
    std::mt19937_64 random(5);
    for (int i = 0; i < 100'000; ++i) {
        auto const integer = static_cast<double>(random() >> (random() % 60 + 4));
        int const decimals = static_cast<int>(random() % 17);
        double const decimal = (integer + 0.5) / std::pow(10.0, decimals);
        for (double const value : {std::ldexp(integer, -static_cast<int>(random() % 20)), decimal,
                                   -std::nextafter(decimal, random() % 2 == 0 ? 0 : most)}) {
            ASSERT_TRUE(WritesAsPrintf(value, decimals)) << Printf("%.*e", 20, value) << " with " << decimals;
        }
    }
    std::string bounded;
    AppendFixed(bounded, -most, std::numeric_limits<int>::max());
    EXPECT_LT(bounded.size(), 2000U);
}

TEST(Numbers, ShortestTextsReadBackAsTheSame) {
    EXPECT_TRUE(rc::check([](std::int64_t integer) {
        auto const single = AnyFinite<float, std::uint32_t>();
        std::string texts[2];
        AppendShortest(texts[0], single);
        AppendInteger(texts[1], integer);
        RC_ASSERT(static_cast<float>(ReadNumber(texts[0])) == single);
        RC_ASSERT(texts[0].size() <= 15U);
        RC_ASSERT(ReadInteger(texts[1]) == integer);
    }));
}

/// NORVA_TEST_NUMBERS says how many are drawn: any bits and decimals as surveys have them by turns.
TEST(Numbers, DoublesPrintedWithAllDigitsReadBackAsTheSame) {
    char const* const named = std::getenv("NORVA_TEST_NUMBERS");
    long const count = named != nullptr ? std::atol(named) : 100'000;
    std::mt19937_64 random(17);
    std::string shortest, digits;
    for (long n = 0; n < count; ++n) {
        double value = std::bit_cast<double>(random());
        if (n % 2 == 0) value = static_cast<double>(random() % 100'000'000'000) / std::pow(10.0, random() % 10);
        if (!std::isfinite(value)) continue;
        shortest.clear();
        digits.clear();
        AppendShortest(shortest, value);
        AppendExponent(digits, value, 16);
        for (std::string const* const text : {&shortest, &digits}) {
            ASSERT_EQ(std::bit_cast<std::uint64_t>(ReadNumber(*text)), std::bit_cast<std::uint64_t>(value)) << *text;
        }
    }
}

}  // namespace
}  // namespace norva
