#include "formats/gbn/gbn_bytes.h"
#include "formats/gbn/gbn_import_template.h"
#include "norva/import_export.h"
#include "platform/files.h"
#include "support/findings.h"
#include "support/play.h"
#include "support/store_text.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <limits>

namespace norva {
namespace {

using namespace ids::GbnImport;
using nlohmann::json;
using test::CGbnBytes;

/// Runs in a folder of its own, which is the current one: "fiducial" stands there.
class GbnImport : public testing::Test {
protected:
    GbnImport() : m_before(std::filesystem::current_path()) { std::filesystem::current_path(folder.Path()); }
    ~GbnImport() override { std::filesystem::current_path(m_before); }

    /// Imports `bytes`; `answers` are what is shown after the save dialog.
    PlayRun Import(std::string const& bytes, std::string const& answers, PlayOptions const& options = {}) {
        if (!bytes.empty()) test::WriteWholeFile(folder / "in.gbn", bytes);
        return Play(R"({"operation": "import", "answers": [
                        {"dialog": 4063, "do": [{"select": "Formats", "row": 4}, {"click": 1}]},
                        {"open": "{dir}/in.gbn"}, {"save": "{dir}/out.nvt"}, )" +
                        answers + "]}",
                    {{"dir", folder.Path()}}, options);
    }
    std::string Stored() { return test::StoreText(folder / "out.nvt"); }

    test::CTemporaryFolder folder;

private:
    std::filesystem::path m_before;
};

constexpr char const* kContinue = R"({"dialog": 4059, "do": [{"click": 1}]})";

/// Three lines; the second channel is a text and shorter in the first line.
CGbnBytes Survey() {
    CGbnBytes file;
    file.Channel("X", 5, 2, 3).SecondChannel("S").Channel("T", -4).Channel("N", 0, 1);
    file.Line(10).Values(0, 5, 1.5, -1.0e32, 2.5).Block(2, -4, 1).Text("abc", 4).Values(3, 0, char{1}, 2, 3);
    file.Line(20, 3).Values(0, 5, 4.5).Block(2, -4, 1).Text("d", 4);
    return file.Line(30, 0, 7).Values(3, 0, char{4}, -5).Block(0, 5, 2, 100.0, 0.5).Add(5.5).Add(6.5).End();
}

TEST_F(GbnImport, KeepsChosenLinesAndChannelsAndTracesToTheLetter) {
    PlayRun const run = Import(Survey().bytes, R"({"dialog": 4059, "do": [
        {"edit": "Channels:", "row": 0, "column": 2, "to": "East"}, {"edit": "Channels:", "row": 0, "column": 3, "to": "m"},
        {"edit": "Lines:", "row": 2, "column": 2, "to": "third"}, {"tick": "Lines:", "row": 0, "on": false},
        {"tick": "Channels:", "row": 2, "on": false}, {"select": "Channels:", "row": 1}, {"click": "General Text"},
        {"click": "Set for Selected"}, {"click": "Continue"}]})",
                               {.withBytes = true});
    EXPECT_EQ(run.failure, "");
    ExpectGolden(run, NORVA_TEST_DATA "/gbn_import.jsonl", {{"dir", folder.Path()}});
    EXPECT_EQ(Stored(),
              "FIDUCIAL: 20.3[101.5] third[102 102.5]\n"
              "East (m): 20.3[4.5] third[5.5 6.5]\n"
              "T: 20.3['d'] third['' '']\n");
    EXPECT_EQ(folder.Count(), 2U);
}

