#include "norva/value_text.h"
#include "norva/exporter_base.h"

#include <gtest/gtest.h>

#include <rapidcheck.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace norva {
namespace {

using namespace DataType;
using namespace DisplayFormat;

TEST(ValueText, OfEveryTypeAndFormat) {
    struct Case {
        int dataType;
        ValueFormat format;  ///< display format, template format, decimals
        double value;
        char const* text;
    };
    char const* const text = "  as it stands, longer than a field";
    CValueText cells;
    for (Case const& one :
         {Case{kFloat, {kFixed, -1, 2}, 1.0e30, "*"}, Case{kDouble, {kDate, 0, 2}, 1.0e30, "*"},
          Case{kInt, {kFixed, -1, 2}, 2147483647, "*"}, Case{kLong, {kTime, 0, 2}, 32767, "32767"},
          Case{kShort, {kFixed, -1, 2}, 32767, "*"}, Case{kShort, {kFixed, -1, 2}, -32767, "-32767"},
          Case{kText, {kFixed, -1, 2}, 1.0e9, text}, Case{kFloat, {kFixed, -1, 10}, 0.1, "0.1000000015"},
          Case{kDouble, {kDate, 2, 2}, 2021.0, "31/12/2020"}, Case{kFloat, {kTime, 1, 1}, 12.5, "12:30:00.0"},
          Case{kDouble, {kTime, 3, 1}, -0.5, "-00:30"}, Case{kDouble, {kGeographic, 0, 2}, -5.5, "-5.30.00.00"}}) {
        int const integer = one.value < 1.0e10 ? static_cast<int>(one.value) : 0;
        std::string out = "|";
        cells.Append(out, one.format, {one.dataType, static_cast<float>(one.value), one.value, integer, integer, text});
        EXPECT_EQ(out, std::string("|") + one.text) << "type " << one.dataType << ", value " << one.value;
    }
}

class CExporterInTest : public CExporterBase {
public:
    using CExporterBase::GetFormatString;
};

TEST(ValueText, NumbersAreThoseOfPrintf) {
    CValueText cells;
    for (int const format : {kUnset, kFixed, kExponent, 7}) {
        for (int const decimals : {-1, 0, 1, 2, 17}) {
            std::string const printf = CExporterInTest::GetFormatString(format, decimals);
            for (double const value : {0.0, -0.0, 0.5, 2.5, -1234.005, 1e-7, 123456789012345678.0, 9.995, -1e300}) {
                char expected[400];
                int const length = std::snprintf(expected, sizeof expected, printf.c_str(), value);
                std::replace(expected, expected + length, ',', '.');  // printf follows the locale
                std::string out;
                cells.Append(out, {format, -1, decimals}, {kDouble, 0, value, 0, 0, {}});
                EXPECT_EQ(out, expected) << printf;
            }
        }
    }
}

/// A value of any size and kind of digits: few decimals, as surveys have them, or all bits.
double AnyNumber() {
    auto const bits = *rc::gen::arbitrary<std::uint64_t>();
    if (bits % 4 == 0) {
        double number = 0;
        std::memcpy(&number, &bits, sizeof number);
        return std::isfinite(number) && std::fabs(number) < 1e29 ? number : 0.5;
    }
    auto const whole = static_cast<double>(static_cast<std::int64_t>(bits) >> *rc::gen::inRange(10, 63));
    return whole / std::pow(10.0, *rc::gen::inRange(0, 8));
}

TEST(ValueText, ToldAsKeptExactlyWhenItReadsBackTheSame) {
    EXPECT_TRUE(rc::check([] {
        double const number = AnyNumber();
        int const dataType = *rc::gen::element(int{kFloat}, int{kDouble});
        ValueFormat const format{*rc::gen::element(int{kFixed}, int{kExponent}, int{kUnset}), -1,
                                 *rc::gen::inRange(-1, 18)};
        StoreValue const value{dataType, static_cast<float>(number), number, 0, 0, {}};
        auto const readsBack = [&](std::string const& text) {
            float single = 0;
            double read = 0;
            std::from_chars(text.data(), text.data() + text.size(), single);
            std::from_chars(text.data(), text.data() + text.size(), read);
            return dataType == kFloat ? single == value.single : read == number;
        };
        std::string text;
        bool const isTold = CValueText().AppendAndCheck(text, format, value);
        RC_ASSERT(isTold == readsBack(text));
        std::string full;
        RC_ASSERT(CValueText(ValueDigits::Full).AppendAndCheck(full, format, value));
        RC_ASSERT(readsBack(full));
        RC_ASSERT(!readsBack(text) || full == text);
    }));
}

TEST(ValueText, DatesTimesAndCoordinatesTellWhatTheyLose) {
    struct Case {
        ValueFormat format;
        double value;
        bool isKept;
        char const* full;
    };
    for (Case const& one :
         {Case{{kTime, 0, 0}, 12.5, true, "12:30:00"}, Case{{kTime, 2, 1}, 12.500347222222223, false, "12:30:01.25"},
          Case{{kDate, 0, 0}, 2021.0, true, "2020/12/31"}, Case{{kDate, 0, 0}, 2021.0001, false, "2020/12/31"},
          Case{{kGeographic, 0, 0}, -5.5, true, "-5.30.00"}}) {
        std::string text;
        StoreValue const value{kDouble, 0, one.value, 0, 0, {}};
        EXPECT_EQ(CValueText().AppendAndCheck(text, one.format, value), one.isKept) << text;
        std::string full;
        CValueText(ValueDigits::Full).Append(full, one.format, value);
        EXPECT_EQ(full, one.full);
    }
}

}  // namespace
}  // namespace norva
