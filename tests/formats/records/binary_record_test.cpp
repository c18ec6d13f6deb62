#include "formats/records/binary_record.h"
#include "formats/records/binary_conversion.h"
#include "formats/records/binary_record_reader.h"
#include "norva/values.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <limits>
#include <tuple>

namespace norva::test {
namespace {

using Format = RecordChannel::Format;
using Short = std::int16_t;
using Limits = std::numeric_limits<std::int32_t>;
constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

template <typename Number>
std::string Bytes(Number number) {
    return CPackedValues().Add(number).bytes;
}

/// Two values with a gap between them, converted.
template <typename From, typename To>
void ExpectConversion(Format readFormat, From from, int dataType, To to) {
    std::string const in = Bytes(from) + "gap" + Bytes(from);
    std::string out(2 * sizeof(To), '?');
    FindConversion(readFormat, dataType)(in.data(), sizeof(From) + 3, 2, out.data());
    EXPECT_EQ(out, Bytes(to) + Bytes(to)) << RecordFormatName(readFormat) << ": " << from << " as type " << dataType;
}

TEST(BinaryConversion, ConvertsEveryReadFormatToEveryDataType) {
    namespace Type = DataType;
    ExpectConversion(Format::Int32, 16777217, Type::kFloat, 16777216.0F);
    ExpectConversion(Format::Int32, Limits::min(), Type::kDouble, -2147483648.0);
    ExpectConversion(Format::Int32, -123456789, Type::kLong, -123456789);
    ExpectConversion(Format::Int32, 65536 + 5, Type::kShort, Short(5));
    ExpectConversion(Format::Int32, 40000, Type::kShort, Short(-25536));
    ExpectConversion(Format::Int16, Short(-32768), Type::kFloat, -32768.0F);
    ExpectConversion(Format::Int16, Short(32767), Type::kDouble, 32767.0);
    ExpectConversion(Format::Int16, Short(-2), Type::kLong, -2);
    ExpectConversion(Format::Int16, Short(-2), Type::kShort, Short(-2));
    ExpectConversion(Format::Float, kNan, Type::kFloat, kNan);
    ExpectConversion(Format::Float, -kInfinity, Type::kDouble, -static_cast<double>(kInfinity));
    ExpectConversion(Format::Float, -2.7F, Type::kLong, -2);
    ExpectConversion(Format::Float, 1.0e30F, Type::kLong, Limits::min());
    ExpectConversion(Format::Float, 2147483648.0F, Type::kLong, Limits::min());
    ExpectConversion(Format::Float, 1.0e30F, Type::kShort, Short(0));
    ExpectConversion(Format::Float, -65537.5F, Type::kShort, Short(-1));
    ExpectConversion(Format::Double, 0.1, Type::kFloat, 0.1F);
    ExpectConversion(Format::Double, 1.0e300, Type::kFloat, kInfinity);
    ExpectConversion(Format::Double, -0.0, Type::kDouble, -0.0);
    ExpectConversion(Format::Double, 2147483647.9, Type::kLong, Limits::max());
    ExpectConversion(Format::Double, -2147483648.9, Type::kLong, Limits::min());
    ExpectConversion(Format::Double, 2147483648.0, Type::kLong, Limits::min());
    ExpectConversion(Format::Double, static_cast<double>(kNan), Type::kLong, Limits::min());
    ExpectConversion(Format::Double, -static_cast<double>(kInfinity), Type::kShort, Short(0));
    ExpectConversion(Format::Double, 98304.0, Type::kShort, Short(-32768));
    EXPECT_EQ(FindConversion(Format::None, Type::kLong), nullptr);
    EXPECT_EQ(FindConversion(Format::Int32, Type::kText), nullptr);
}

TEST(BinaryRecord, FillsWhatTheFileDoesNotHold) {
    std::vector<RecordChannel> channels(4);
    Format const formats[] = {Format::Int32, Format::Double, Format::Float, Format::Int16};
    for (std::size_t i = 0; i < 4; ++i) channels[i].format = formats[i];
    std::string const missing[] = {Bytes(-1), Bytes(kNoDataDouble), Bytes(kNoDataFloat), Bytes(Short(-1))};
    std::string full;
    for (int n = 0; n < 54; ++n) full += static_cast<char>(n);
    CTemporaryFolder const folder;
    for (std::size_t length = 0; length <= full.size(); ++length) {
        WriteWholeFile(folder / "in.bin", full.substr(0, length));
        std::string expected;
        while (expected.size() < 5 * 18) {
            for (std::string const& value : missing) {
                bool const isThere = expected.size() + value.size() <= length;
                expected += isThere ? full.substr(expected.size(), value.size()) : value;
            }
        }
        for (std::size_t const block : {1U, 5U}) {
            CFile file;
            ASSERT_TRUE(file.Open(folder / "in.bin", CFile::Mode::Read));
            CBinaryRecordReader reader(file, channels);
            std::string read;
            while (read.size() < expected.size()) read.append(reader.Read(block), block * 18);
            EXPECT_EQ(read, expected) << "cut at " << length << ", read by " << block;
        }
    }
}

TEST(BinaryRecord, CutsRecordsIntoLines) {
    using Lines = std::vector<std::int64_t>;
    // Bytes of the file, points a line, records of each line of 14-byte records.
    for (auto const& [bytes, points, expected] :
         std::vector<std::tuple<std::uint64_t, int, Lines>>{{140U, 4, Lines{4, 4, 2}},
                                                            {144U, 11, Lines{11}},
                                                            {140U, 5, Lines{5, 5}},
                                                            {13U, 1, Lines{1}},
                                                            {0U, 3, {}}}) {
        std::int64_t const records = CountRecords(bytes, 14).records;
        Lines lines;
        for (std::int64_t i = 0; i < CountLines(records, points); ++i) lines.push_back(LineLength(records, points, i));
        EXPECT_EQ(lines, expected) << bytes << " bytes, " << points << " points";
    }
}

}  // namespace
}  // namespace norva::test