TEST_F(GbnImport, ConvertsEveryTypeToEveryOther) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    CGbnBytes file;
    for (std::int32_t type = 0; type <= 5; ++type) file.Channel("C" + std::to_string(type), type);
    file.Channel("Text", -5).Line(1);
    file.Values(0, 0, char{-128}, 53).Values(1, 1, std::uint16_t{40000}, 65535).Values(2, 2, short{-32768}, 32767);
    file.Values(3, 3, std::numeric_limits<int>::min(), -2147483647, 65537);
    file.Values(4, 4, -2.75F, -1.0e32F, kInfinity, 3.0e9F, -2147483648.0F, std::numeric_limits<float>::quiet_NaN());
    file.Values(5, 5, 70000.9, 1.0e30, 1.0e300, -2147483648.9, 2147483648.0);
    file.Block(6, -5, 5).Text("12.5", 5).Text("-7000", 5).Text("", 5).Text(" 9x", 5).Text("3e9", 5);
    struct Case {
        char const* radio;
        char const* values;  ///< of each channel; the last one or more are the padding
        char const* findings;
    };
    for (Case const& c : std::vector<Case>{
             {"Float point (single precision)",
              "C0: 1[-128 53 32767 32767 32767 32767]\nC1: 1[40000 2147483648 2147483648 2147483648 "
              "2147483648 2147483648]\nC2: 1[-32768 32767 32767 32767 32767 32767]\nC3: 1[-2147483648 "
              "2147483648 65537 2147483648 2147483648 2147483648]\nC4: 1[-2.75 * inf 3e+09 -2147483648 "
              "*]\nC5: 1[70000.9 * inf -2147483648 2147483648 *]\nText: 1[12.5 -700 0 9 3e+09 0]\n",
              "3 losses; C0: missing 4; C1: no_data 1, missing 4; C2: no_data 1, missing 4; C3: no_data 1, missing 3; "
              "C4: no_data 2; C5: no_data 1, missing 1, out_of_range 1; Text: missing 1, unreadable 1, with_rest 1"},
             {"Short Integer (2 bytes)",
              "C0: 1[-128 53 * * * *]\nC1: 1[-25536 -1 -1 -1 -1 -1]\nC2: 1[-32768 * * * * *]\n"
              "C3: 1[0 -1 1 -1 -1 -1]\nC4: 1[-2 * 0 0 0 *]\nC5: 1[4464 * 0 0 0 *]\nText: 1[12 -700 0 9 3 0]\n",
              "15 losses; C0: missing 4; C1: no_data 1, missing 4, out_of_range 1; C2: no_data 1, missing 4; C3: "
              "no_data 1, missing 3, out_of_range 2; C4: no_data 2, out_of_range 3, with_fraction 1; C5: no_data 1, "
              "missing 1, out_of_range 4; Text: missing 1, out_of_range 1, unreadable 1, with_rest 1, with_fraction 1"},
             {"Long Integer (4 bytes)",
              "C0: 1[-128 53 32767 32767 32767 32767]\nC1: 1[40000 * * * * *]\nC2: 1[-32768 32767 32767 32767 32767 "
              "32767]\nC3: 1[-2147483648 * 65537 * * *]\nC4: 1[-2 * -2147483648 -2147483648 -2147483648 *]\n"
              "C5: 1[70000 * -2147483648 -2147483648 -2147483648 *]\nText: 1[12 -700 0 9 3 0]\n",
              "11 losses; C0: missing 4; C1: no_data 1, missing 4; C2: no_data 1, missing 4; C3: no_data 1, missing 3; "
              "C4: no_data 2, out_of_range 2, with_fraction 1; C5: no_data 1, missing 1, out_of_range 2, with_fraction "
              "2; Text: missing 1, out_of_range 1, unreadable 1, with_rest 1, with_fraction 1"},
             {"General Text",
              "C0: 1['-' '5' '3' '3' '3' '3']\nC1: 1['4' '2' '2' '2' '2' '2']\nC2: 1['-' '3' '3' '3' '3' '3']\n"
              "C3: 1['-' '2' '6' '2' '2' '2']\nC4: 1['-' '1' 'i' '3' '-' '1']\nC5: 1['7' '1' '1' '-' '2' '1']\n"
              "Text: 1['12.5' '-700' '' ' 9x' '3e9' '']\n",
              "20 losses; C0: missing 4, cut 2; C1: missing 4, cut 2; C2: missing 4, cut 2; C3: missing 3, cut 3; C4: "
              "cut 6; C5: missing 1, cut 5; Text: missing 1"},
         }) {
        PlayRun const run =
            Import(file.bytes, R"({"dialog": 4059, "do": [{"click": "Import Fiducial as a separate channel"},
            {"select": "Channels:", "rows": [0, 1, 2, 3, 4, 5, 6]}, {"click": ")" +
                                   std::string(c.radio) + R"("}, {"click": "Set for Selected"}, {"click": 1}]})");
        EXPECT_EQ(run.failure, "");
        EXPECT_EQ(Stored(), c.values) << c.radio;
        EXPECT_EQ(test::FindingsOfLastImport(file.bytes.size()), c.findings) << c.radio;
    }
}

