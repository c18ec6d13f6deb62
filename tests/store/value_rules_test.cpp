#include "store/value_rules.h"

#include "norva/converters.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <bit>
#include <cmath>
#include <limits>

namespace norva {
namespace {

TEST(ValueRules, TakeNumbersIntoTheRangesOfTheTypes) {
    struct Case {
        double value;
        std::int32_t integer;
        std::int16_t small;
        std::int32_t truncated;
    };
    constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
    for (auto const& [value, integer, small, truncated] :
         {Case{-1.9, -1, -1, -1}, Case{32767, 32767, 32767, 32767}, Case{-32767, -32767, -32767, -32767},
          Case{-32768, -32768, 32767, -32768}, Case{2147483646.9, 2147483646, 32767, 2147483646},
          Case{-2147483647, -2147483647, 32767, -2147483647}, Case{-2147483648.0, 2147483647, 32767, kMin},
          Case{2147483648.0, 2147483647, 32767, kMin}, Case{-1e30, 2147483647, 32767, kMin},
          Case{std::nan(""), 2147483647, 32767, kMin}}) {
        EXPECT_EQ(LongInRange(value), integer) << value;
        EXPECT_EQ(ShortInRange(value), small) << value;
        EXPECT_EQ(TruncateToInt32(value), truncated) << value;
    }
    for (double const outside : {1e31, -1.1e30, static_cast<double>(INFINITY), std::nan("")}) {
        EXPECT_EQ(std::bit_cast<std::uint32_t>(FloatInRange(outside)), 0x7149F2CAU) << outside;
        EXPECT_EQ(DoubleInRange(outside), 1.0e30) << outside;
    }
    EXPECT_EQ(std::bit_cast<std::uint32_t>(FloatInRange(-1e30)), 0xF149F2CAU);
    EXPECT_EQ(DoubleInRange(-1e30), -1e30);
    EXPECT_FALSE(IsNoData(9.99e29) || IsNoData(std::nan("")) || IsNoData(-kNoDataFloat));
    EXPECT_EQ(LowShort(-32769), 32767);
}

TEST(ValueRules, StoreLittleEndian) {
    char bytes[8] = {};
    StoreDouble(bytes, 1.0e30);
    EXPECT_EQ(std::string(bytes, 8), "\xEA\x8C\xA0\x39\x59\x3E\x29\x46");
    EXPECT_EQ(LoadDouble(bytes), 1.0e30);
    EXPECT_EQ(LoadLittle16(bytes), 0x8CEA);
    StoreLittle32(bytes, 0x7149F2CA);
    EXPECT_EQ(LoadLittle64(bytes), 0x46293E597149F2CAU);
    EXPECT_EQ(LoadFloat(bytes), kNoDataFloat);
}

TEST(Tokens, SplitAtEveryDelimiter) {
    EXPECT_TRUE(rc::check([](std::string const& text, std::string const& delimiters) {
        std::vector<std::string_view> split = {"older"};
        GetTokens(text, split, delimiters);
        std::size_t at = 0;
        for (std::string_view const token : split) {
            std::size_t const first = text.find_first_not_of(delimiters, at);
            at = std::min(text.find_first_of(delimiters, first), text.size());
            RC_ASSERT(token.data() == text.data() + first);
            RC_ASSERT(token.size() == at - first);
        }
        RC_ASSERT(text.find_first_not_of(delimiters, at) == std::string::npos);
    }));
}

}  // namespace
}  // namespace norva
