#include "platform/files.h"
#include "platform/text.h"
#include "support/findings.h"
#include "support/play.h"
#include "support/store_text.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

namespace norva {
namespace {

std::string const kHeader = "-------\nLine: 100. Date: 94/08/22 Job: 1\n-------\n";
std::string const kTitles = "Station Grav. SD. # Rej Time\n";

/// Plays the import of `folder`/in.dmp; `actions` are what happens in the dialog, `more` the answers after it.
PlayRun Import(test::CTemporaryFolder const& folder, std::string const& actions = R"({"click": 4079})",
               std::string const& more = "", PlayOptions const& options = {}) {
    return Play(R"({"operation": "import", "store": "", "answers": [
                    {"dialog": 4063, "do": [{"select": "Formats", "row": 5}, {"click": 1}]},
                    {"open": "{dir}/in.dmp"}, {"save": "{dir}/out.nvt"},
                    {"dialog": 4062, "do": [)" +
                    actions + "]}" + more + "]}",
                {{"dir", folder.Path()}}, options);
}

/// The store with "@" for the date of kHeader.
std::string Stored(test::CTemporaryFolder const& folder) {
    return ReplaceAll(ReplaceAll(test::StoreText(folder / "out.nvt"), "1994.641095890411", "@"), "\n", "; ");
}

TEST(CG3Import, StoresWhatTheDumpHolds) {
    struct Case {
        char const* name;
        std::string text;
        std::string store;
        std::string findings;
    };
    Case const cases[] = {
        {"values as they are", kHeader + kTitles + "1001. 4123.5 .01 3 12:30:00\n\t1002 -.5,1 0 06:15:00.0 \r\n",
         "Station: 100.['1001' '1002']; Grav.: 100.[4123.5 -0.5]; Time: 100.[12.5 6.25]; Date: 100.[@ @]; ",
         "0 losses; Time: backwards 1"},
        {"missing and unreadable", kHeader + kTitles + "* * 1 1 *\nx abc 1 1 25:99\n1.. 1e400 1 1 -\n",
         "Station: 100.['*' 'X' '1']; Grav.: 100.[* 0 *]; Time: 100.[* * *]; Date: 100.[@ @ @]; ",
         "4 losses; Grav.: no_data 1, out_of_range 1, unreadable 1; Time: no_data 1, unreadable 2"},
        {"wrong number of values", kHeader + kTitles + "1 2 3 4\n1 2 3 4 5 6\n\n \t\n,\n7 8 9 1 01:00\n",
         "Station: 100.['7']; Grav.: 100.[8]; Time: 100.[1]; Date: 100.[@]; ", "3 losses; left out 3"},
        {"no good line", kHeader + kTitles + "1 2\n", "Station: 100.[]; Grav.: 100.[]; Time: 100.[]; Date: 100.[]; ",
         "1 losses; left out 1"},
        {"heights", kHeader + "STATION\nS1\nA: 5.5\nS2\nS3\n\n a: 6\nA: 7\nS4\nx y\nA: 8\nS5\nA: 9 9\nA: 1\nS6\n",
         "STATION: 100.['S1' 'S2' 'S3' 'S4' 'S5' 'S6']; Height: 100.[5.5 * 6 * * *]; Date: 100.[@ @ @ @ @ @]; ",
         "5 losses; Height: missing 4; left out 5"},
        {"heights of two lines", kHeader + "STATION\nS1\nA: *\nS2\n" + kHeader + "STATION\nA: 4\nS3\nA: 5\n",
         "STATION: 100.['S1' 'S2'] 100.['S3']; Height: 100.[* *] 100.[5]; Date: 100.[@ @] 100.[@]; ",
         "1 losses; Height: no_data 1, missing 1; left out 1"},
        {"A-lines not seen at the start", kHeader + "STATION\nS1\nS2\nA: 5\nA 6\n",
         "STATION: 100.['S1' 'S2']; Date: 100.[@ @]; ", "2 losses; left out 2"},
        {"dates that fail",
         kHeader + "STATION\n1\n" + ReplaceAll(kHeader, "94/08", "94/13") + "STATION\n2\n" +
             "-------\nLine: 7 Date: 1\n-------\nSTATION\n3\n",
         "STATION: 100.['1'] 100.['2'] 7['3']; Date: 100.[@] 100.[*] 7[*]; ",
         "1 losses; Date: missing 1, unreadable 1"},
        {"long station", kHeader + "STATION\n123456789.\n-1. x\n" + std::string(300, 'b') + "\n",
         "STATION: 100.['123456789' '" + std::string(300, 'B') + "']; Date: 100.[@ @]; ", "1 losses; left out 1"},
        {"two time columns, a station of another kind",
         kHeader + "Time Station-Time Rej-Station\n1:30 2:30 x\n2 * 40000\n3 1 -3.9\n",
         "Time: 100.[1 2 3]; Station-Time: 100.[2.5 * 1]; Rej-Station: 100.[0 * -3]; Date: 100.[@ @ @]; ",
         "4 losses; Time: with_rest 1; Station-Time: no_data 1, backwards 1; Rej-Station: out_of_range 1, unreadable "
         "1, with_fraction 1"},
    };
    for (Case const& c : cases) {
        test::CTemporaryFolder const folder;
        test::WriteWholeFile(folder / "in.dmp", c.text);
        PlayRun const run = Import(folder, R"({"set": 4082, "to": false}, {"click": 4079})");
        EXPECT_EQ(run.failure, "") << c.name;
        EXPECT_EQ(run.value, 1) << c.name;
        EXPECT_EQ(Stored(folder), c.store) << c.name;
        EXPECT_EQ(test::FindingsOfLastImport(c.text.size()), c.findings) << c.name;
        EXPECT_EQ(folder.Count(), 2U) << c.name;
    }
}

TEST(CG3Import, ImportsAndSortsWhatItsDialogSays) {
    std::string const noneInFile =
        R"(, {"answer": "ok", "message": "Please, select Column Header from \"Columns in File\" list"})";
    std::string const noneToImport =
        R"(, {"answer": "ok", "message": "Please, select Column Header from \"Columns to Import\" list"})";
    std::string const grav = "Grav.: 100.[4 4 4]; ";
    std::string const rej = "# Rej: 100.[6 6 6]; ";
    std::string const date = "Date: 100.[@ @ @]; ";
    std::string const sorted = "Station: 100.['2' '1' '3']; " + grav;
    std::string const time = "Time: 100.[11 12 *]; ";
    struct Case {
        std::string actions;
        std::string store;
        std::string messages;
    };
    Case const cases[] = {
        {R"({"click": 1})", sorted + time + date, ""},
        {R"({"click": 4082}, {"click": 4079})", "Station: 100.['1' '2' '3']; " + grav + "Time: 100.[12 11 *]; " + date,
         ""},
        // Without the time column there is nothing to sort by.
        {R"({"select": 4075, "rows": [2, 0]}, {"click": 4078}, {"select": 4074, "row": 2}, {"click": 4077},
            {"click": 4079})",
         grav + rej + date, ""},
        {R"({"click": 4077}, {"click": 4078}, {"select": 4074, "rows": [0, 1]}, {"click": 4077}, {"click": 4077},
            {"click": 4079})",
         sorted + "SD.: 100.[5 5 5]; " + rej + time + date, noneInFile + noneToImport + noneInFile},
        {R"({"set": 4080, "to": "DD/MM/YYYY"}, {"set": 4081, "to": 3}, {"click": 4079})",
         sorted + time + "Date: 100.[* * *]; ", ""},
    };
    for (Case const& c : cases) {
        test::CTemporaryFolder const folder;
        test::WriteWholeFile(folder / "in.dmp", kHeader + kTitles + "1 4 5 6 12:00:00\n2 4 5 6 11:00:00\n3 4 5 6 *\n");
        PlayRun const run = Import(folder, c.actions, c.messages);
        EXPECT_EQ(run.failure, "") << c.actions;
        EXPECT_EQ(Stored(folder), c.store) << c.actions;
        std::size_t opened = 0;
        for (nlohmann::json const& call : run.Events("store")) opened += call.at("call") == "SetFileName" ? 1U : 0U;
        EXPECT_EQ(opened, Contains(c.store, sorted) ? 2U : 1U) << c.actions;
    }

    // With nothing to import only Cancel is left, and the store that was begun is gone.
    for (char const* const text : {"no dump at all\n", "-------\n-------\nSTATION\n1\n"}) {
        test::CTemporaryFolder const folder;
        test::WriteWholeFile(folder / "in.dmp", text);
        bool const hasColumn = text[0] == '-';
        std::string const empties = hasColumn ? R"({"select": 4075, "row": 0}, {"click": 4078}, )" : "";
        PlayRun const run = Import(folder, empties + R"({"click": 2})");
        EXPECT_EQ(run.failure, "");
        EXPECT_EQ(run.value, 0);
        EXPECT_FALSE(run.Control("closed", 1, 4079).at("enabled").get<bool>());
        EXPECT_EQ(run.Control("closed", 1, 4074).at("items").size(), hasColumn ? 1U : 0U);
        EXPECT_EQ(folder.Count(), 1U);
    }
}

