#include "formats/column_text/text_import_run.h"
#include "formats/seaspy/sea_spy_values.h"

namespace norva::test {

namespace {

constexpr int kSeaSpyRow = 8;
constexpr char const* kQuestion = "Do you want to import interpolated coordinates? ";

char const* const kPlain =
    "header\n"
    "*07.123/12:30:15.5 F[55555.123 0099 0500 12.5 3.5 ok][R[55556.123 0098 0501 12.6 ok] 1.0\n"
    " *07.123/12:30:15.6 F[1 1 1 1 1 x][R[1 1 1 1 x] 1.0\n"
    "*08.060/00:00:00.0 F[55557.5 99999 abc 12.5 3.5 bad][R[* 0098 0501 12.6 ok]\n"
    "\n";

std::string Record(char const* tag, char const* x, char const* y) {
    return std::string("*07.001/00:00:01.0 F[1.5 1 2 3 4 ok]R[2.5 1 2 3 ok] 0.5 ") + tag + " x:" + x + " y:" + y + "\n";
}

}  // namespace

TEST(SeaSpy, ReadsDatesAndTimes) {
    std::pair<char const*, double> const dates[] = {{"07.123", 2007 + 123 / 365.0},
                                                    {"08.060", 2008 + 60 / 366.0},
                                                    {"00.001", 2000 + 1 / 366.0},
                                                    {"80.001", 2080 + 1 / 366.0},
                                                    {"81.001", 1981 + 1 / 365.0},
                                                    {"x", 2000},
                                                    {"", 2000},
                                                    {"7", 2007 + 7 / 365.0}};
    for (auto const& [field, expected] : dates) EXPECT_EQ(GetSeaSPYDate(field), expected) << field;
    std::pair<char const*, double> const times[] = {{"12:30:15.5", 12 + 30 / 60.0 + 15 / 3600.0 + 5 / 36000.0},
                                                    {"00:00:00.0", 0},
                                                    {"", 0},
                                                    {"1", 1 + 1 / 36000.0},
                                                    {"ab:cd:ef.g", 0}};
    for (auto const& [field, expected] : times) {
        EXPECT_DOUBLE_EQ(GetSeaSPYTime(field), expected) << field;
    }
}

TEST(SeaSpy, ImportsRecordsWithoutCoordinates) {
    CTextImportRun import;
    import.formatRow = kSeaSpyRow;
    import.fileName = "in.csv";
    EXPECT_EQ(import.Run(kPlain).value, 1);
    EXPECT_EQ(import.Calls("AddProfileToStructure"), std::vector<std::string>{R"(["LINE 1",2])"});
    auto const channels = import.Calls("AddChannelToStructure");
    ASSERT_EQ(channels.size(), 14U);
    EXPECT_EQ(channels[0], R"(["Date","",1,0,0,1,3,2,0,0])");
    EXPECT_EQ(channels[1], R"(["Time","",1,0,0,1,2,2,1,0])");
    EXPECT_EQ(channels[2], R"(["FMagField","",0,0,0,1,0,2,-1,0])");
    EXPECT_EQ(channels[3], R"(["FSignal","",5,0,0,1,0,2,-1,0])");
    EXPECT_EQ(channels[7], R"(["FMsg","",4,1,0,3,0,2,-1,0])");
    EXPECT_EQ(channels[13], R"(["Gradient","",0,0,0,1,0,2,-1,0])");
    EXPECT_EQ(import.Values(0), "2007.33698630137 2008.1639344262296");
    EXPECT_EQ(import.Values(3), "99 -");
    EXPECT_EQ(import.Values(4), "500 0");
    EXPECT_EQ(import.Values(7), "'ok' 'bad'");
    EXPECT_EQ(import.Values(13), "1 -");
    EXPECT_EQ(import.Field("dialog", 4073, "enabled"), false);
    EXPECT_EQ(import.Field("dialog", 4025, "enabled"), false);
}

TEST(SeaSpy, CoordinatesFollowTheAnswer) {
    std::string const text = Record("<REAL>", "10.5", "20.5") + Record("<INTERP>", "11.5", "21.5") +
                             "*07.001/00:00:01.0 F[1.5 LINE 2 3 4 ok]R[2.5 1 2 3 ok] 0.5 <REAL> x:1 y:2\n" +
                             Record("<REAL>", "12.5", "22.5");
    std::tuple<char const*, char const*, char const*> const cases[] = {{"no", "10.5 - 12.5", "20.5 - 22.5"},
                                                                       {"yes", "10.5 11.5 12.5", "20.5 21.5 22.5"}};
    for (auto const& [answer, x, y] : cases) {
        CTextImportRun import;
        import.formatRow = kSeaSpyRow;
        import.beforeDialog = R"(, {"message": ")" + std::string(kQuestion) + R"(", "answer": ")" + answer + R"("})";
        EXPECT_EQ(import.Run(text).value, 1) << answer;
        EXPECT_EQ(import.Calls("AddChannelToStructure").at(14), R"(["X_Coord","",0,0,0,1,0,2,-1,0])");
        EXPECT_EQ(import.Values(14), x) << answer;
        EXPECT_EQ(import.Values(15), y) << answer;
        if (std::string_view(answer) == "no") {
            ExpectGolden(import.run, NORVA_TEST_DATA "/sea_spy.jsonl", {{"dir", import.folder.Path()}});
        }
    }
}

TEST(SeaSpy, ColumnsKeepToTheirKind) {
    std::pair<int, std::vector<int>> const cases[] = {{0, {4062, 4024}},
                                                      {1, {4064, 4024}},
                                                      {3, {4019, 4020, 4021, 4022, 4023, 4024}},
                                                      {2, {4019, 4020, 4021, 4022, 4023, 4083, 4024}}};
    for (auto const& [column, expected] : cases) {
        CTextImportRun import;
        import.formatRow = kSeaSpyRow;
        import.acts = "@" + std::to_string(column);
        import.Run(kPlain);
        std::vector<int> enabled;
        for (int const radio : {4019, 4020, 4021, 4022, 4023, 4062, 4064, 4083, 4024}) {
            if (import.Field("closed", radio, "enabled") == true) enabled.push_back(radio);
        }
        EXPECT_EQ(enabled, expected) << column;
    }
}

TEST(SeaSpy, LayoutsOfTheFirstRecord) {
    std::tuple<char const*, bool, char const*, std::size_t> const cases[] = {
        {"*1 2 F[3]R[4]\n", true, R"(["Ch1","",1,0,0,1,3,2,0,0])", 4},
        {"*07.1/1 F[1 2 3 4 5 6]R[1 2 3 4 5] 1 extra\n", true, R"(["Date","",1,0,0,1,3,2,0,0])", 15},
        {"*1 2 F[3] r[4]\n*1 F[2]R[3]\n", false, nullptr, 0},
        {"1 F[2] R[3]\n", false, nullptr, 0},
        {"", false, nullptr, 0}};
    for (auto const& [text, isLog, firstChannel, count] : cases) {
        CTextImportRun import;
        import.formatRow = kSeaSpyRow;
        import.opensDialog = isLog;
        if (!isLog) {
            import.answers = R"(, {"message": "Wrong SeaSPY(Marine magnetics) data format !", "answer": "ok"})";
        }
        EXPECT_EQ(import.Run(text).value, isLog ? 1 : 0) << text;
        auto const channels = import.Calls("AddChannelToStructure");
        ASSERT_EQ(channels.size(), count) << text;
        if (isLog) {
            EXPECT_EQ(channels[0], firstChannel) << text;
        }
        if (count == 15) {
            EXPECT_EQ(channels[14], R"(["CH15","",4,1,0,5,0,2,-1,0])");
        }
    }
}

}  // namespace norva::test
