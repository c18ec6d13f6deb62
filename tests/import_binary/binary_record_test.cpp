#include "import_binary/binary_record.h"
#include "import_binary/binary_conversion.h"
#include "import_binary/binary_record_reader.h"
#include "norva/values.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace norva::test {
namespace {

constexpr float kFloatInfinity = std::numeric_limits<float>::infinity();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr std::int32_t kLowest = std::numeric_limits<std::int32_t>::min();

template <typename Number>
std::string Bytes(Number number) {
    return CPackedValues().Add(number).bytes;
}

std::int16_t Short(int value) {
    return static_cast<std::int16_t>(value);
}

TEST(BinaryConversion, ConvertsEveryReadFormatToEveryDataType) {
    using namespace ReadFormat;
    using namespace DataType;
    struct Case {
        int readFormat;
        std::string in;
        int dataType;
        std::string out;
        char const* what;
    };
    float const nanFloat = std::numeric_limits<float>::quiet_NaN();
    for (Case const& c : std::vector<Case>{
             {kInt32, Bytes(16777217), DataType::kFloat, Bytes(16777216.0F), "int32 to the nearest float"},
             {kInt32, Bytes(kLowest), DataType::kDouble, Bytes(-2147483648.0), "int32 to double"},
             {kInt32, Bytes(-123456789), kLong, Bytes(-123456789), "int32 unchanged"},
             {kInt32, Bytes(65536 + 5), kShort, Bytes(Short(5)), "low bits of int32"},
             {kInt32, Bytes(40000), kShort, Bytes(Short(-25536)), "low bits of int32 with the sign bit"},
             {kInt16, Bytes(Short(-32768)), DataType::kFloat, Bytes(-32768.0F), "int16 to float"},
             {kInt16, Bytes(Short(32767)), DataType::kDouble, Bytes(32767.0), "int16 to double"},
             {kInt16, Bytes(Short(-2)), kLong, Bytes(-2), "int16 with its sign"},
             {kInt16, Bytes(Short(-2)), kShort, Bytes(Short(-2)), "int16 unchanged"},
             {ReadFormat::kFloat, Bytes(nanFloat), DataType::kFloat, Bytes(nanFloat), "NaN as it is"},
             {ReadFormat::kFloat, Bytes(-kFloatInfinity), DataType::kDouble, Bytes(-kInfinity), "infinity as double"},
             {ReadFormat::kFloat, Bytes(0.1F), DataType::kDouble, Bytes(static_cast<double>(0.1F)), "float as double"},
             {ReadFormat::kFloat, Bytes(-2.7F), kLong, Bytes(-2), "float toward zero"},
             {ReadFormat::kFloat, Bytes(1.0e30F), kLong, Bytes(kLowest), "float no-data to int32"},
             {ReadFormat::kFloat, Bytes(1.0e30F), kShort, Bytes(Short(0)), "float no-data to int16"},
             {ReadFormat::kFloat, Bytes(2147483648.0F), kLong, Bytes(kLowest), "float one above int32"},
             {ReadFormat::kFloat, Bytes(-2147483648.0F), kLong, Bytes(kLowest), "float at the lowest int32"},
             {ReadFormat::kFloat, Bytes(nanFloat), kShort, Bytes(Short(0)), "float NaN to int16"},
             {ReadFormat::kFloat, Bytes(-65537.5F), kShort, Bytes(Short(-1)), "low bits of a float"},
             {ReadFormat::kDouble, Bytes(0.1), DataType::kFloat, Bytes(0.1F), "double rounded"},
             {ReadFormat::kDouble, Bytes(1.0e300), DataType::kFloat, Bytes(kFloatInfinity), "double above floats"},
             {ReadFormat::kDouble, Bytes(-1.0e-300), DataType::kFloat, Bytes(-0.0F), "double below floats"},
             {ReadFormat::kDouble, Bytes(kNan), DataType::kDouble, Bytes(kNan), "double NaN as it is"},
             {ReadFormat::kDouble, Bytes(2147483647.9), kLong, Bytes(2147483647), "double at the highest int32"},
             {ReadFormat::kDouble, Bytes(2147483648.0), kLong, Bytes(kLowest), "double one above int32"},
             {ReadFormat::kDouble, Bytes(-2147483648.9), kLong, Bytes(kLowest), "double at the lowest int32"},
             {ReadFormat::kDouble, Bytes(-2147483649.0), kLong, Bytes(kLowest), "double one below int32"},
             {ReadFormat::kDouble, Bytes(kNan), kLong, Bytes(kLowest), "double NaN to int32"},
             {ReadFormat::kDouble, Bytes(-kInfinity), kShort, Bytes(Short(0)), "double infinity to int16"},
             {ReadFormat::kDouble, Bytes(98304.0), kShort, Bytes(Short(-32768)), "low bits of a double"},
         }) {
        ConvertValues const convert = FindConversion(c.readFormat, c.dataType);
        ASSERT_NE(convert, nullptr) << c.what;
        std::string const in = c.in + "gap" + c.in;
        std::string out(2 * c.out.size(), '?');
        convert(in.data(), c.in.size() + 3, 2, out.data());
        EXPECT_EQ(out, c.out + c.out) << c.what;
    }
    EXPECT_EQ(FindConversion(kNone, kLong), nullptr);
    EXPECT_EQ(FindConversion(kInt32, kText), nullptr);
}

TEST(BinaryRecord, FillsWhatTheFileDoesNotHold) {
    std::vector<BinaryChannelDef> channels(4);
    int const formats[] = {ReadFormat::kInt32, ReadFormat::kDouble, ReadFormat::kFloat, ReadFormat::kInt16};
    for (std::size_t i = 0; i < 4; ++i) channels[i].readFormat = formats[i];
    ASSERT_EQ(RecordSize(channels), 18U);
    std::string const missing[] = {Bytes(-1), Bytes(kNoDataDouble), Bytes(kNoDataFloat), Bytes(Short(-1))};
    std::string full;
    for (int n = 0; n < 3; ++n)
        full += CPackedValues().Add(n).Add(n + 0.5).Add(static_cast<float>(n) - 0.5F).Add(Short(-n)).bytes;
    CTemporaryFolder const folder;
    std::string const path = folder / "in.bin";
    for (std::size_t length = 0; length <= full.size(); ++length) {
        WriteWholeFile(path, full.substr(0, length));
        std::string expected;
        for (std::size_t record = 0; record < 5; ++record) {
            for (std::string const& value : missing) {
                bool const isThere = expected.size() + value.size() <= length;
                expected += isThere ? full.substr(expected.size(), value.size()) : value;
            }
        }
        for (std::size_t const block : {1U, 2U, 5U}) {
            CFile file;
            ASSERT_TRUE(file.Open(path, CFile::Mode::Read));
            CBinaryRecordReader reader(file, channels);
            std::string read;
            for (std::size_t record = 0; record < 5; record += block) {
                std::size_t const count = std::min<std::size_t>(block, 5 - record);
                read.append(reader.Read(count), count * 18);
            }
            EXPECT_EQ(read, expected) << "cut at " << length << ", read by " << block;
        }
    }
}

TEST(BinaryRecord, CutsRecordsIntoLines) {
    struct Case {
        std::uint64_t fileLength;
        std::int64_t records;
        bool fits;
        std::int64_t points;
        std::vector<std::int64_t> lines;
    };
    for (Case const& c : std::vector<Case>{
             {140, 10, true, 4, {4, 4, 2}},
             {144, 11, false, 11, {11}},
             {140, 10, true, 5, {5, 5}},
             {140, 10, true, 100, {10}},
             {13, 1, false, 1, {1}},
             {0, 0, true, 3, {}},
         }) {
        RecordCount const count = CountRecords(c.fileLength, 14);
        EXPECT_EQ(count.records, c.records) << c.fileLength;
        EXPECT_EQ(count.fits, c.fits) << c.fileLength;
        std::vector<std::int64_t> lines;
        for (std::int64_t line = 0; line < CountLines(count.records, c.points); ++line) {
            lines.push_back(LineLength(count.records, c.points, line));
        }
        EXPECT_EQ(lines, c.lines) << c.fileLength << " bytes, " << c.points << " points";
    }
    EXPECT_EQ(CountRecords(7, 0).records, 0);
}

}  // namespace
}  // namespace norva::test
