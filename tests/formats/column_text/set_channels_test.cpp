#include "formats/column_text/text_import_run.h"

namespace norva::test {

namespace {

char const* const kSurvey =
    "/ X:m Y:m Date Time Mag:nT Lat Note\n"
    "1.5 12 2007/01/02 12:30:15.5 10E2 45.30.12.55 ok\n"
    "2.5 *  2007/01/03 12:30:16.25 1.5 45.30.12.5 basalt\n";

using Strings = std::vector<std::string>;

}  // namespace

TEST(SetChannels, ActsOnAColumnDecideItsChannel) {
    std::tuple<std::size_t, char const*, char const*> const cases[] = {
        // As guessed.
        {0, "", R"(["Ch1","",0,0,0,1,0,4,-1,0])"},
        {1, "", R"(["Ch2","",5,0,0,1,0,2,-1,0])"},
        {2, "", R"(["Ch3","",1,0,0,1,3,2,0,0])"},
        {3, "", R"(["Ch4","",1,0,0,1,2,3,2,0])"},
        {4, "", R"(["Ch5","",0,0,0,1,0,4,-1,0])"},
        {5, "", R"(["Ch6","",1,0,0,1,4,3,0,0])"},
        {6, "", R"(["Ch7","",4,1,0,6,0,2,-1,0])"},
        // As chosen.
        {0, "@0;4019", R"(["Ch1","",4,1,0,3,0,4,-1,0])"},
        {6, "@6;4061=9;4019", R"(["Ch7","",4,1,0,9,0,2,-1,0])"},
        {6, "@6;4061=0", R"(["Ch7","",4,1,0,6,0,2,-1,0])"},
        {4, "@4;4020", R"(["Ch5","",0,0,0,1,1,3,-1,0])"},
        {0, "@0;4021", R"(["Ch1","",1,0,0,1,0,6,-1,0])"},
        {2, "@2;4022", R"(["Ch3","",5,0,0,1,3,2,0,0])"},
        {0, "@0;4023", R"(["Ch1","",3,0,0,1,0,4,-1,0])"},
        {2, "@2;4062", R"(["Ch3","",1,0,0,1,3,2,0,0])"},
        {2, "@2;4063=DD/MM/YYYY", R"(["Ch3","",1,0,0,1,3,2,2,0])"},
        {3, "@3;4064", R"(["Ch4","",1,0,0,1,2,3,1,0])"},
        {3, "@3;4065=HH:MM", R"(["Ch4","",1,0,0,1,2,3,3,0])"},
        {0, "@0;4062", R"(["Ch1","",1,0,0,1,3,4,-1,0])"},
        {5, "@5;4083", R"(["Ch6","",1,0,0,1,4,2,0,0])"},
        {1, "@1;Name:=North;Units:=m", R"(["North","m",5,0,0,1,0,2,-1,0])"},
        {0, "@0;4024", nullptr},
        {0, "@0;4025;4025", nullptr},
        {0, "@0;4025;4025;4020", R"(["Ch1","",0,0,0,1,0,6,-1,0])"},
        {0, "4021", R"(["Ch1","",0,0,0,1,0,4,-1,0])"}};
    for (auto const& [column, acts, expected] : cases) {
        CTextImportRun import;
        import.acts = acts;
        EXPECT_EQ(import.Run(kSurvey).value, 1) << acts;
        Strings const channels = import.Calls("AddChannelToStructure");
        ASSERT_EQ(channels.size(), expected == nullptr ? 6U : 7U) << acts;
        if (expected != nullptr) {
            EXPECT_EQ(channels[column], expected) << acts;
        }
    }
}

TEST(SetChannels, ExponentsAreUpperCaseAndNotTheFirstCharacter) {
    // The display format and decimals of a column that becomes single or double precision.
    std::pair<char const*, char const*> const cases[] = {
        {"1.5E3", "1,3"}, {"1.5e3", "0,6"}, {"E3", "0,6"}, {"15", "0,6"}, {"*E", "1,3"}};
    for (auto const& [value, expected] : cases) {
        for (auto const& [radio, type] : {std::pair{"@0;4020", "0"}, std::pair{"@0;4021", "1"}}) {
            CTextImportRun import;
            import.acts = radio;
            import.Run(std::string("1 2 3\n") + value + " 2 3\n");
            EXPECT_EQ(import.Calls("AddChannelToStructure").at(0),
                      std::string(R"(["Ch1","",)") + type + ",0,0,1," + expected + ",-1,0]")
                << value << radio;
        }
    }
}

TEST(SetChannels, SkippedColumnsCountInTheProgress) {
    CTextImportRun import;
    import.acts = "@0;4024;@2;4024";
    import.Run("1 2 3\n4 5 6\n");
    std::vector<std::string> sent;
    for (std::string const& text : import.run.Texts("progress")) {
        if (text.starts_with("ChannelPercent")) sent.push_back(text);
    }
    EXPECT_EQ(sent, (std::vector<std::string>{"ChannelPercent 0", "ChannelPercent 33", "ChannelPercent 66"}));
}

TEST(SetChannels, ShowsTheSelectedColumn) {
    // The radio button that is on, the text size, the templates that the date and time boxes show, the label's check.
    std::tuple<char const*, int, char const*, char const*, char const*, bool> const cases[] = {
        {"4021;4025", 0, "", "[0]", "[0]", false},      {"@0", 4020, "", "[0]", "[0]", false},
        {"@2", 4062, "", "[0]", "[0]", false},          {"@3", 4064, "", "[0]", "[2]", false},
        {"@5", 4083, "", "[0]", "[0]", false},          {"@6", 4019, "6", "[0]", "[0]", false},
        {"@0;4062", 4062, "", "[]", "[0]", false},      {"@0;4064", 4064, "", "[0]", "[1]", false},
        {"@1;4025", 4024, "", "[0]", "[0]", true},      {"@1;4025;@0", 4020, "", "[0]", "[0]", false},
        {"@1;4025;4025", 4024, "", "[0]", "[0]", false}};
    for (auto const& [acts, radio, textSize, dates, times, isLabel] : cases) {
        CTextImportRun import;
        import.acts = acts;
        import.Run(kSurvey);
        for (int const button : {4019, 4020, 4021, 4022, 4023, 4062, 4064, 4083, 4024}) {
            EXPECT_EQ(import.Field("closed", button, "checked"), button == radio) << acts << " " << button;
        }
        EXPECT_EQ(import.Field("closed", 4061, "text"), textSize) << acts;
        EXPECT_EQ(import.Field("closed", 4061, "enabled"), radio == 4019) << acts;
        EXPECT_EQ(import.Field("closed", 4063, "selected").dump(), dates) << acts;
        EXPECT_EQ(import.Field("closed", 4065, "selected").dump(), times) << acts;
        EXPECT_EQ(import.Field("closed", 4025, "checked"), isLabel) << acts;
    }
}

TEST(SetChannels, FindsTheFirstDataLine) {
    // Header lines, numbers of the skip box and the one it shows, titles and number of the preview rows.
    std::tuple<char const*, char const*, char const*, char const*, char const*, char const*, std::size_t> const
        cases[] = {{"in.xyz", "/a\tb\n\\c\nLINE 1\nline\t2\n1 2 3\n4 5 6\n",
                    R"(["/a    b","\\c","LINE 1","line    2"])", R"(["4","5"])", "[0]", R"(["Ch1","Ch2","Ch3"])", 2},
                   {"in.xyz", "LINE\n1 2\n", "[]", R"(["0","1"])", "[0]", R"(["Ch1"])", 2},
                   {"in.xyz", "/a b\n/c\n", R"(["/a b","/c"])", "[]", "[]", R"(["Ch1","Ch2"])", 2},
                   {"in.CSV", "X,My Y,\"Z\"\n1,2 3,4\n5,6,7\n", R"(["X,My Y,\"Z\""])", R"(["0","1","2"])", "[1]",
                    R"(["Ch1","Ch2","Ch3"])", 2},
                   {"in.csv", "/ c\n1,2,3\n", R"(["/ c"])", R"(["1"])", "[0]", R"(["Ch1","Ch2","Ch3"])", 1},
                   {"in.csv", "/ c\nX,Y\n1,2\n", R"(["/ c","X,Y"])", R"(["1","2"])", "[1]", R"(["Ch1","Ch2"])", 1},
                   {"in.csv", "Base LINE 5\nX,Y\n1,2\n", R"(["Base LINE 5","X,Y"])", R"(["1","2"])", "[1]",
                    R"(["Ch1","Ch2"])", 1}};
    for (auto const& [fileName, text, header, skips, skip, titles, rows] : cases) {
        CTextImportRun import;
        WriteWholeFile(import.folder / fileName, text);
        import.run = Play(R"({"operation": "import", "answers": [{"open": "{dir}/)" + std::string(fileName) + R"("},
                              {"save": "{dir}/out.nvt"}, {"dialog": 4003, "do": [{"click": 2}]}]})",
                          {{ "dir",
                             import.folder.Path() }},
                          {.defaults = true});
        EXPECT_EQ(import.run.value, 0);
        EXPECT_EQ(import.Field("dialog", 4018, "items").dump(), header) << text;
        EXPECT_EQ(import.Field("dialog", 4073, "items").dump(), skips) << text;
        EXPECT_EQ(import.Field("dialog", 4073, "selected").dump(), skip) << text;
        EXPECT_EQ(import.Field("dialog", 5001, "columns").dump(), titles) << text;
        EXPECT_EQ(import.Field("dialog", 5001, "rows").size(), rows) << text;
    }
}

