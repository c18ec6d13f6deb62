#include "import_binary/binary_import_dlg.h"
#include "norva/toolkit.h"
#include "support/play.h"
#include "support/temporary_folder.h"
#include "ui/control_ids.h"

#include <gtest/gtest.h>

#include <map>

namespace norva::test {
namespace {

using namespace ids::BinaryImport;

/// Does `acts` in the dialog on a file of 140 bytes; `answers` are of the messages that this shows.
PlayRun ActInDialog(std::string const& acts, std::string const& answers = "") {
    CTemporaryFolder const folder;
    WriteWholeFile(folder / "in.bin", std::string(140, '\1'));
    return Play(R"j({"operation": "import", "answers": [
                       {"dialog": 4063, "do": [{"select": "Formats", "row": 3}, {"click": 1}]},
                       {"open": "{dir}/in.bin"}, {"save": "{dir}/out.nvt"},
                       {"dialog": 4004, "do": [)j" +
                    acts + "]}" + answers + "]}",
                {{"dir", folder.Path()}}, {.helpFile = "/help/norvatool.chm"});
}

std::string const kThree = R"j({"set": "Number of Channels in a record:", "to": "3"}, {"click": "Set"})j";
/// Records of 14 bytes, ten of them.
std::string const kFormats = kThree + R"j(,
    {"select": "Channels:", "row": 0}, {"click": "32-bit integer (signed)"}, {"click": "Set for Selected"},
    {"select": "Channels:", "row": 1}, {"click": "64-bit float"}, {"click": "Set for Selected"},
    {"select": "Channels:", "row": 2}, {"click": "16-bit integer (signed)"}, {"click": "Set for Selected"})j";

TEST(BinaryImportDlg, FollowsItsChannels) {
    struct Case {
        char const* what;
        std::string acts;
        bool isReady;
        bool hasRows;
        std::string records;
        std::string points;
        std::vector<std::string> formats;  ///< of the rows
    };
    std::vector<std::string> const mixed{"32 INT SIGN", "64 FLOAT", "16 INT SIGN"};
    std::vector<std::string> const none{"", "", ""};
    std::string const all = R"j(, {"click": "Select All Channels"}, {"click": "32-bit float"},
                                 {"click": "Set for Selected"})j";
    for (Case const& c : std::vector<Case>{
             {"as opened", R"j({"click": "Help"})j", false, false, "0", "0", {}},
             {"rows without formats", kThree, false, true, "0", "0", none},
             {"one row without a format",
              kThree + R"j(, {"select": "Channels:", "rows": [0, 2]}, {"click": "Set for Selected"})j",
              false,
              true,
              "0",
              "0",
              {"32 INT SIGN", "", "32 INT SIGN"}},
             {"ready", kFormats, true, true, "10", "10", mixed},
             {"all at once", kThree + all, true, true, "12", "12", {"32 FLOAT", "32 FLOAT", "32 FLOAT"}},
             {"nothing selected", kThree + R"j(, {"click": "Set for Selected"})j", false, true, "0", "0", none},
             {"fewer rows keep their formats",
              kFormats + R"j(, {"set": "Number of Channels in a record:", "to": "2"}, {"click": "Set"})j",
              true,
              true,
              "12",
              "10",
              {"32 INT SIGN", "64 FLOAT"}},
             {"one row more is not ready",
              kFormats + R"j(, {"set": "Number of Channels in a record:", "to": "4"}, {"click": "Set"})j",
              false,
              true,
              "0",
              "0",
              {"32 INT SIGN", "64 FLOAT", "16 INT SIGN", ""}},
             {"a count that is no number",
              kFormats + R"j(, {"set": "Number of Channels in a record:", "to": "x"}, {"click": "Set"})j",
              false,
              false,
              "0",
              "0",
              {}},
             {"more points than records are cut",
              kFormats + R"j(, {"set": "Split into lines at (points)", "to": "99"}, {"click": "Set"})j", true, true,
              "10", "10", mixed},
             {"points are kept, records counted anew",
              kFormats + R"j(, {"set": "Split into lines at (points)", "to": "4"},
                              {"set": "Total Records in File:", "to": "7"}, {"click": "Set"})j",
              true, true, "10", "4", mixed},
             {"an empty name is found only at the next refresh",
              kFormats + R"j(, {"edit": "Channels:", "row": 1, "column": 1, "to": ""})j", true, true, "10", "10",
              mixed},
             {"an empty name", kFormats + R"j(, {"edit": "Channels:", "row": 1, "column": 1, "to": ""},
                                               {"click": "Set"})j",
              false, true, "0", "0", mixed},
         }) {
        PlayRun const run = ActInDialog(c.acts + R"j(, {"click": 2})j");
        ASSERT_EQ(run.failure, "") << c.what;
        EXPECT_EQ(run.value, 0) << c.what;
        auto const control = [&run](int id) { return run.Control("closed", 1, id); };
        for (int const id : {kButtonOk, kTotalRecords, kPointsPerLine}) {
            EXPECT_EQ(control(id)["enabled"], c.isReady) << c.what << ", control " << id;
        }
        for (int const id : {kChannels, kReadInt32, kReadFloat32, kWriteFloat, kWriteLong}) {
            EXPECT_EQ(control(id)["enabled"], c.hasRows) << c.what << ", control " << id;
        }
        EXPECT_EQ(control(kTotalRecords)["text"], c.records) << c.what;
        EXPECT_EQ(control(kPointsPerLine)["text"], c.points) << c.what;
        std::vector<std::string> formats;
        nlohmann::json const list = control(kChannels);
        for (auto const& row : list["rows"]) {
            formats.push_back(row[kFormatColumn]);
            EXPECT_EQ(row[kNumberColumn], std::to_string(formats.size())) << c.what;
        }
        EXPECT_EQ(formats, c.formats) << c.what;
    }
}

