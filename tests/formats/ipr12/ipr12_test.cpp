#include "formats/ipr12/ipr12_dump_converter.h"

#include "platform/text.h"
#include "support/conversion.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace norva {
namespace {

using test::Conversion;
using test::CTemporaryFolder;
using test::WriteWholeFile;

Conversion Convert(std::string const& text) {
    return test::ConvertText<CIPR12DumpConverter>(text);
}

TEST(IPR12DumpConverter, FillsNineSlots) {
    struct Case {
        char const* line;
        char const* slots;
    };
    Case const cases[] = {
        {"1.2 3.4|5.6", "* * * * * 1.2 3.4 * 5.6"},
        {"", "* * * * * * * * *"},
        {" \t1,2#3 4 5 6 7  ", "1 2 3 4 5 6 7 * *"},
        {"1 2 3 4 5 6 7 8 | 9", "* * * * * * * * 9"},
        {"1 2 3 4 5 6 7 | 8 9", "1 2 3 4 5 6 7 8 9"},
        {"1 |", "* * * * * * 1 * *"},
        {"| 8 9", "* * * * * * * 8 9"},
        {"1 | 7 8 9", "* * * * * * 1 * *"},
        {"1 | 8 | 9", "* * * * * * 1 * *"},
    };
    for (Case const& c : cases) {
        CIPR12DumpConverter::Slots slots;
        CIPR12DumpConverter::ReadSlots(c.line, slots);
        std::string joined;
        for (std::string_view const slot : slots) joined.append(joined.empty() ? "" : " ").append(slot);
        EXPECT_EQ(joined, c.slots) << c.line;
    }
}

TEST(IPR12DumpConverter, ConvertsPositions) {
    std::pair<char const*, char const*> const cases[] = {
        {"100N", "100"},     {"100S", "-100"},  {"25W", "-25"}, {"40E", "40"},  {"100S+25", "-100"},
        {"100+25S", "-100"}, {"100+25", "100"}, {"100", "100"}, {"-5W", "--5"}, {"10S20W", "10"},
        {"10s", "10s"},      {"S10", "-"},      {"N10", ""},    {"", ""},       {"12.5N", "12.5"},
    };
    for (auto const& [value, position] : cases) {
        EXPECT_EQ(CIPR12DumpConverter::ConvertPosition(value), position) << value;
    }
}

std::string const kHeader =
    "P-Line: 100N+25 x\n"
    "Station 1 2 3 4 5 6 7 8 9\n"
    "Stn C1 C2 I T Cyc\n"
    "D: Vp SP\n"
    "M0 M1 M2 M3 M4 M5 M6 | Ms Tau\n"
    "M7 M8 M9 M10 M11 M12 M13 | RMS Fit\n"
    "*****\n";
std::string const kGroup =
    "Pos 0E 25E 50E 75E 100E 125E 150E 175E 200E\n"
    "1 25W 0 900 2.0 12\n";
std::string const kReading = "D1: 5.5 -3\n1 2 | 3\n4 5 | 6 7\n";

TEST(IPR12DumpConverter, WritesTitlesAndRows) {
    Conversion const conversion = Convert(ReplaceAll(kHeader + kGroup + kReading, "\n", " \t\r\n"));
    EXPECT_EQ(conversion.status.Text(), "");
    EXPECT_EQ(conversion.output,
              "//Data from sicntrex IPR_12 MULTI-CHANNEL dump file \n"
              "/     PLine       R1Y       R2Y       Stn       C1Y       C2Y     I(mA)        T(Sec)       Cyc"
              "         Vp(mV)         SP(mV)"
              "         M0(mV)         M1(mV)         M2(mV)         M3(mV)         M4(mV)         M5(mV)"
              "         M6(mV)"
              "         M7(mV)         M8(mV)         M9(mV)        M10(mV)        M11(mV)        M12(mV)"
              "        M13(mV)"
              "          Ms         Tau       RMS       Fit\n"
              "Line  100N \n"
              "       100         0        25         1       -25         0       900       2.0        12"
              "       5.5        -3"
              "         *         *         *         *         *         1         2"
              "         *         *         *         *         *         4         5"
              "           *           3         6         7\n");
}

TEST(IPR12DumpConverter, FollowsStationsReadingsAndLines) {
    std::string const row = " 1 -25 0 900 2.0 12 5.5 -3 * * * * * 1 2 * * * * * 4 5 * 3 6 7\n";
    std::string readings;
    std::string ten = "Line 100N\n";
    for (int k = 0; k < 9; ++k) {
        readings += kReading;
        ten += "100 " + std::to_string(25 * k) + " " + std::to_string(25 * k + 25) + row;
    }
    ten += "100 * *" + row;
    std::string const one = "Line 100N\n100 0 25" + row;
    std::string const none = " * * * * * * * * * * * * * * * * * *\n";
    std::string const values = " 5.5 -3 * * * * * 1 2 * * * * * 4 5 * 3 6 7\n";
    struct Case {
        std::string text;
        std::string body;
        char const* found;
    };
    Case const cases[] = {
        {kHeader, "Line 100N\n", "rows 0"},
        {kHeader + kGroup + readings + kReading, ten, "rows 10"},
        {kHeader + kGroup + kReading + "\n***\n" + kGroup + kReading, one + "100 0 25" + row, "rows 2"},
        // Without "*" between them, the lines of the next group are none of a group.
        {kHeader + kGroup + kReading + kGroup + kReading, one + "100 25 50" + row, "rows 2, left out 2 (13)"},
        // Another survey line: the rows keep the coordinate of the header.
        {kHeader + kGroup + kReading + "-----\nP-Line: 1\nP-Line: 200S+50\nStation x\n***\n" + kGroup + kReading,
         one + "LINE 200S\n100 0 25" + row, "rows 2"},
        {kHeader + kGroup + kReading + "-----\nP-Line:\n***\n" + kGroup + kReading, one + "100 0 25" + row, "rows 2"},
        {kHeader + kGroup + kReading + "-----\nP-Line: 7\n", one + "LINE 7\n", "rows 1"},
        // Positions that are not there; a ninth reading needs both of the last two.
        {kHeader + "Pos 5S N5\n1 2\n" + kReading + kReading + kReading,
         "Line 100N\n100 -5 * 1 2" + values + "100 * * 1 2" + values + "100 * * 1 2" + values, "rows 3"},
        {kHeader + "Pos 0 1 2 3 4 5 6 7\n1\n" + ReplaceAll(readings, kReading, "D:\n\n\n").substr(0, 40) + "D: 5.5 -3",
         "Line 100N\n100 0 1 1" + none + "100 1 2 1" + none + "100 2 3 1" + none + "100 3 4 1" + none + "100 4 5 1" +
             none + "100 5 6 1" + none + "100 6 7 1" + none + "100 7 * 1" + none + "100 * * 1 5.5 -3" + none,
         "rows 9, cut 1"},
        // A position line with ":" is a record line too, of positions as they stand.
        {kHeader + "Pos: 5S 6S\n1 2 | 3\n4 5 | 6 7\n",
         "Line 100N\n100 5S 6S 5S 6S * * * * * 1 2 * * * * * 4 5 * 3 6 7\n", "rows 1"},
        // The two lines of a reading are taken as they come.
        {kHeader + kGroup + "D1: 5.5 -3\n\n1 2 | 3\n4 5 | 6 7\n",
         "Line 100N\n100 0 25 1 -25 0 900 2.0 12 5.5 -3 * * * * * * * * * * * * 1 2 * * * 3\n",
         "rows 1, left out 1 (13)"},
        // Of two names in the header the later one counts; without one, a P-Line names nothing.
        {"P-Line: 7\n" + kHeader + kGroup + kReading, one, "rows 1"},
        {ReplaceAll(kHeader, "P-Line: 100N+25 x\n", "P-Line: 100N\nP-Line: 200S+5\n") + kGroup + kReading,
         "Line 200S\n-200 0 25" + row, "rows 1"},
        {ReplaceAll(kHeader, "P-Line: 100N+25 x\n", "P-Line:\n") + kGroup + kReading, "Line\n0 25" + row, "rows 1"},
        // No name: every row begins with the empty coordinate.
        {ReplaceAll(kHeader, "P-Line: 100N+25 x\n", "") + kGroup + kReading, "Line\n0 25" + row, "rows 1"},
    };
    for (Case const& c : cases) {
        Conversion const conversion = Convert(c.text);
        EXPECT_EQ(conversion.status.Text(), "") << c.text;
        EXPECT_EQ(conversion.Body(), c.body) << c.text;
        EXPECT_EQ(conversion.Found(), c.found) << c.text;
    }
}

TEST(IPR12DumpConverter, ReadsLinesAndTokensOfAnyLength) {
    // A value as wide as its field touches the one before.
    std::string const longToken(5000, '8');
    std::string record = "D1:", row;
    for (int i = 0; i < 300; ++i) {
        record += " 9";
        row += "         9";
    }
    std::string const output = Convert(kHeader + kGroup + record + " " + longToken + " 1234567890\n1\n2\n").output;
    EXPECT_TRUE(Contains(output, row + longToken + "1234567890         *"));
}

TEST(IPR12DumpConverter, RefusesMoreStationValuesThanReadingsCanRepeat) {
    auto const dumpWith = [](int values) {
        std::string text = kHeader + kGroup + kReading + "***\nPos 0 1 2\n";
        for (int i = 0; i < values; ++i) text += "7 ";
        text += "\n";
        for (int i = 0; i < 1000; ++i) text += kReading;
        return text;
    };
    CTemporaryFolder const folder;
    for (int const values : {255, 256, 9500}) {
        WriteWholeFile(folder / "in", dumpWith(values));
        Status const status = test::Convert<CIPR12DumpConverter>(folder, "in").status;
        FileDescription description;
        Status const described = CIPR12DumpConverter().Describe(folder / "in", description);
        EXPECT_EQ(described.Text(), status.Text());
        std::string const refusal = "Couldn't read the file : " + (folder / "in") + ", line 15\nThe line has " +
                                    std::to_string(values) +
                                    " station values; a station of an IPR_12 dump has at most 255.";
        EXPECT_EQ(status.Text(), values == 255 ? "" : refusal);
        EXPECT_EQ(std::filesystem::exists(folder / "out.xyz"), values == 255);
        std::filesystem::remove(folder / "out.xyz");
    }
}

TEST(IPR12DumpConverter, RefusesOtherFiles) {
    std::string const wrong = "Could not handle data format!\nPlease check the IPR_12 format.";
    std::vector<std::string> const cases = {
        "",
        std::string(3000, '\0'),
        "a\nb\nc\nd\n*\n",
        ReplaceAll(kHeader, " 9\n", "\n"),
        ReplaceAll(kHeader, " 9\n", " 9 10\n"),
        ReplaceAll(kHeader, "D: Vp SP\n", ""),
        ReplaceAll(kHeader, "D: Vp SP\n", "D: Vp SP\nmore\n"),
        ReplaceAll(kHeader, "*****\n", "more"),
    };
    for (std::string const& text : cases) {
        Conversion const conversion = Convert(text);
        EXPECT_EQ(conversion.status.Text(), wrong) << text;
        EXPECT_EQ(conversion.output, "") << text;
    }
    EXPECT_TRUE(Convert(ReplaceAll(kHeader, "*****\n", "")).status);

    std::string text = kHeader + kGroup;
    while (text.size() < 3000000) text += kReading;
    test::ExpectFileErrors<CIPR12DumpConverter>(text);
}

TEST(IPR12Import, TracesTheSampleDump) {
    test::ExpectGoldenImport(7, "ipr12.dmp", "ipr12.jsonl");
}

}  // namespace
}  // namespace norva