TEST(SetChannels, SkipChangeGuessesAgainUnlessEdited) {
    std::string const first = R"(["Ch1","",5,0,0,1,0,2,-1,0])", second = R"(["Ch2","",0,0,0,1,0,4,-1,0])",
                      third = R"(["Ch3","",5,0,0,1,0,2,-1,0])", edited = R"(["Ch1","",5,0,0,1,0,6,-1,0])";
    std::pair<char const*, Strings> const cases[] = {
        {"4073=1", {first, second, third}},
        {"4073=2", {first, R"(["Ch2","",5,0,0,1,0,2,-1,0])", third, R"(["Ch4","",5,0,0,1,0,2,-1,0])"}},
        // What was edited is not guessed again, but the classes of the first guess are applied.
        {"@0;4021;4073=1", {edited, second, third}},
        {"@0;4021;4073=2", {edited, second, third, R"(["Ch4","",0,0,0,1,0,2,-1,0])"}},
        {"@1;4025;4073=1", {first, third}},  // the label column stays skipped
    };
    for (auto const& [acts, channels] : cases) {
        CTextImportRun import;
        import.acts = acts;
        import.Run("A B C\n1 2.5 x\n1 2 3 4\n");
        EXPECT_EQ(import.Calls("AddChannelToStructure"), channels) << acts;
    }
}

