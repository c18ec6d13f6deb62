#include "norva/file_util.h"
#include "platform/files.h"
#include "platform/numbers.h"
#include "platform/text.h"
#include "support/play.h"
#include "support/temporary_folder.h"
#include "ui/control_ids.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

namespace norva {
namespace {

namespace ids = norva::ids::CG3Import;

std::string const kHeader = "-------\nLine: 100. Date: 94/08/22 Job: 1\n-------\n";
std::string const kTitles = "Station Grav. SD. # Rej Time\n";

/// Plays the import of `folder`/in.dmp; `actions` are what happens in the dialog, `more` the answers after it.
PlayRun Import(test::CTemporaryFolder const& folder, std::string const& actions = R"({"click": 4079})",
               std::string const& more = "") {
    return Play(R"({"operation": "import", "store": "", "answers": [
                    {"dialog": 4063, "do": [{"select": "Formats", "row": 5}, {"click": 1}]},
                    {"open": "{dir}/in.dmp"}, {"save": "{dir}/out.nvt"},
                    {"dialog": 4062, "do": [)" +
                    actions + "]}" + more + "]}",
                {{"dir", folder.Path()}});
}

std::string Shown(double value) {
    std::string shown;
    AppendShortest(shown, value);
    return value == kNoDataDouble ? "*" : shown;
}

/// "line=count line=count; channel: values" with the values of all lines.
std::string StoreText(std::string const& path) {
    CNorvaFileUtil store;
    if (store.SetFileName(path, kReopenStore, nullptr) == 0) return "no store";
    std::string text;
    for (int profile = 0; profile < store.ProfileCount; ++profile) {
        std::string name;
        long count = 0;
        int flag = 0;
        store.GetProfileInfo(profile, name, count, flag);
        text += (text.empty() ? "" : " ") + name + "=" + std::to_string(count);
    }
    for (int n = 0; n < store.ChannelCount; ++n) {
        int const channel = store.GetFileChanIndex(n);
        text += "; " + store.GetChannelName(channel) + ":";
        for (int profile = 0; profile < store.ProfileCount; ++profile) {
            for (long location = 0; location < store.GetProfileLocationNum(profile, 0); ++location) {
                float single = 0;
                double number = 0;
                int integer = 0, type = 0;
                long longInteger = 0;
                std::string value;
                store.GetData(channel, profile, location, single, number, integer, longInteger, value, type);
                text += " " + (type == DataType::kText    ? value
                               : type == DataType::kShort ? std::to_string(integer)
                                                          : Shown(number));
            }
        }
    }
    return text;
}

TEST(CG3Import, StoresWhatTheDumpHolds) {
    struct Case {
        char const* name;
        std::string text;
        std::string store;
    };
    std::string const date = "; Date: 1994.641095890411";
    Case const cases[] = {
        {"values as they are", kHeader + kTitles + "1001. 4123.5 .01 3 12:30:00\n\t1002 -.5,1 0 06:15:36.0 \r\n",
         "100.=2; Station: 1001 1002; Grav.: 4123.5 -0.5; Time: 12.5 6.26" + date + " 1994.641095890411"},
        {"missing and unreadable", kHeader + kTitles + "* * 1 1 *\nx abc 1 1 25:99\n1.. 1e400 1 1 -\n",
         "100.=3; Station: * X 1; Grav.: * 0 *; Time: * * *" + date + " 1994.641095890411 1994.641095890411"},
        {"wrong number of values", kHeader + kTitles + "1 2 3 4\n1 2 3 4 5 6\n\n \t\n,\n7 8 9 1 01:00\n",
         "100.=1; Station: 7; Grav.: 8; Time: 1" + date},
        {"no good line", kHeader + kTitles + "1 2\n", "100.=0; Station:; Grav.:; Time:; Date:"},
        {"heights", kHeader + "STATION\nS1\nA: 5.5\nS2\nS3\n\n a: 6\nA: 7\nS4\nx y\nA: 8\nS5\nA: 9 9\nA: 1\nS6\n",
         "100.=6; STATION: S1 S2 S3 S4 S5 S6; Height: 5.5 * 6 * * *" + date + " @ @ @ @ @"},
        {"heights of two lines", kHeader + "STATION\nS1\nA: *\nS2\n" + kHeader + "STATION\nA: 4\nS3\nA: 5\n",
         "100.=2 100.=1; STATION: S1 S2 S3; Height: * * 5" + date + " @ @"},
        {"A-lines not seen at the start", kHeader + "STATION\nS1\nS2\nA: 5\nA 6\n",
         "100.=2; STATION: S1 S2" + date + " @"},
        {"dates that fail",
         kHeader + "STATION\n1\n" + ReplaceAll(kHeader, "94/08", "94/13") + "STATION\n2\n" +
             "-------\nLine: 7 Date: 1\n-------\nSTATION\n3\n",
         "100.=1 100.=1 7=1; STATION: 1 2 3" + date + " * *"},
        {"long station", kHeader + "STATION\n123456789.\n-1. x\n" + std::string(300, 'b') + "\n",
         "100.=2; STATION: 123456789 " + std::string(300, 'B') + date + " @"},
        {"two time columns, a station of another kind",
         kHeader + "Time Station-Time Rej-Station\n1:30 2:30 x\n2 * 40000\n",
         "100.=2; Time: 1 2; Station-Time: 2.5 *; Rej-Station: 0 32767" + date + " @"},
    };
    for (Case const& c : cases) {
        test::CTemporaryFolder const folder;
        test::WriteWholeFile(folder / "in.dmp", c.text);
        PlayRun const run = Import(folder, R"({"set": 4082, "to": false}, {"click": 4079})");
        EXPECT_EQ(run.failure, "") << c.name;
        EXPECT_EQ(run.value, 1) << c.name;
        EXPECT_EQ(StoreText(folder / "out.nvt"), ReplaceAll(c.store, " @", " 1994.641095890411")) << c.name;
        EXPECT_EQ(folder.Count(), 2U) << c.name;
    }
}

TEST(CG3Import, SortsByTheTimeChannelWhenAsked) {
    struct Case {
        char const* actions;
        char const* stations;
        std::size_t sorts;
    };
    Case const cases[] = {
        {R"({"click": 1})", "Station: 2 1 3", 1},
        {R"({"click": 4082}, {"click": 4079})", "Station: 1 2 3", 0},
        // Without the time column there is nothing to sort by.
        {R"({"select": 4075, "row": 2}, {"click": 4078}, {"click": 4079})", "Station: 1 2 3", 0},
        {R"({"set": 4080, "to": "DD/MM/YY"}, {"set": 4081, "to": 3}, {"click": 4079})", "Station: 2 1 3", 1},
    };
    for (Case const& c : cases) {
        test::CTemporaryFolder const folder;
        test::WriteWholeFile(folder / "in.dmp", kHeader + kTitles + "1 2 3 4 12:00:00\n2 2 3 4 11:00:00\n3 2 3 4 *\n");
        PlayRun const run = Import(folder, c.actions);
        EXPECT_EQ(run.failure, "") << c.actions;
        EXPECT_EQ(run.value, 1) << c.actions;
        EXPECT_TRUE(Contains(StoreText(folder / "out.nvt"), c.stations)) << c.actions << StoreText(folder / "out.nvt");
        std::size_t sorts = 0;
        for (nlohmann::json const& call : run.Events("store")) sorts += call.at("call") == "SortByChannel" ? 1U : 0U;
        EXPECT_EQ(sorts, c.sorts) << c.actions;
    }
}

TEST(CG3Import, MovesColumnsInItsDialog) {
    struct Case {
        std::string actions;
        char const* channels;  ///< of the store
        std::vector<std::string> messages;
    };
    std::string const noneInFile = "Please, select Column Header from \"Columns in File\" list";
    std::string const noneToImport = "Please, select Column Header from \"Columns to Import\" list";
    Case const cases[] = {
        {R"({"click": 4077}, {"click": 4078})", "Station Grav. Time", {noneInFile, noneToImport}},
        {R"({"select": 4074, "rows": [0, 1]}, {"click": 4077}, {"click": 4077})",
         "Station Grav. SD. # Rej Time",
         {noneInFile}},
        {R"({"select": 4075, "rows": [2, 0]}, {"click": 4078}, {"select": 4074, "row": 2}, {"click": 4077})",
         "Grav. # Rej",
         {}},
    };
    for (Case const& c : cases) {
        test::CTemporaryFolder const folder;
        test::WriteWholeFile(folder / "in.dmp", kHeader + kTitles + "1 2 3 4 12:00:00\n");
        std::string answers;
        for (std::string const& message : c.messages) {
            answers += R"(, {"answer": "ok", "message": )" + nlohmann::json(message).dump() + "}";
        }
        PlayRun const run = Import(folder, c.actions + R"(, {"click": 4079})", answers);
        EXPECT_EQ(run.failure, "") << c.actions;
        EXPECT_EQ(run.Texts("message"), c.messages);
        std::string channels;
        for (nlohmann::json const& call : run.Events("store")) {
            if (call.at("call") == "AddChannelToStructure") channels += call.at("args")[0].get<std::string>() + " ";
        }
        EXPECT_EQ(channels, std::string(c.channels) + " Date ") << c.actions;
    }

    // With nothing to import only Cancel is left, and the store that was begun is gone.
    test::CTemporaryFolder const folder;
    test::WriteWholeFile(folder / "in.dmp", kHeader + kTitles + "1 2 3 4 12:00:00\n");
    PlayRun const emptied = Import(folder, R"({"select": 4075, "rows": [0, 1, 2]}, {"click": 4078}, {"click": 2})");
    EXPECT_EQ(emptied.failure, "");
    EXPECT_EQ(emptied.value, 0);
    EXPECT_FALSE(emptied.Control("closed", 1, ids::kImport).at("enabled").get<bool>());
    EXPECT_EQ(folder.Count(), 1U);
    test::WriteWholeFile(folder / "in.dmp", "no dump at all\n");
    PlayRun const none = Import(folder, R"({"click": 2})");
    EXPECT_FALSE(none.Control("dialog", 1, ids::kImport).at("enabled").get<bool>());
    EXPECT_TRUE(none.Control("dialog", 1, ids::kColumnsInFile).at("items").empty());
}

TEST(CG3Import, LeavesNothingBehindWhenItFails) {
    test::CTemporaryFolder const folder;
    std::string text = kHeader + kTitles;
    for (int i = 0; i < 20000; ++i) text += "1 2 3 4 12:00:00\n";
    test::WriteWholeFile(folder / "in.dmp", text);
    Import(folder);
    std::string const older = test::ReadWholeFile(folder / "out.nvt");

    // A folder stands where a column file should: no message, and the older store stays as it was.
    std::filesystem::create_directory(folder / "in.1");
    PlayRun const blocked = Import(folder);
    EXPECT_EQ(blocked.value, 0);
    EXPECT_TRUE(blocked.Texts("message").empty());
    std::filesystem::remove(folder / "in.1");
    EXPECT_EQ(folder.Count(), 2U);
    EXPECT_EQ(test::ReadWholeFile(folder / "out.nvt"), older);

    struct Case {
        FaultPoint point;
        char const* file;  ///< whose call fails
        int error;
        char const* message;
    };
    Case const cases[] = {{FaultPoint::Write, "/in.2", ENOSPC, "Couldn't write the file : "},
                          {FaultPoint::Read, "/in.dmp", EIO, "Couldn't read the file : "}};
    for (Case const& c : cases) {
        SetFaultHook([&c](FaultPoint point, std::string const& path) {
            return point == c.point && path.ends_with(c.file) ? c.error : 0;
        });
        PlayRun const run = Play(R"({"operation": "import", "store": "{dir}/out.nvt", "answers": [
                                     {"dialog": 4063, "do": [{"select": "Formats", "row": 5}, {"click": 1}]},
                                     {"open": "{dir}/in.dmp"}]})",
                                 {{"dir", folder.Path()}}, {.defaults = true});
        SetFaultHook({});
        EXPECT_EQ(run.value, 0) << c.file;
        ASSERT_EQ(run.Texts("message").size(), 1U) << c.file;
        EXPECT_EQ(run.Texts("message")[0].rfind(c.message, 0), 0U) << run.Texts("message")[0];
        EXPECT_EQ(folder.Count(), 2U) << c.file;
        EXPECT_EQ(test::ReadWholeFile(folder / "out.nvt"), older) << c.file;
    }
}

TEST(CG3Import, TracesTheSampleDump) {
    test::CTemporaryFolder const folder;
    std::filesystem::copy_file(NORVA_SAMPLES "/cg3.dmp", folder / "in.dmp");
    PlayRun const run = Import(folder);
    EXPECT_EQ(run.failure, "");
    ExpectGolden(run, NORVA_TEST_DATA "/import_dump/cg3.jsonl", {{"dir", folder.Path()}});
}

}  // namespace
}  // namespace norva