TEST_F(GbnImport, ShowsEditsAndKeepsTheDialogOpenWhileNothingIsChosen) {
    CGbnBytes file;
    file.Channel("", 3).Channel("B", 5).Line(1).Values(0, 3, 1).Values(1, 5, 2.0);
    std::string const nameless = R"({"dialog": 4059, "do": [{"click": 1}]})";
    EXPECT_NE(Import(file.bytes, nameless).failure.find("is disabled"), std::string::npos);

    // The two buttons act on the list that was clicked last.
    PlayRun const run = Import(file.bytes, R"json({"dialog": 4059, "do": [
        {"edit": "Channels:", "row": 0, "column": 2, "to": "A"}, {"select": "Channels:", "rows": [0, 1]},
        {"select": "Lines:", "row": 0}, {"click": "Unheck Selection"}, {"select": "Channels:", "row": 1, "with": "ctrl"},
        {"select": "Channels:", "row": 1, "with": "ctrl"}, {"click": "Unheck Selection"}, {"click": 1},
        {"click": "Check Selection"}, {"click": 1}, {"select": "Lines:", "row": 0}, {"click": "Check Selection"},
        {"select": "Channels:", "row": 0}, {"click": "Short Integer (2 bytes)"}, {"click": "Set for Selected"},
        {"tick": "Channels:", "row": 1, "on": false}, {"click": 1}]},
        {"message": "At least one channel should be selected", "answer": "ok"},
        {"message": "At least one line should be selected", "answer": "ok"},
        {"message": "At least one line should be selected", "answer": "ok"})json");
    EXPECT_EQ(run.failure, "");
    EXPECT_EQ(run.Control("closed", 1, kChannels)["rows"][0], json({"", "1", "A", "", "INT"}));
    EXPECT_EQ(Stored(), "FIDUCIAL: 1[1]\nA: 1[1]\n");
    EXPECT_EQ(run.Control("dialog", 1, kLong)["checked"], true);
    EXPECT_EQ(run.Control("dialog", 1, 1)["enabled"], false);
}

