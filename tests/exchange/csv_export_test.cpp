#include "exchange/export_run.h"
#include "norva/converters.h"
#include "norva/exchange.h"
#include "norva/value_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

namespace norva {
namespace {

using namespace test;

double DayOf(std::string const& text) {
    double day = 0;
    CNorvaDateTime().GetDoubleDate(text, 0, day);
    return day;
}

NorvaChannelStruct Described(std::string const& name, std::string const& units, int type, int size, int display) {
    return {name, units, type, type == DataType::kText ? 1 : 0, 0, size, display, 1, 0, 0};
}

/// Two lines with what needs care in CSV; the last location of the first one is to be deleted.
StoreSample Awkward() {
    CPackedValues mag, day, clock, lat, count, remark;
    mag.Add(54209.88F).Add(kNoDataFloat).Add(1.0F).Add(1e-9F);
    day.Add(DayOf("2024/06/14")).Add(kNoDataDouble).Add(0.0).Add(DayOf("1999/12/31"));
    clock.Add(12.5).Add(8.0 + 0.25 / 3600).Add(0.0).Add(6.0);
    lat.Add(45.1234567890123).Add(-0.5).Add(0.0).Add(HUGE_VAL);
    count.Add(std::int32_t{-7}).Add(kNoDataLong).Add(std::int32_t{0}).Add(std::int32_t{2147483646});
    remark.Text("a,b", 8).Text("*", 8).Text("gone", 8).Text(" \"x\"\r\ny", 8);
    StoreSample sample;
    sample.lines = {{"L,1", 3}, {"L2", 1}};
    sample.channels = {{Described("Mag", "nT", DataType::kFloat, 1, DisplayFormat::kFixed), mag.bytes},
                       {Described("Day", "", DataType::kDouble, 1, DisplayFormat::kDate), day.bytes},
                       {Described("Clock", "UTC", DataType::kDouble, 1, DisplayFormat::kTime), clock.bytes},
                       {Described("Lat", "", DataType::kDouble, 1, DisplayFormat::kGeographic), lat.bytes},
                       {Described("No, \"1\"", "", DataType::kLong, 1, DisplayFormat::kFixed), count.bytes},
                       {Described("Remark", "", DataType::kText, 8, DisplayFormat::kFixed), remark.bytes}};
    return sample;
}

constexpr char const* kRows =
    "\"L,1\",54209.88,2024-06-14,12:30:00,45.1234567890123,-7,\"a,b\"\r\n"
    "\"L,1\",,,08:00:00.25,-0.5,,\r\n"
    "L2,1e-09,1999-12-31,06:00:00.00,,2147483646,\" \"\"x\"\"\r\ny\"\r\n";

TEST(CsvExport, WritesWhatAReaderOfCsvTakesForTheSame) {
    CTemporaryFolder folder;
    ASSERT_TRUE(WriteStore(folder / "s.nvt", Awkward(), {{0, 2}}));
    struct Case {
        ExportSettings settings;
        std::string header;
    };
    for (Case const& one :
         {Case{{}, "Line,Mag [nT],Day,Clock [UTC],Lat,\"No, \"\"1\"\"\",Remark\r\n"},
          Case{{.units = false}, "Line,Mag,Day,Clock,Lat,\"No, \"\"1\"\"\",Remark\r\n"},
          Case{{.unitRow = true}, "Line,Mag,Day,Clock,Lat,\"No, \"\"1\"\"\",Remark\r\n,nT,,UTC,,,\r\n"}}) {
        ExportResult result;
        Status const status = ExportStore({.storePath = folder / "s.nvt",
                                           .outputPath = folder / "out.CSV",
                                           .settings = one.settings,
                                           .replace = true},
                                          result);
        ASSERT_TRUE(status) << status.Text();
        EXPECT_EQ(ReadWholeFile(folder / "out.CSV"), one.header + kRows);
        EXPECT_EQ(result.report.channels[3].replaced, 1U);  // what is not finite
        EXPECT_EQ(result.report.LossCount(), 1U);
    }
    ExportResult result;
    ASSERT_TRUE(ExportStore({.storePath = folder / "s.nvt",
                             .outputPath = folder / "part.csv",
                             .settings = {.lines = {{1}}, .channels = {{5, 0}}}},
                            result));
    EXPECT_EQ(ReadWholeFile(folder / "part.csv"), "Line,Remark,Mag [nT]\r\nL2,\" \"\"x\"\"\r\ny\",1e-09\r\n");
}

/// A survey as stores have them, with gaps.
StoreSample Survey() {
    StoreSample sample;
    sample.lines = {{"1000", 150}, {"1010", 90}, {"T9", 160}};
    CPackedValues x, mag, day, clock, quality, note, line;
    std::mt19937 random(7);
    std::normal_distribution<double> noise(0, 40);
    for (int n = 0; n < 400; ++n) {
        bool const isGap = n % 37 == 5;
        x.Add(isGap ? kNoDataDouble : 450000 + n * 4.7 + noise(random) / 1000);
        mag.Add(isGap ? kNoDataFloat : static_cast<float>(54000 + noise(random)));
        day.Add(DayOf(n < 200 ? "2024/06/14" : "2024/06/15"));
        clock.Add((30000 + n * 0.1) / 3600);
        quality.Add(isGap ? kNoDataShort : static_cast<std::int16_t>(n * 3 % 100));
        note.Text(isGap ? "*" : n % 2 != 0 ? "ok, clear" : "gust", 9);
        line.Text(n < 150 ? "1000" : n < 240 ? "1010" : "T9", 4);
    }
    sample.channels = {{Described("Line", "", DataType::kText, 4, DisplayFormat::kFixed), line.bytes},
                       {Described("X", "m", DataType::kDouble, 1, DisplayFormat::kFixed), x.bytes},
                       {Described("Mag", "nT", DataType::kFloat, 1, DisplayFormat::kFixed), mag.bytes},
                       {Described("Day", "", DataType::kDouble, 1, DisplayFormat::kDate), day.bytes},
                       {Described("Clock", "", DataType::kDouble, 1, DisplayFormat::kTime), clock.bytes},
                       {Described("Quality", "", DataType::kShort, 1, DisplayFormat::kFixed), quality.bytes},
                       {Described("Note", "", DataType::kText, 9, DisplayFormat::kFixed), note.bytes}};
    return sample;
}

/// Types may differ, values may not: the text says which single-precision number was meant.
bool IsSame(StoreValue const& first, StoreValue const& again) {
    bool const isText = first.dataType == DataType::kText;
    if (isText || again.dataType == DataType::kText)
        return first.dataType == again.dataType && first.text == again.text;
    if (first.IsMissing() || again.IsMissing()) return first.IsMissing() && again.IsMissing();
    auto const number = [](StoreValue const& value) {
        return value.IsFloating() ? value.Floating() : static_cast<double>(value.Whole());
    };
    if (first.dataType == DataType::kFloat) return first.single == static_cast<float>(number(again));
    return std::fabs(number(first) - number(again)) <= 4e-16 * std::fabs(number(first));
}

TEST(CsvExport, ReadsBackByTheProposal) {
    for (bool const unitRow : {false, true}) {
        CTemporaryFolder folder;
        ASSERT_TRUE(WriteStore(folder / "s.nvt", Survey(), {}));
        ExportResult written;
        ASSERT_TRUE(ExportStore(
            {.storePath = folder / "s.nvt", .outputPath = folder / "out.csv", .settings = {.unitRow = unitRow}},
            written));
        EXPECT_EQ(written.report.LossCount(), 0U);
        ImportRequest request{.inputPath = folder / "out.csv", .storePath = folder / "again.nvt"};
        ASSERT_TRUE(ProposeSettings(request.inputPath, {}, request.settings));
        ImportResult result;
        Status const status = ImportFile(request, result);
        ASSERT_TRUE(status) << status.Text();
        EXPECT_EQ(result.report.LossCount(), 0U);

        CNorvaFileUtil first;
        CNorvaFileUtil again;
        ASSERT_EQ(first.SetFileName(folder / "s.nvt", kReopenStore, nullptr), 1);
        ASSERT_EQ(again.SetFileName(request.storePath, kReopenStore, nullptr), 1);
        ASSERT_EQ(again.ProfileCount, first.ProfileCount);
        ASSERT_EQ(again.ChannelCount, first.ChannelCount);
        for (int n = 0; n < first.ChannelCount; ++n) {
            int const one = first.GetFileChanIndex(n);
            int const other = again.GetFileChanIndex(n);
            EXPECT_EQ(again.GetChannelFullName(other), first.GetChannelFullName(one));
            EXPECT_EQ(again.GetChannelDisplayFormat(other), first.GetChannelDisplayFormat(one));
            for (int profile = 0; profile < first.ProfileCount; ++profile) {
                std::string names[2];
                long counts[2] = {0, 0};
                int flag = 0;
                first.GetProfileInfo(profile, names[0], counts[0], flag);
                again.GetProfileInfo(profile, names[1], counts[1], flag);
                ASSERT_EQ(names[1], names[0]);
                ASSERT_EQ(counts[1], counts[0]);
                StoreValue values[2];
                for (long at = 0; at < counts[0]; ++at) {
                    ASSERT_TRUE(values[0].Read(first, one, profile, at) && values[1].Read(again, other, profile, at));
                    ASSERT_TRUE(IsSame(values[0], values[1]))
                        << first.GetChannelName(one) << ", line " << names[0] << ", location " << at;
                }
            }
        }
    }
}

}  // namespace
}  // namespace norva