TEST(SetChannels, RelabelsFromAHeaderLine) {
    std::string const yes = R"(, {"message": "Do you want to change the column labels?", "answer": "yes"})";
    std::string const no = R"(, {"message": "Do you want to change the column labels?", "answer": "no"})";
    std::string const refused =
        yes + R"(, {"message": "Selected Header line is not appropriate.\nCheck Header Delimeters!", "answer": "ok"})";
    auto const set = [](std::string const& acts) { return R"(, {"dialog": 4060, "do": [)" + acts + "]}"; };
    char const* const kept = R"(["Ch1","",5,0,0,1,0,2,-1,0])";
    char const* const named = R"(["A","",5,0,0,1,0,2,-1,0])";
    std::tuple<char const*, int, char const*, std::string, char const*> const cases[] = {
        {"/ Depth:m\tY Mag", 0, "!0", yes, R"(["Depth","m",5,0,0,1,0,2,-1,0])"},
        {"/ A B", 0, "!0", refused, kept},
        {"/ A B C", 0, "!0", no, kept},
        {"/A-B-C", 6, "!0", yes, named},
        {"/A-B-C", 0, "!0", refused, kept},
        {"/A-B-C", 0, "4047;!0", set(R"({"click": 4051}, {"set": 4054, "to": "-"}, {"click": 1})") + yes, named},
        {"/ A B C", 0, "4047;!0", set(R"({"click": "Space"}, {"close": true})") + yes, named},
        {"/ A B C", 0, "4047;!0", set(R"({"click": "Space"}, {"click": 1})") + refused, kept},
        {"/ A B C", 0, "!0;4073=2", yes, R"(["A","",5,0,0,1,0,2,-1,0])"}};
    for (auto const& [header, formatRow, acts, answers, channel] : cases) {
        CTextImportRun import;
        import.formatRow = formatRow;
        import.acts = acts;
        import.answers = answers;
        import.Run(std::string(header) + "\n1 2 3\n4 5 6\n");
        EXPECT_EQ(import.Calls("AddChannelToStructure").at(0), channel) << header << answers;
        std::string const title = import.Field("closed", 5001, "columns").at(0);
        EXPECT_EQ(title, channel == kept ? "Ch1" : channel == named ? "A" : title) << header << answers;
    }
}

TEST(SetChannels, DelimitersFollowTheFile) {
    for (bool const isCsv : {false, true}) {
        CTextImportRun import;
        import.fileName = isCsv ? "in.csv" : "in.xyz";
        import.acts = "4047";
        import.answers = R"(, {"dialog": 4060, "do": [{"click": 2}]})";
        import.Run("1,2,3\n");
        EXPECT_EQ(import.Field("dialog", 4052, "checked"), true);
        EXPECT_EQ(import.Field("dialog", 4048, "checked"), !isCsv);
        EXPECT_EQ(import.Field("dialog", 4049, "checked"), !isCsv);
        EXPECT_EQ(import.Field("dialog", 4050, "checked"), false);
        EXPECT_EQ(import.Field("dialog", 4054, "text"), " ");
    }
}

}  // namespace norva::test