TEST(BinaryImportDlg, ReadFormatsChooseTheWriteFormatOfTheirKind) {
    std::map<std::string, int> const written{{"32-bit integer (signed)", kWriteLong},
                                             {"16-bit integer (signed)", kWriteShort},
                                             {"64-bit float", kWriteDouble},
                                             {"32-bit float", kWriteFloat}};
    for (auto const& [radio, expected] : written) {
        PlayRun const run = ActInDialog(kThree + R"j(, {"click": "Float point (double precision)"}, {"click": ")j" +
                                        radio + R"j("}, {"click": "Add Fiducial Channel"}, {"click": 2})j");
        ASSERT_EQ(run.failure, "");
        for (int const id : {kWriteFloat, kWriteDouble, kWriteShort, kWriteLong}) {
            EXPECT_EQ(run.Control("closed", 1, id)["checked"], id == expected) << radio << ", control " << id;
        }
        EXPECT_EQ(run.Control("dialog", 1, kFrequency)["enabled"], true);
        EXPECT_EQ(run.Control("closed", 1, kFrequency)["enabled"], false);
    }
}

TEST(BinaryImportDlg, StaysOpenUntilItsSettingsAreWhole) {
    struct Case {
        std::string acts;
        char const* message;
    };
    std::string const emptyName = R"j({"edit": "Channels:", "row": 0, "column": 1, "to": ""})j";
    std::string const noPoints = R"j({"set": "Split into lines at (points)", "to": "-1"})j";
    std::string const noFrequency = R"j({"set": "Sampling Frequency (Hz):", "to": "0"})j";
    for (Case const& c : std::vector<Case>{
             {noPoints + "," + emptyName + "," + noFrequency, "Set Number of points in a line"},
             {emptyName + "," + noFrequency, "Check settings for data column"},
             {noFrequency, "Set the Sampling Frequency"},
         }) {
        PlayRun const run = ActInDialog(kFormats + "," + c.acts + R"j(, {"click": 1}, {"close": true})j",
                                        R"j(, {"message": ")j" + std::string(c.message) + R"j(", "answer": "ok"})j");
        EXPECT_EQ(run.failure, "") << c.acts;
        EXPECT_EQ(run.Events("closed").at(1)["result"], kButtonCancel) << c.acts;
    }
    PlayRun const many = ActInDialog(R"j({"set": "Number of Channels in a record:", "to": "2000000000"},
                                        {"click": "Set"}, {"click": 2})j",
                                     R"j(, {"message": "A record can have 10000 channels at most", "answer": "ok"})j");
    EXPECT_EQ(many.failure, "");
    EXPECT_EQ(many.Control("closed", 1, kChannels)["rows"].size(), 0U);
    EXPECT_EQ(ActInDialog(R"j({"click": "Help"}, {"click": 2})j").Events("help").at(0)["topic"],
              "/help/norvatool.chm::/html/binary_import.htm");
}

}  // namespace
}  // namespace norva::test
