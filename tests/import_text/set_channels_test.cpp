#include "import_text/text_import_run.h"

namespace norva::test {

namespace {

char const* const kSurvey =
    "/ X:m Y:m Date Time Mag:nT Lat Note\n"
    "1.5 12 2007/01/02 12:30:15.5 10E2 45.30.12.55 ok\n"
    "2.5 *  2007/01/03 12:30:16.25 1.5 45.30.12.5 basalt\n";

std::string Select(int column) {
    return R"({"select": "Data Preview", "column": )" + std::to_string(column) + "}, ";
}

std::string Click(int control) {
    return R"({"click": )" + std::to_string(control) + "}, ";
}

std::string Set(std::string const& control, std::string const& value) {
    return R"({"set": )" + control + R"(, "to": )" + value + "}, ";
}

char const* const kRelabelYes = R"(, {"message": "Do you want to change the column labels?", "answer": "yes"})";

}  // namespace

TEST(SetChannels, ActsOnAColumnDecideItsChannel) {
    struct {
        int column;
        std::string acts;  ///< after the column is selected
        char const* expected;
    } const cases[] = {
        // As guessed.
        {0, "", R"(["Ch1","",0,0,0,1,0,4,-1,0])"},
        {1, "", R"(["Ch2","",5,0,0,1,0,2,-1,0])"},
        {2, "", R"(["Ch3","",1,0,0,1,3,2,0,0])"},
        {3, "", R"(["Ch4","",1,0,0,1,2,3,2,0])"},
        {4, "", R"(["Ch5","",0,0,0,1,0,4,-1,0])"},
        {5, "", R"(["Ch6","",1,0,0,1,4,3,0,0])"},
        {6, "", R"(["Ch7","",4,1,0,6,0,2,-1,0])"},
        // As chosen.
        {0, Click(4019), R"(["Ch1","",4,1,0,3,0,4,-1,0])"},
        {6, Click(4019) + Set("4061", "\"9\""), R"(["Ch7","",4,1,0,9,0,2,-1,0])"},
        {6, Set("4061", "\"0\""), R"(["Ch7","",4,1,0,6,0,2,-1,0])"},
        {6, Set("4061", "\"9\"") + Click(4019), R"(["Ch7","",4,1,0,9,0,2,-1,0])"},
        {4, Click(4020), R"(["Ch5","",0,0,0,1,1,3,-1,0])"},
        {0, Click(4021), R"(["Ch1","",1,0,0,1,0,6,-1,0])"},
        {2, Click(4022), R"(["Ch3","",5,0,0,1,3,2,0,0])"},
        {0, Click(4023), R"(["Ch1","",3,0,0,1,0,4,-1,0])"},
        {2, Click(4062), R"(["Ch3","",1,0,0,1,3,2,0,0])"},
        {2, Set("4063", "\"DD/MM/YYYY\""), R"(["Ch3","",1,0,0,1,3,2,2,0])"},
        {3, Click(4064), R"(["Ch4","",1,0,0,1,2,3,1,0])"},
        {3, Set("4065", "3"), R"(["Ch4","",1,0,0,1,2,3,3,0])"},
        {0, Click(4062), R"(["Ch1","",1,0,0,1,3,4,-1,0])"},
        {5, Click(4083), R"(["Ch6","",1,0,0,1,4,2,0,0])"},
        {1, Set("\"Name:\"", "\"North\"") + Set("\"Units:\"", "\"m\""), R"(["North","m",5,0,0,1,0,2,-1,0])"},
        {0, Click(4024), nullptr},
        {0, Click(4025), nullptr},
        {0, Click(4025) + Click(4025), nullptr},
        {0, Click(4025) + Click(4025) + Click(4020), R"(["Ch1","",0,0,0,1,0,6,-1,0])"},
    };
    for (auto const& test : cases) {
        CTextImportRun import;
        import.actions = Select(test.column) + test.acts + kContinue;
        EXPECT_EQ(import.Run(kSurvey).value, 1) << import.actions;
        auto const channels = import.Calls("AddChannelToStructure");
        ASSERT_EQ(channels.size(), test.expected == nullptr ? 6U : 7U) << import.actions;
        if (test.expected == nullptr) continue;
        EXPECT_EQ(channels[static_cast<std::size_t>(test.column)], test.expected) << import.actions;
    }
}

TEST(SetChannels, ShowsTheSelectedColumn) {
    struct {
        int column;  ///< -1: none selected
        std::string acts;
        int radio;
        char const* textSize;
        nlohmann::json dates;
        nlohmann::json times;
        bool isLabel;
    } const cases[] = {
        {-1, Click(4021), 0, "", {0}, {0}, false},
        {-1, Click(4025), 0, "", {0}, {0}, false},
        {0, "", 4020, "", {0}, {0}, false},
        {2, "", 4062, "", {0}, {0}, false},
        {3, "", 4064, "", {0}, {2}, false},
        {5, "", 4083, "", {0}, {0}, false},
        {6, "", 4019, "6", {0}, {0}, false},
        {0, Click(4062), 4062, "", nlohmann::json::array(), {0}, false},
        {0, Click(4064), 4064, "", {0}, {1}, false},
        {1, Click(4025), 4024, "", {0}, {0}, true},
        {1, Click(4025) + Select(0), 4020, "", {0}, {0}, false},
        {1, Click(4025) + Click(4025), 4024, "", {0}, {0}, false},
    };
    for (auto const& test : cases) {
        CTextImportRun import;
        import.actions = (test.column < 0 ? "" : Select(test.column)) + test.acts + kContinue;
        PlayRun const& run = import.Run(kSurvey);
        for (int const radio : {4019, 4020, 4021, 4022, 4023, 4062, 4064, 4083, 4024}) {
            EXPECT_EQ(run.Control("closed", 1, radio).at("checked"), radio == test.radio) << import.actions << radio;
        }
        EXPECT_EQ(run.Control("closed", 1, 4061).at("text"), test.textSize) << import.actions;
        EXPECT_EQ(run.Control("closed", 1, 4061).at("enabled"), test.radio == 4019) << import.actions;
        EXPECT_EQ(run.Control("closed", 1, 4063).at("selected"), test.dates) << import.actions;
        EXPECT_EQ(run.Control("closed", 1, 4065).at("selected"), test.times) << import.actions;
        EXPECT_EQ(run.Control("closed", 1, 4025).at("checked"), test.isLabel) << import.actions;
    }
}

TEST(SetChannels, FindsTheFirstDataLine) {
    struct {
        char const* what;
        char const* fileName;
        char const* text;
        nlohmann::json header;
        nlohmann::json skips;
        nlohmann::json selectedSkip;
        nlohmann::json labels;
        std::size_t rows;
    } const cases[] = {
        {"comments and markers",
         "in.xyz",
         "/a\tb\n\\c\nLINE 1\nline\t2\n1 2 3\n4 5 6\n",
         {"/a    b", "\\c", "LINE 1", "line    2"},
         {"4", "5"},
         {0},
         {"Ch1", "Ch2", "Ch3"},
         2},
        {"a bare marker is taken for data",
         "in.xyz",
         "LINE\n1 2\n",
         nlohmann::json::array(),
         {"0", "1"},
         {0},
         {"Ch1"},
         2},
        {"only comments",
         "in.xyz",
         "/a b\n/c\n",
         {"/a b", "/c"},
         nlohmann::json::array(),
         nlohmann::json::array(),
         {"Ch1", "Ch2"},
         2},
        {"CSV with titles",
         "in.CSV",
         "X,My Y,\"Z\"\n1,2 3,4\n5,6,7\n",
         {"X,My Y,\"Z\""},
         {"0", "1", "2"},
         {1},
         {"Ch1", "Ch2", "Ch3"},
         2},
        {"CSV with one line", "in.csv", "/ c\n1,2,3\n", {"/ c"}, {"1"}, {0}, {"Ch1", "Ch2", "Ch3"}, 1},
    };
    for (auto const& test : cases) {
        CTextImportRun import;
        import.fileName = test.fileName;
        import.actions = R"({"click": 2})";
        PlayRun const& run = import.Run(test.text);
        EXPECT_EQ(run.Control("dialog", 1, 4018).at("items"), test.header) << test.what;
        EXPECT_EQ(run.Control("dialog", 1, 4073).at("items"), test.skips) << test.what;
        EXPECT_EQ(run.Control("dialog", 1, 4073).at("selected"), test.selectedSkip) << test.what;
        EXPECT_EQ(run.Control("dialog", 1, 5001).at("columns"), test.labels) << test.what;
        EXPECT_EQ(run.Control("dialog", 1, 5001).at("rows").size(), test.rows) << test.what;
    }
}

TEST(SetChannels, SkipChangeGuessesAgainUnlessEdited) {
    char const* const text = "A B C\n1 2.5 x\n1 2 3 4\n";
    struct {
        std::string acts;
        std::vector<std::string> channels;
    } const cases[] = {
        {Set("4073", "\"1\""),
         {R"(["Ch1","",5,0,0,1,0,2,-1,0])", R"(["Ch2","",0,0,0,1,0,4,-1,0])", R"(["Ch3","",5,0,0,1,0,2,-1,0])"}},
        {Set("4073", "\"2\""),
         {R"(["Ch1","",5,0,0,1,0,2,-1,0])", R"(["Ch2","",5,0,0,1,0,2,-1,0])", R"(["Ch3","",5,0,0,1,0,2,-1,0])",
          R"(["Ch4","",5,0,0,1,0,2,-1,0])"}},
        // What was edited is not guessed again, but the classes of the first guess are applied.
        {Select(0) + Click(4021) + Set("4073", "\"1\""),
         {R"(["Ch1","",5,0,0,1,0,6,-1,0])", R"(["Ch2","",0,0,0,1,0,4,-1,0])", R"(["Ch3","",5,0,0,1,0,2,-1,0])"}},
        {Select(0) + Click(4021) + Set("4073", "\"2\""),
         {R"(["Ch1","",5,0,0,1,0,6,-1,0])", R"(["Ch2","",0,0,0,1,0,4,-1,0])", R"(["Ch3","",5,0,0,1,0,2,-1,0])",
          R"(["Ch4","",0,0,0,1,0,2,-1,0])"}},
        // The label column stays skipped.
        {Select(1) + Click(4025) + Set("4073", "\"1\""),
         {R"(["Ch1","",5,0,0,1,0,2,-1,0])", R"(["Ch3","",5,0,0,1,0,2,-1,0])"}},
    };
    for (auto const& test : cases) {
        CTextImportRun import;
        import.actions = test.acts + kContinue;
        import.Run(text);
        EXPECT_EQ(import.Calls("AddChannelToStructure"), test.channels) << test.acts;
    }
}

TEST(SetChannels, RelabelsFromAHeaderLine) {
    std::string const relabel = R"({"double": "File Header", "row": 0}, )";
    std::string const refusal =
        R"(, {"message": "Selected Header line is not appropriate.\nCheck Header Delimeters!", "answer": "ok"})";
    struct {
        char const* header;
        int formatRow;
        std::string acts;
        std::string answers;
        nlohmann::json labels;
        char const* firstChannel;
    } const cases[] = {
        {"/ Depth:m Y Mag", 0, relabel, kRelabelYes, {"Depth:m", "Y", "Mag"}, R"(["Depth","m",5,0,0,1,0,2,-1,0])"},
        {"/ Depth\tY\tMag", 0, relabel, kRelabelYes, {"Depth", "Y", "Mag"}, R"(["Depth","",5,0,0,1,0,2,-1,0])"},
        {"/ A B", 0, relabel, kRelabelYes + refusal, {"Ch1", "Ch2", "Ch3"}, R"(["Ch1","",5,0,0,1,0,2,-1,0])"},
        {"/ A B C",
         0,
         relabel,
         R"(, {"message": "Do you want to change the column labels?", "answer": "no"})",
         {"Ch1", "Ch2", "Ch3"},
         R"(["Ch1","",5,0,0,1,0,2,-1,0])"},
        {"/A-B-C", 6, relabel, kRelabelYes, {"A", "B", "C"}, R"(["A","",5,0,0,1,0,2,-1,0])"},
        {"/A-B-C", 0, relabel, kRelabelYes + refusal, {"Ch1", "Ch2", "Ch3"}, R"(["Ch1","",5,0,0,1,0,2,-1,0])"},
        // "Other:" set to "-"; what is cancelled changes nothing.
        {"/A-B-C",
         0,
         Click(4047) + relabel,
         std::string(
             R"(, {"dialog": 4060, "do": [{"set": 4051, "to": true}, {"set": 4054, "to": "-"}, {"click": 1}]})") +
             kRelabelYes,
         {"A", "B", "C"},
         R"(["A","",5,0,0,1,0,2,-1,0])"},
        {"/ A B C",
         0,
         Click(4047) + relabel,
         std::string(R"(, {"dialog": 4060, "do": [{"set": "Space", "to": false}, {"close": true}]})") + kRelabelYes,
         {"A", "B", "C"},
         R"(["A","",5,0,0,1,0,2,-1,0])"},
        {"/ A B C",
         0,
         Click(4047) + relabel,
         std::string(R"(, {"dialog": 4060, "do": [{"set": "Space", "to": false}, {"click": 1}]})") + kRelabelYes +
             refusal,
         {"Ch1", "Ch2", "Ch3"},
         R"(["Ch1","",5,0,0,1,0,2,-1,0])"},
    };
    for (auto const& test : cases) {
        CTextImportRun import;
        import.formatRow = test.formatRow;
        import.actions = test.acts + kContinue;
        import.answers = test.answers;
        PlayRun const& run = import.Run(std::string(test.header) + "\n1 2 3\n");
        EXPECT_EQ(run.Control("closed", run.Events("closed").size() - 1, 5001).at("columns"), test.labels)
            << test.header << test.answers;
        EXPECT_EQ(import.Calls("AddChannelToStructure").at(0), test.firstChannel) << test.header << test.answers;
    }
}

TEST(SetChannels, DelimitersFollowTheFile) {
    struct {
        char const* fileName;
        bool comma, tab, space;
    } const cases[] = {{"in.xyz", true, true, true}, {"in.csv", true, false, false}};
    for (auto const& test : cases) {
        CTextImportRun import;
        import.fileName = test.fileName;
        import.actions = Click(4047) + kContinue;
        import.answers = R"(, {"dialog": 4060, "do": [{"click": 2}]})";
        PlayRun const& run = import.Run("1,2,3\n");
        EXPECT_EQ(run.Control("dialog", 2, 4052).at("checked"), test.comma) << test.fileName;
        EXPECT_EQ(run.Control("dialog", 2, 4048).at("checked"), test.tab) << test.fileName;
        EXPECT_EQ(run.Control("dialog", 2, 4049).at("checked"), test.space) << test.fileName;
        EXPECT_EQ(run.Control("dialog", 2, 4050).at("checked"), false) << test.fileName;
        EXPECT_EQ(run.Control("dialog", 2, 4054).at("text"), " ") << test.fileName;
    }
}

}  // namespace norva::test