TEST(CG3Import, ReadsADumpOfManyBlocksThreeTimes) {
    test::CTemporaryFolder const folder;
    std::string text;
    while (text.size() < 3000000) text += kHeader + "STATION\n1\n";
    test::WriteWholeFile(folder / "in.dmp", text);
    int reads = 0;
    SetFaultHook([&reads](FaultPoint point, std::string const& path) {
        reads += point == FaultPoint::Read && path.ends_with("/in.dmp") ? 1 : 0;
        return 0;
    });
    EXPECT_EQ(Import(folder).value, 1);
    SetFaultHook({});
    EXPECT_LT(reads, 60);
}

TEST(CG3Import, LeavesNothingBehindWhenItFails) {
    test::CTemporaryFolder const folder;
    std::string dump;
    for (int i = 0; i < 40000; ++i) dump += (i % 20000 == 0 ? kHeader + kTitles : "") + "1 2 3 4 12:00:00\n";
    test::WriteWholeFile(folder / "in.dmp", dump);
    Import(folder);
    std::string const older = test::ReadWholeFile(folder / "out.nvt");
    /// Imports with one failing call; the messages up to the file's name.
    auto const messagesOf = [&folder, &older](FaultPoint failing, std::string const& file, int nth) {
        int calls = 0;
        SetFaultHook([&](FaultPoint point, std::string const& path) {
            return point == failing && path.ends_with(file) && ++calls == nth ? EIO : 0;
        });
        PlayRun const run = Import(folder, R"({"click": 4079})", "", {.defaults = true});
        SetFaultHook({});
        if (calls < nth) return std::string("no failure");
        EXPECT_EQ(run.value, 0) << file << " " << nth;
        EXPECT_EQ(folder.Count(), 2U) << file << " " << nth;
        EXPECT_EQ(test::ReadWholeFile(folder / "out.nvt"), older) << file << " " << nth;
        std::string messages;
        for (std::string const& text : run.Texts("message")) messages += text.substr(0, text.find(':'));
        return messages;
    };
    EXPECT_EQ(messagesOf(FaultPoint::Open, "/in.1", 1), "");
    EXPECT_EQ(messagesOf(FaultPoint::Write, "/in.2", 1), "Couldn't write the file ");
    EXPECT_EQ(messagesOf(FaultPoint::Read, "/in.2", 1), "Couldn't read the file ");
    int reads = 0;
    while (messagesOf(FaultPoint::Read, "/in.dmp", reads + 1) == "Couldn't read the file ") ++reads;
    EXPECT_GT(reads, 8);
    EXPECT_EQ(messagesOf(FaultPoint::Read, "/in.dmp", reads + 1), "no failure");
}

TEST(CG3Import, TracesTheSampleDump) {
    test::CTemporaryFolder const folder;
    std::filesystem::copy_file(NORVA_SAMPLES "/cg3.dmp", folder / "in.dmp");
    PlayRun const run = Import(folder);
    EXPECT_EQ(run.failure, "");
    ExpectGolden(run, NORVA_TEST_DATA "/cg3.jsonl", {{"dir", folder.Path()}});
}

}  // namespace
}  // namespace norva
