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
        std::uint32_t floatBits;
        double wide;
        std::int32_t integer;
        std::int16_t small;
        std::int32_t truncated;
    };
    constexpr std::uint32_t kNone = 0x7149F2CA;
    constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
    double const infinity = std::numeric_limits<double>::infinity();
    for (auto const& [value, floatBits, wide, integer, small, truncated] :
         {Case{0, 0, 0, 0, 0, 0}, Case{-1.9, 0xBFF33333, -1.9, -1, -1, -1},
          Case{32767, 0x46FFFE00, 32767, 32767, 32767, 32767}, Case{32766.9, 0x46FFFDCD, 32766.9, 32766, 32766, 32766},
          Case{-32768, 0xC7000000, -32768, -32768, 32767, -32768},
          Case{2147483646, 0x4F000000, 2147483646, 2147483646, 32767, 2147483646},
          Case{-2147483648.0, 0xCF000000, -2147483648.0, 2147483647, 32767, kMin},
          Case{2147483648.0, 0x4F000000, 2147483648.0, 2147483647, 32767, kMin},
          Case{-2147483647, 0xCF000000, -2147483647, -2147483647, 32767, -2147483647},
          Case{1e30, kNone, 1e30, 2147483647, 32767, kMin}, Case{-1e30, 0xF149F2CA, -1e30, 2147483647, 32767, kMin},
          Case{1e31, kNone, 1e30, 2147483647, 32767, kMin}, Case{-infinity, kNone, 1e30, 2147483647, 32767, kMin},
          Case{std::nan(""), kNone, 1e30, 2147483647, 32767, kMin}}) {
        EXPECT_EQ(std::bit_cast<std::uint32_t>(FloatInRange(value)), floatBits) << value;
        EXPECT_EQ(DoubleInRange(value), wide) << value;
        EXPECT_EQ(LongInRange(value), integer) << value;
        EXPECT_EQ(ShortInRange(value), small) << value;
        EXPECT_EQ(TruncateToInt32(value), truncated) << value;
    }
    EXPECT_TRUE(IsNoData(FloatInRange(1e31)) && IsNoData(DoubleInRange(1e31)));
    EXPECT_FALSE(IsNoData(9.99e29) || IsNoData(std::nan("")) || IsNoData(static_cast<float>(infinity)));
    EXPECT_EQ(LowShort(-32769), 32767);
}

TEST(ValueRules, StoreLittleEndian) {
    char bytes[8] = {};
    StoreDouble(bytes, 1.0e30);
    EXPECT_EQ(std::string(bytes, 8), std::string("\xEA\x8C\xA0\x39\x59\x3E\x29\x46", 8));
    EXPECT_EQ(LoadLittle16(bytes), 0x8CEA);
    EXPECT_EQ(LoadLittle32(bytes + 4), 0x46293E59U);
    EXPECT_TRUE(rc::check([](std::uint16_t a, std::uint32_t b, std::uint64_t c) {
        char stored[8] = {};
        StoreLittle16(stored, a);
        RC_ASSERT(LoadLittle16(stored) == a);
        StoreFloat(stored, std::bit_cast<float>(b));
        RC_ASSERT(std::bit_cast<std::uint32_t>(LoadFloat(stored)) == b);
        StoreLittle64(stored, c);
        RC_ASSERT(std::bit_cast<std::uint64_t>(LoadDouble(stored)) == c);
    }));
}

TEST(Tokens, SplitAtEveryDelimiter) {
    using namespace std::string_view_literals;
    struct Case {
        std::string_view text, delimiters;
        std::vector<std::string_view> tokens;
    };
    std::vector<std::string_view> tokens = {"older"};
    for (auto const& [text, delimiters, expected] : std::vector<Case>{{"", " ", {}},
                                                                      {" ,\t\n", " ,\t\n", {}},
                                                                      {"Line  7", " ,\t\n", {"Line", "7"}},
                                                                      {",1 2,,\t3 ,", ",\t\n", {"1 2", "3 "}},
                                                                      {"a b", "", {"a b"}},
                                                                      {"\xFF"
                                                                       "a\0b\xFE"sv,
                                                                       "\xFF\0"sv,
                                                                       {"a", "b\xFE"}}}) {
        GetTokens(text, tokens, delimiters);
        EXPECT_EQ(tokens, expected) << text;
    }
    EXPECT_TRUE(rc::check([](std::string const& text, std::string const& delimiters) {
        std::vector<std::string_view> split;
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
