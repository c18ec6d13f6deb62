#include "formats/gbn/gbn_file.h"

#include "formats/gbn/gbn_bytes.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>

namespace norva {
namespace {

using test::CGbnBytes;

TEST(GbnFile, WritesEveryRecordToTheByte) {
    GbnMemorySink sink;
    GbnFile file(sink);
    file.WriteSignature();
    file.WriteHeaderEnd();
    file.channel = {"Mag.raw" + std::string(70, 'x'), GbnValueType::kFloat, 4, 12, 6};
    file.WriteChannelRecord();
    file.line = {3, 0, 0, 101, 2026, 11, 23};
    file.WriteLineRecord();
    file.block = {7, -9, 1000.0, 1.0, 1};
    file.WriteBlockHeader();
    file.WriteBytes("xyz\0\0\0\0\0", 9);
    file.WriteInt32(-2);
    file.WriteInt16(-3);
    file.WriteDouble(-0.5);
    file.WriteEnd();

    using namespace std::string_literals;
    std::string const expected = "OASIS BINARY DATA\r\n\x1A"s + "\1Mag_raw"s + std::string(56, 'x') +
                                 "\0\4\0\0\0\4\0\0\0\14\0\0\0\6\0\0\0"s +
                                 "\2\3\0\0\0\0\0\0\0\0\0\0\0\x65\0\0\0\xEA\7\0\0\13\0\0\0\x17\0\0\0"s +
                                 "\3\7\0\0\0\xF7\xFF\xFF\xFF\0\0\0\0\0\x40\x8F\x40\0\0\0\0\0\0\xF0\x3F\1\0\0\0"s +
                                 "xyz\0\0\0\0\0\0"s + "\xFE\xFF\xFF\xFF\xFD\xFF\0\0\0\0\0\0\xE0\xBF\0"s;
    EXPECT_EQ(sink.Bytes(), expected);
}

TEST(GbnFile, ReadsEveryRecordAndStandsBehindIt) {
    std::string bytes = "OASIS BINARY DATAfree\ntext";
    std::string const header = bytes;
    CGbnBytes records;
    records.Channel("Mag", -9, 3, 4).SecondChannel("Other").Line(12, 2, 7).Block(5, 4, 6, 100.0, 0.5);
    bytes += records.bytes.substr(19) + '\5' + std::string(64, 'a') + std::string(128, 'b') + '\xC8';
    GbnMemorySource source(bytes);
    GbnFile file(source);

    EXPECT_EQ(file.ReadSignature(), kGbnSignature);
    std::string text;
    EXPECT_TRUE(file.SkipHeaderText(&text));
    EXPECT_EQ(text, "free\ntext");
    EXPECT_EQ(file.Position(), header.size() + 1);
    EXPECT_EQ(file.ReadRecordCode(), 1);
    ASSERT_TRUE(file.ReadChannelRecord());
    auto const& [name, valueType, displayFormat, width, decimals] = file.channel;
    EXPECT_EQ(std::tie(name, valueType, displayFormat, width, decimals), std::tuple("Mag", -9, 3, 10, 4));
    EXPECT_EQ(file.ReadRecordCode(), 4);
    ASSERT_TRUE(file.ReadSecondChannelRecord());
    EXPECT_EQ(file.secondChannel.name, "Other");
    EXPECT_EQ(file.secondChannel.numbers, (std::array<std::int32_t, 5>{1, 2, 3, 4, 5}));
    EXPECT_EQ(file.ReadRecordCode(), 2);
    ASSERT_TRUE(file.ReadLineRecord());
    auto const& [number, dot, reserved, colon, year, month, day] = file.line;
    EXPECT_EQ(std::tie(number, dot, reserved, colon, year, month, day), std::tuple(12, 2, 0, 7, 2001, 2, 3));
    EXPECT_EQ(file.ReadRecordCode(), 3);
    ASSERT_TRUE(file.ReadBlockHeader());
    auto const& [channel, type, start, increment, count] = file.block;
    EXPECT_EQ(std::tie(channel, type, start, increment, count), std::tuple(5, 4, 100.0, 0.5, 6));
    EXPECT_EQ(file.ReadRecordCode(), 5);
    ASSERT_TRUE(file.ReadOpaqueRecord());
    EXPECT_EQ(file.opaque.first.back(), 'a');
    EXPECT_EQ(file.opaque.second.front(), 'b');
    EXPECT_EQ(file.ReadRecordCode(), 200);
    EXPECT_EQ(file.Remaining(), 0U);
    EXPECT_EQ(file.ReadRecordCode(), 0);
    EXPECT_FALSE(file.ReadLineRecord());
}

/// One value of the type, read from the bytes of `stored`.
template <std::int32_t type, typename Stored>
auto Read(Stored stored) {
    std::string const bytes(reinterpret_cast<char const*>(&stored), sizeof stored);
    GbnMemorySource source(bytes);
    GbnFile file(source);
    typename GbnValue<type>::Stored value{};
    EXPECT_TRUE(file.ReadValue<type>(value));
    EXPECT_EQ(file.Position(), GbnValueWidth(type));
    return value;
}

TEST(GbnFile, MapsValuesAndNoData) {
    EXPECT_EQ(Read<0>(std::int8_t{-128}), -128);
    EXPECT_EQ(Read<0>(std::int8_t{0x35}), 0x35);
    EXPECT_EQ(Read<1>(std::uint16_t{40000}), 40000);
    EXPECT_EQ(Read<1>(std::uint16_t{65535}), kNoDataLong);
    EXPECT_EQ(Read<2>(std::int16_t{-32768}), -32768);
    EXPECT_EQ(Read<3>(std::int32_t{-2147483647}), kNoDataLong);
    EXPECT_EQ(Read<3>(std::numeric_limits<std::int32_t>::min()), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(Read<4>(-1.0e32F), kNoDataFloat);
    EXPECT_EQ(Read<4>(-1.0e31F), -1.0e31F);
    EXPECT_EQ(Read<4>(std::numeric_limits<float>::quiet_NaN()), kNoDataFloat);
    EXPECT_EQ(Read<4>(std::numeric_limits<float>::infinity()), std::numeric_limits<float>::infinity());
    EXPECT_EQ(Read<5>(-1.0e32), kNoDataDouble);
    EXPECT_EQ(Read<5>(static_cast<double>(-1.0e32F)), static_cast<double>(-1.0e32F));
    EXPECT_EQ(Read<5>(-std::numeric_limits<double>::quiet_NaN()), kNoDataDouble);
}

TEST(GbnFile, ReadsBlocksAcrossItsBufferAndTextsUpToTheirZeroByte) {
    std::string bytes(700'000, '\0');
    for (std::size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<char>(i % 251);
    GbnMemorySource source(bytes);
    GbnFile file(source);
    std::string part(600'000, '\0');
    std::string whole;
    for (std::size_t const size : {3U, 262'144U, 17U, 262'141U, 5U}) {
        ASSERT_EQ(file.ReadBytes(part.data(), size), size);
        whole.append(part, 0, size);
    }
    EXPECT_EQ(whole, bytes.substr(0, whole.size()));
    std::size_t const here = whole.size() + 150'000;
    file.Skip(150'000);
    EXPECT_EQ(file.ReadRecordCode(), static_cast<unsigned char>(bytes[here]));
    EXPECT_EQ(file.ReadBytes(part.data(), part.size()), bytes.size() - here - 1);
    EXPECT_EQ(file.Remaining(), 0U);

    std::string const texts("xy\0zfull", 8);
    GbnMemorySource textSource(texts);
    GbnFile textFile(textSource);
    std::string text;
    ASSERT_TRUE(textFile.ReadText(4, text));
    EXPECT_EQ(text, "xy");
    ASSERT_TRUE(textFile.ReadText(4, text));
    EXPECT_EQ(text, "ful");
    EXPECT_FALSE(textFile.ReadText(1, text));
}

}  // namespace
}  // namespace norva
