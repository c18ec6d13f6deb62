#include "formats/column_text/profile_detection.h"
#include "formats/column_text/text_line.h"
#include "formats/column_text/text_preview.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace norva {

namespace {

/// The profile list as "name:rows name:rows".
std::string Text(std::vector<ReportLine> const& profiles) {
    std::string list;
    for (ReportLine const& profile : profiles) {
        list += (list.empty() ? "" : " ") + profile.name + ":" + std::to_string(profile.locations);
    }
    return list;
}

struct ScanCase {
    char const* text;
    char const* expected;
    int skip = 0;
};

constexpr int kByMarker = -1;

void ExpectProfiles(ScanCase const& test, int labelColumn) {
    test::CTemporaryFolder const folder;
    test::WriteWholeFile(folder / "in.xyz", test.text);
    TextPreview preview;
    CLineReader file;
    ASSERT_TRUE(PreviewTextFile(folder / "in.xyz", preview)) << test.text;
    ASSERT_TRUE(OpenText(file, folder / "in.xyz"));
    std::uint64_t const start = DataStart(preview, test.skip);
    auto const profiles = labelColumn == kByMarker ? FindProfilesByMarker(file, start, nullptr)
                                                   : FindProfilesByLabel(file, start, labelColumn, nullptr);
    EXPECT_EQ(Text(profiles), test.expected) << test.text << "label column " << labelColumn << " skip " << test.skip;
}

}  // namespace

TEST(ProfileDetection, NamesOfMarkerLines) {
    std::pair<char const*, char const*> const cases[] = {
        {"LINE 12", "12"},   {"LINE: 12", "12"}, {"LINE-12", "12"}, {"LINE12", "LINE12"}, {"LINE_12", "LINE_12"},
        {"LINE", ""},        {"LINE A B", ""},   {"Line a", "A"},   {"line  7", "7"},     {"TIE-LINE", "LINE"},
        {"LINE,\t12", "12"}, {"", ""},           {"-:-", ""},       {"LIN:E", "E"},       {"PIPELINE", "PIPELINE"}};
    for (auto const& [line, name] : cases) EXPECT_EQ(GetLineName(line), name) << line;
}

TEST(ProfileDetection, LineWordInAnyCaseAndPlace) {
    std::tuple<char const*, bool, bool> const cases[] = {
        {"LINE 1", true, true},  {"pipelines", true, false},  {"LIN", false, false},     {"l l LiNe\t", true, true},
        {"", false, false},      {"LINELine x", true, true},  {"line", true, false},     {"LLLINE", true, false},
        {"lIN E", false, false}, {"xLineLINE\t", true, true}, {"L l line", true, false}, {"LIN line", true, false}};
    for (auto const& [text, holds, holdsSpaced] : cases) {
        EXPECT_EQ(HoldsLineWord(text), holds) << text;
        EXPECT_EQ(HoldsSpacedLineWord(text), holdsSpaced) << text;
    }
}

TEST(ProfileDetection, ByMarkers) {
    ScanCase const cases[] = {{"1 2\n3 4\n", "LINE1:2"},
                              {"LINE 100\n1 2\n3 4\nLINE\n5 6\n", "100:2 100:1"},
                              {"1 2\n/ remark\n3 4", "LINE1:1 LINE2:1"},
                              {"LINE 7\n1 2\n\\ remark\n3 4\n", "7:1 7:1"},
                              {"1 2\n/\n3 4\nLINE 5\n6 7\n/\n8 9\n", "LINE1:1 LINE2:1 5:1 5:1"},
                              {"line 7\n1 2\nLine a\n3 4\n", "7:1 A:1"},
                              {"LINE 1\nLINE 2\n1 2\n", "2:1"},
                              {"LINE 1\nLINE\n1 2\nLINE 3\n", "1:1"},
                              {"/LINE 9\n1 2\n", "9:1"},
                              {"/ LINE 9\n1 2\n", "LINE1:1"},
                              {"1 2\n3 PIPELINE\n4 5\n", "LINE1:1 PIPELINE:1"},
                              {"  LINE 1  \r\n\r\n1 2\r\n \t\r\n3 4\r\n", "1:2"},
                              {"/ only\n\\ comments\nLINE 1\n", ""},
                              {"1 2\n3 4\nLINE 1\n5 6\n", "LINE1:1 1:1", 1},
                              {"\n1 2\n\n3 4\n\n\n5 6\n", "LINE1:1", 2},
                              {"1 2\n\n\n3 4\n/\n", "LINE1:1", 1},
                              {"LINE 1\n1 2\nLINE 2\n", "", 2},
                              {"1 2\n\f\n", "LINE1:0", 1},
                              {"\f\n1 2\n", "LINE1:1", 1},
                              {"1 2\n3 4\n", "LINE1:2", 2},
                              {"1 2\n3 4\n", "LINE1:2", -1}};
    for (ScanCase const& test : cases) ExpectProfiles(test, kByMarker);
}

TEST(ProfileDetection, ByLabelColumn) {
    ScanCase const first[] = {{"7 1\n7 2\n* 3\n8 4\n8 5\n", "7:3 8:2"},
                              {"7 1\n8 2\n7 3\n", "7:1 8:1 7:1"},
                              {"l1 1\nL1 2\nL2 3\n", "L1:2 L2:1"},
                              {"* 1\n* 2\n7 3\n", "7:3"},
                              {"* 1\n*\n", ":2"},
                              {"/ 5\n7 1\n\nLINE 5\n7 2\n/\n7 3\n", "7:3"},
                              {"6 1\n6 2\n7 3\n", "7:1", 2},
                              {"6 1\n6 2\n7 3\n", "6:1 7:1", 1},
                              {"a,b\n\na\tb\n", "A:2"}};
    for (ScanCase const& test : first) ExpectProfiles(test, 0);
    ScanCase const second[] = {
        {"1 a\n2\n3 b\n4\n", "A:2 B:2"}, {"1\n2\n3 a\n", "A:3"}, {"1\n2\n", ":2"}, {"x y,7\nx z,8\n", "Y:1 Z:1"}};
    for (ScanCase const& test : second) ExpectProfiles(test, 1);
}

}  // namespace norva