TEST_F(GbnImport, EndsWithNothingLeftBehind) {
    struct Case {
        char const* what;
        std::string bytes;
        char const* answers;
        std::vector<std::string> messages;
        int value;
        char const* folder;  ///< made in the way of a temporary file
        std::string stored;
        std::string findings = "0 losses";
    };
    std::string const whole = CGbnBytes().Channel("X", 3).Line(1).Values(0, 3, 1, 2).End().bytes;
    std::string const kept = "FIDUCIAL: 1[1 2]\nX: 1[1 2]\n";
    std::string const none = "no store";
    std::vector<Case> const cases{
        {"another signature", "oasis" + whole.substr(5), kContinue, {"File is not Oasis Binary"}, 1, "", kept},
        {"cut in a block",
         whole.substr(0, whole.size() - 2),
         kContinue,
         {"File ends inside the data block at byte 0x82; 1 of 2 values of channel X were read"},
         1,
         "",
         "FIDUCIAL: 1[1]\nX: 1[1]\n",
         "1 losses; cut 1"},
        {"a block before the lines",
         CGbnBytes().Channel("X", 3).Values(0, 3, 9).Line(1).Values(0, 3, 1, 2).End().bytes,
         kContinue,
         {"Data blocks before the first line, which were left out: 1"},
         1,
         "",
         kept,
         "1 losses; left out 1"},
        {"a block of no channel, an opaque record, unknown codes, a rest",
         CGbnBytes().Channel("X", 3).Line(1).Values(0, 3, 1, 2).Values(1, 3, 7).End().bytes + "rest",
         kContinue,
         {},
         1,
         "",
         kept,
         "1 losses; left out 1"},
        {"a text of one byte",
         CGbnBytes().Channel("T", -1).Line(1).Values(0, -1, char{0}).End().bytes,
         kContinue,
         {},
         1,
         "",
         "FIDUCIAL: 1[1]\nT: 1['']\n"},
        {"cancelled", whole, R"({"dialog": 4059, "do": [{"click": 2}]})", {}, 0, "", none},
        {"no lines",
         CGbnBytes().Channel("X", 3).End().bytes,
         R"({"dialog": 4059, "do": [{"close": true}]})",
         {},
         0,
         "",
         none},
        {"no column file", whole, kContinue, {}, 0, "in.0", none},
        {"no fiducial file", whole, kContinue, {}, 0, "fiducial", none},
    };
    for (Case const& c : cases) {
        std::filesystem::remove(folder / "out.nvt");
        if (*c.folder != '\0') std::filesystem::create_directory(c.folder);
        std::string answers;
        for (std::string const& text : c.messages) answers += json{{"message", text}, {"answer", "ok"}}.dump() + ", ";
        PlayRun const run = Import(c.bytes, answers + c.answers);
        EXPECT_NE(GetLastErrorText().find(c.folder), std::string::npos) << c.what << ": " << GetLastErrorText();
        EXPECT_EQ(run.failure, "") << c.what;
        EXPECT_EQ(run.value, c.value) << c.what;
        EXPECT_EQ(Stored(), c.stored) << c.what;
        if (c.value == 1) {
            EXPECT_EQ(test::FindingsOfLastImport(c.bytes.size()), c.findings) << c.what;
        }
        if (*c.folder != '\0') std::filesystem::remove(c.folder);
        EXPECT_EQ(folder.Count(), c.value == 1 ? 2U : 1U) << c.what;
    }
    std::filesystem::create_hard_link("in.gbn", "fiducial");
    EXPECT_EQ(Import("", kContinue).value, 0);
    EXPECT_EQ(test::ReadWholeFile("fiducial"), cases.back().bytes);
    std::filesystem::remove(folder / "in.gbn");
    PlayRun const missing = Import("", R"({"message": "File could not be open", "answer": "ok"})");
    EXPECT_EQ(missing.failure, "");
    EXPECT_EQ(missing.value, 0);
}

/// Longer than a column's buffer holds.
TEST_F(GbnImport, KeepsLongTextsWhole) {
    constexpr int kWidth = 70'000;
    std::string const text = std::string(66'000, 'a') + "z";
    CGbnBytes file;
    file.Channel("T", -kWidth).Line(1).Block(0, -kWidth, 2).Text(text, kWidth).Text("b", kWidth).End();
    EXPECT_EQ(Import(file.bytes, kContinue, {.defaults = true}).value, 1);
    EXPECT_NE(Stored().find("['" + text + "' 'b']"), std::string::npos) << Stored().substr(0, 80);
}

TEST_F(GbnImport, ToldOfAFullDiskAndTheOlderStoreStays) {
    std::string const whole = CGbnBytes().Channel("X", 3).Line(1).Values(0, 3, 1, 2).End().bytes;
    ASSERT_EQ(Import(whole, kContinue).value, 1);
    std::string const older = test::ReadWholeFile(folder / "out.nvt");
    for (char const* file : {"in.0", "fiducial", "out.nvt"}) {
        SetFaultHook([&](FaultPoint point, std::string const& path) {
            return point == FaultPoint::Write && path.find(file) != std::string::npos ? ENOSPC : 0;
        });
        PlayRun const run = Import(whole, kContinue, {.defaults = true});
        SetFaultHook({});
        EXPECT_EQ(run.value, 0) << file;
        EXPECT_NE(GetLastErrorText().find("No space left on device"), std::string::npos) << file;
        EXPECT_EQ(test::ReadWholeFile(folder / "out.nvt"), older) << file;
        EXPECT_EQ(folder.Count(), 2U) << file;
    }
}

}  // namespace
}  // namespace norva
