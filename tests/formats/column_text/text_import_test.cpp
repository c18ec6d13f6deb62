#include "formats/column_text/plain_decimal.h"
#include "formats/column_text/text_import_run.h"
#include "platform/file_percent.h"
#include "platform/numbers.h"

#include <rapidcheck.h>

namespace norva::test {

TEST(TextImport, GoldenTraceOfATypicalImport) {
    CTextImportRun import;
    std::string text = "/ X:m Mag (nT) Date Time Note\nLINE 100\n";
    for (int i = 0; i < 6; ++i) {
        text += std::to_string(i) + ".25 54210.123456 2007/01/02 12:30:0" + std::to_string(i) + " ok\n";
    }
    text += "LINE 200\n\n1 * 2007/01/03 12:31\n";
    import.acts = "@4;4061=4";
    EXPECT_EQ(import.Run(text).value, 1);
    ExpectGolden(import.run, NORVA_TEST_DATA "/typical_import.jsonl", {{"dir", import.folder.Path()}});
    EXPECT_EQ(import.Values(0), "0.25 1.25 2.25 3.25 4.25 5.25 | 1");
    EXPECT_EQ(import.Values(1), "54210.123456 54210.123456 54210.123456 54210.123456 54210.123456 54210.123456 | -");
    EXPECT_EQ(import.Values(4), "'OK' 'OK' 'OK' 'OK' 'OK' 'OK' | '*'");
    EXPECT_EQ(import.folder.Count(), 2U);
}

TEST(TextImport, ConvertsValues) {
    std::string const wide(400, '7');
    std::tuple<char const*, std::string, char const*> const cases[] = {
        // by the radio button of the type
        {"4020", "1.5 1e30 1e31 -1e30 -1.1e30 12abc abc *", "1.5 - - -1e+30 - 12 0 -"},
        {"4020", "1* \"12\" \"\" 1e999 -0 +5 . 1e 0x10 nan inf", "- 12 - - -0 5 0 1 0 0 0"},
        {"4021", "0.1 123456789.123456789 -1.5e-7 1.e3 .5e2 5. -", "0.1 123456789.12345679 -1.5e-07 1000 50 5 0"},
        {"4021", "9007199254740993 0.000000000000000000001 1e22 123456789012345678901",
         "9007199254740992 1e-21 1e+22 123456789012345683968"},
        {"4021", wide + " 1-2 1:2 1e+ --5 1.2.3", "- 1 1 1 0 1.2"},
        {"4022", "32767 32768 -32767 -32768 -0.9 1.9 32766.9 99999", "- - -32767 - 0 1 32766 -"},
        {"4023", "2147483646.5 2147483647 -2147483647 -2147483648 1e9 -1.5",
         "2147483646 - -2147483647 - 1000000000 -1"},
        {"4083", "45.30.36.5 -5.06.00 x *", "45.51013888888889 -5.1 - -"},
        {"4064", "12:30:00 00:00:36.5 6:15 x *", "12.5 0.010138888888888888 6.25 - -"},
        {"4062", "2007/12/31 2008/07/01 2007/13/01 *", "2008 2008.5 - -"}};
    for (auto const& [radio, tokens, expected] : cases) {
        CTextImportRun import;
        import.acts = std::string("@0;") + radio;
        std::string text = tokens + "\n";
        std::replace(text.begin(), text.end(), ' ', '\n');
        import.Run(text);
        EXPECT_EQ(import.Values(0), expected) << radio << ": " << tokens;
    }
}

TEST(TextImport, SplitsRowsAndTexts) {
    std::tuple<char const*, std::string, char const*, int, char const*> const cases[] = {
        {"in.xyz", "ABCDEFG 1 1\nAB 1 1\n\"AB\" 1 1\n\"\" 1 1\na*b 1 1\n", "@0;4019;4061=5", 0,
         "'ABCDE' 'AB' 'AB' '' 'A*B'"},
        {"in.csv", "a,b\n1 234,5\n1 234 , 5\n\t6\t7\n", "", 0, "1 1 6"},
        {"in.csv", "a,b\nab cd,5\n", "@0;4019", 0, "'AB CD'"},
        {"in.csv", "a,b\n,,5,,6,,\n", "", 1, "6"},
        {"in.txt", "1 234 5\n", "", 1, "234"},
        {"in.xyz", "1,2\t3 4\n5 6\n7 8 9 10 11 12\n", "", 2, "3 - 9"},
        {"in.xyz", "1 2\xE9\x80 \xFF\n", "@0;4019", 0, "'1'"},
        {"in.xyz", std::string("1\0 2\n3 4\n", 9), "", 0, "1 3"},
        {"in.xyz",
         "\xEF\xBB\xBF"
         "1 2\r\n3 4\r5 6",
         "", 0, "1 3 5"},
        {"in.xyz", "1 2\n /5 6\n\\7 8\n9 pipelines\n3 4\n", "", 0, "1 | 3"}};
    for (auto const& [fileName, text, acts, channel, expected] : cases) {
        CTextImportRun import;
        import.fileName = fileName;
        import.acts = acts;
        EXPECT_EQ(import.Run(text).value, 1) << text;
        EXPECT_EQ(import.Values(channel), expected) << text;
    }
}

TEST(TextImport, SkipsRowsAndLabelsLines) {
    std::tuple<char const*, std::vector<std::string>, char const*> const cases[] = {
        // values of the last column
        {"", {R"(["LINE1",5])"}, "1 2 3 4 5"},
        {"4073=2", {R"(["LINE1",3])"}, "3 4 5"},
        {"@0;4025", {R"(["7",2])", R"(["8",2])", R"(["7",1])"}, "1 2 | 3 4 | 5"},
        {"@0;4025;4073=1", {R"(["7",1])", R"(["8",2])", R"(["7",1])"}, "2 | 3 4 | 5"}};
    for (auto const& [acts, profiles, values] : cases) {
        CTextImportRun import;
        import.acts = acts;
        import.Run("7 x 1\n7 y 2\n8 z 3\n* z 4\n7 z 5\n");
        EXPECT_EQ(import.Calls("AddProfileToStructure"), profiles) << acts;
        EXPECT_EQ(import.Values(static_cast<int>(import.Calls("WriteHuge").size()) - 1), values) << acts;
    }
}

TEST(TextImport, ManyColumnsAndWideTexts) {
    std::string row = "1 2";
    for (int i = 2; i < 5000; ++i) row += " 7";
    CTextImportRun import;
    EXPECT_EQ(import.Run(row + "\n" + row + "\n").value, 1);
    EXPECT_EQ(import.Calls("WriteHuge").size(), 5000U);
    EXPECT_EQ(import.Values(4999), "7 7");

    std::string const wide(200'000, 'w');
    EXPECT_EQ(import.Run("1 2 a" + wide + "\n1 2 b\n").value, 1);
    EXPECT_EQ(import.Calls("WriteHuge").at(2), "[" + std::to_string(2 * (wide.size() + 1)) + "]");
}

TEST(TextImport, PercentagesAreSentWhenTheyChange) {
    std::pair<std::string, std::vector<std::string>> const cases[] = {
        {"1\n2\n3\n", {"FilePercent 0", "FilePercent 100", "ChannelPercent 0"}},
        {std::string(99, '1') + "\n" + std::string(99, '\n') + "2\n",
         {"FilePercent 50", "FilePercent 100", "ChannelPercent 0"}},
        {"/" + std::string(400, '-') + "\n1\n" + "/" + std::string(196, '-') + "\n",
         {"FilePercent 66", "FilePercent 100", "ChannelPercent 0"}}};
    for (auto const& [text, expected] : cases) {
        CTextImportRun import;
        EXPECT_EQ(import.Run(text).Texts("progress"), expected) << text;
    }

    // Any walk over any file sends what dividing at every step would send.
    EXPECT_TRUE(rc::check("percentages", [] {
        auto const length = *rc::gen::inRange<std::uint64_t>(1, 100'000);
        auto const granularity = *rc::gen::element<std::uint64_t>(1, 100);
        CFilePercent percent(length, granularity);
        std::uint64_t last = 1000;
        for (std::uint64_t offset = 0; offset < length;) {
            offset = std::min(length, offset + *rc::gen::inRange<std::uint64_t>(1, 3000));
            std::uint64_t const units = length / granularity;
            std::uint64_t const now = units == 0 ? (offset == length ? 100 : 0) : offset / granularity * 100 / units;
            RC_ASSERT(percent.Changed(offset) == (now != last));
            RC_ASSERT(percent.Value() == static_cast<long long>(now));
            last = now;
        }
    }));
}

TEST(TextImport, PlainDecimalsAreReadAsNumbersAre) {
    EXPECT_TRUE(rc::check("plain decimals", [] {
        std::string const text =
            *rc::gen::container<std::string>(rc::gen::element('0', '1', '5', '9', '.', '-', '+', 'e'));
        double value = 0;
        char const* const end = ReadPlainDecimal(text.data(), text.data() + text.size(), value);
        if (end == nullptr) RC_DISCARD("not plain");
        std::string const number(text.data(), end);
        RC_ASSERT(ScanNumber(number).consumed == number.size());
        RC_ASSERT(std::signbit(value) == std::signbit(ReadNumber(number)));
        RC_ASSERT(value == ReadNumber(number));
    }));
}

}  // namespace norva::test
