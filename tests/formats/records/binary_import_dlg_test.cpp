#include "formats/records/binary_import_template.h"
#include "norva/dialog.h"
#include "support/play.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

namespace norva::test {
namespace {

using namespace ids::BinaryImport;

/// Does `acts` in the dialog on a file of 140 bytes and answers the message that this shows.
PlayRun ActInDialog(std::string const& acts, std::string const& message = "") {
    CTemporaryFolder const folder;
    WriteWholeFile(folder / "in.bin", std::string(140, '\1'));
    std::string const answer = message.empty() ? "" : R"j(, {"message": ")j" + message + R"j(", "answer": "ok"})j";
    return Play(R"j({"operation": "import", "answers": [
                       {"dialog": 4063, "do": [{"select": "Formats", "row": 3}, {"click": 1}]},
                       {"open": "{dir}/in.bin"}, {"save": "{dir}/out.nvt"},
                       {"dialog": 4004, "do": [)j" +
                    acts + "]}" + answer + "]}",
                {{"dir", folder.Path()}}, {.helpFile = "/help/norvatool.chm"});
}

/// What the dialog showed in the end: what is enabled, the checked write format, records, points, the rows' formats.
std::string State(PlayRun const& run) {
    auto const control = [&run](int id) { return run.Control("closed", 1, id); };
    std::string state;
    for (int const id : {kButtonOk, kTotalRecords, kPointsPerLine}) state += control(id)["enabled"] ? "+" : "-";
    for (int const id : {kChannels, kReadInt32, kWriteLong, kFrequency}) state += control(id)["enabled"] ? "+" : "-";
    for (int const id : {kWriteFloat, kWriteDouble, kWriteShort, kWriteLong}) {
        if (control(id)["checked"]) state += std::to_string(id - kWriteFloat);
    }
    for (int const id : {kTotalRecords, kPointsPerLine}) state += " " + control(id)["text"].get<std::string>();
    nlohmann::json const list = control(kChannels);
    for (auto const& row : list["rows"]) state += ", " + row[kFormatColumn].get<std::string>();
    return state;
}

std::string SetCount(std::string const& count) {
    return R"j({"set": "Number of Channels in a record:", "to": ")j" + count + R"j("}, {"click": "Set"},)j";
}

std::string const kForSelected = R"j({"click": "Set for Selected"},)j";
/// Records of 14 bytes, ten of them.
std::string const kFormats = SetCount("3") + R"j(
    {"select": "Channels:", "row": 0}, {"click": "32-bit integer (signed)"}, {"click": "Set for Selected"},
    {"select": "Channels:", "row": 1}, {"click": "64-bit float"}, {"click": "Set for Selected"},
    {"select": "Channels:", "row": 2}, {"click": "16-bit integer (signed)"}, {"click": "Set for Selected"},)j";
std::string const kNoName = R"j({"edit": "Channels:", "row": 1, "column": 1, "to": ""},)j";
std::string const kNoFrequency = R"j({"set": "Sampling Frequency (Hz):", "to": "0"},)j";

TEST(BinaryImportDlg, FollowsItsChannels) {
    std::string const points = R"j({"set": "Split into lines at (points)", "to": )j";
    std::string const mixed = ", 32 INT SIGN, 64 FLOAT, 16 INT SIGN";
    std::pair<std::string, std::string> const cases[] = {
        {"", "------+3 0 0"},
        {SetCount("3") + kForSelected, "---++++3 0 0, , , "},
        {SetCount("3") + R"j({"select": "Channels:", "rows": [0, 2]},)j" + kForSelected,
         "---++++3 0 0, 32 INT SIGN, , 32 INT SIGN"},
        {SetCount("3") + R"j({"click": "Select All Channels"}, {"click": "32-bit float"},)j" + kForSelected,
         "+++++++0 12 12, 32 FLOAT, 32 FLOAT, 32 FLOAT"},
        {SetCount("1") + R"j({"click": "64-bit float"}, {"click": "Add Fiducial Channel"},)j", "---+++-1 0 0, "},
        {SetCount("1") + R"j({"click": "64-bit float"}, {"click": "32-bit integer (signed)"},)j", "---++++3 0 0, "},
        {kFormats, "+++++++2 10 10" + mixed},
        {kFormats + SetCount("2"), "+++++++2 12 10, 32 INT SIGN, 64 FLOAT"},
        {kFormats + SetCount("4"), "---++++2 0 0" + mixed + ", "},
        {kFormats + SetCount("x"), "------+2 0 0"},
        {kFormats + points + R"j("99"},)j" + SetCount("3"), "+++++++2 10 10" + mixed},
        {kFormats + points + R"j("4"}, {"set": "Total Records in File:", "to": "7"},)j", "+++++++2 7 4" + mixed},
        {kFormats + points + R"j("4"}, {"set": "Total Records in File:", "to": "7"},)j" + SetCount("3"),
         "+++++++2 10 4" + mixed},
        {kFormats + kNoName, "+++++++2 10 10" + mixed},
        {kFormats + kNoName + SetCount("3"), "---++++2 0 0" + mixed},
    };
    for (auto const& [acts, state] : cases) {
        PlayRun const run = ActInDialog(acts + R"j({"click": 2})j");
        EXPECT_EQ(run.failure, "") << acts;
        EXPECT_EQ(State(run), state) << acts;
    }
}

TEST(BinaryImportDlg, StaysOpenUntilItsSettingsAreWhole) {
    std::string const noPoints = R"j({"set": "Split into lines at (points)", "to": "-1"},)j";
    std::pair<std::string, std::string> const cases[] = {
        {kFormats + noPoints + kNoName + kNoFrequency + R"j({"click": 1},)j", "Set Number of points in a line"},
        {kFormats + kNoName + kNoFrequency + R"j({"click": 1},)j", "Check settings for data column"},
        {kFormats + kNoFrequency + R"j({"click": 1},)j", "Set the Sampling Frequency"},
        {SetCount("2000000000"), "A record can have 10000 channels at most"},
    };
    for (auto const& [acts, message] : cases) {
        PlayRun const run = ActInDialog(acts + R"j({"click": "Help"}, {"close": true})j", message);
        EXPECT_EQ(run.failure, "") << acts;
        ASSERT_EQ(run.Events("help").size(), 1U) << acts;
        EXPECT_EQ(run.Events("help")[0]["topic"], "/help/norvatool.chm::/html/binary_import.htm");
    }
}

}  // namespace
}  // namespace norva::test
