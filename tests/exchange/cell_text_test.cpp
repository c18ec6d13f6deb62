#include "exchange/cell_text.h"
#include "norva/exporter_base.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>

namespace norva {
namespace {

using namespace DataType;
using namespace DisplayFormat;

TEST(CellText, OfEveryTypeAndFormat) {
    struct Case {
        int dataType;
        ExportChannel channel;  ///< position, index, display format, template format, decimals
        double value;
        char const* text;
    };
    char const* const text = "  as it stands, longer than a field";
    CCellText cells;
    for (Case const& one :
         {Case{kFloat, {0, 0, kFixed, -1, 2}, 1.0e30, "*"}, Case{kDouble, {0, 0, kDate, 0, 2}, 1.0e30, "*"},
          Case{kInt, {0, 0, kFixed, -1, 2}, 2147483647, "*"}, Case{kLong, {0, 0, kTime, 0, 2}, 32767, "32767"},
          Case{kShort, {0, 0, kFixed, -1, 2}, 32767, "*"}, Case{kShort, {0, 0, kFixed, -1, 2}, -32767, "-32767"},
          Case{kText, {0, 0, kFixed, -1, 2}, 1.0e9, text}, Case{kFloat, {0, 0, kFixed, -1, 10}, 0.1, "0.1000000015"},
          Case{kDouble, {0, 0, kDate, 2, 2}, 2021.0, "31/12/2020"},
          Case{kFloat, {0, 0, kTime, 1, 1}, 12.5, "12:30:00.0"}, Case{kDouble, {0, 0, kTime, 3, 1}, -0.5, "-00:30"},
          Case{kDouble, {0, 0, kGeographic, 0, 2}, -5.5, "-5.30.00.00"}}) {
        int const integer = one.value < 1.0e10 ? static_cast<int>(one.value) : 0;
        std::string out = "|";
        cells.Append(out, one.channel,
                     {one.dataType, static_cast<float>(one.value), one.value, integer, integer, text});
        EXPECT_EQ(out, std::string("|") + one.text) << "type " << one.dataType << ", value " << one.value;
    }
}

class CExporterInTest : public CExporterBase {
public:
    using CExporterBase::GetFormatString;
};

TEST(CellText, NumbersAreThoseOfPrintf) {
    CCellText cells;
    for (int const format : {kUnset, kFixed, kExponent, 7}) {
        for (int const decimals : {-1, 0, 1, 2, 17}) {
            std::string const printf = CExporterInTest::GetFormatString(format, decimals);
            for (double const value : {0.0, -0.0, 0.5, 2.5, -1234.005, 1e-7, 123456789012345678.0, 9.995, -1e300}) {
                char expected[400];
                int const length = std::snprintf(expected, sizeof expected, printf.c_str(), value);
                std::replace(expected, expected + length, ',', '.');  // printf follows the locale
                std::string out;
                cells.Append(out, {0, 0, format, -1, decimals}, {kDouble, 0, value, 0, 0, {}});
                EXPECT_EQ(out, expected) << printf;
            }
        }
    }
}

}  // namespace
}  // namespace norva
