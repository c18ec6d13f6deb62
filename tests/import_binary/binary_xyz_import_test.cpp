#include "norva/import_export.h"
#include "norva/window.h"
#include "platform/files.h"
#include "support/play.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

namespace norva::test {
namespace {

struct NoticeWindow : CWindow {
    std::vector<std::string> notices;

    std::intptr_t SendMessage(unsigned message, std::intptr_t first, std::intptr_t second) override {
        if (message == WM_OWNER_NOTICE) {
            notices.push_back(std::string(reinterpret_cast<char const*>(first)) + " " +
                              reinterpret_cast<char const*>(second));
        }
        return 0;
    }
};

/// `records` records of an int32, a double and an int16, 14 bytes.
std::string Records(int records) {
    CPackedValues values;
    for (int n = 0; n < records; ++n) {
        auto const wide = static_cast<std::int32_t>(static_cast<std::uint32_t>(n) * 65537U);
        values.Add(wide).Add(n / 8.0).Add(static_cast<std::int16_t>(-n));
    }
    return values.bytes;
}

constexpr char const* kLayout = R"j(
    {"set": "Number of Channels in a record:", "to": "3"}, {"click": "Set"},
    {"select": "Channels:", "row": 0}, {"click": "32-bit integer (signed)"},
    {"click": "Short Integer (2 bytes)"}, {"click": "Set for Selected"},
    {"select": "Channels:", "row": 1}, {"click": "64-bit float"}, {"click": "Set for Selected"},
    {"select": "Channels:", "row": 2}, {"click": "16-bit integer (signed)"},
    {"click": "Float point (single precision)"}, {"click": "Set for Selected"},
    {"edit": "Channels:", "row": 1, "column": 1, "to": "Mag"}, {"edit": "Channels:", "row": 1, "column": 2, "to": "nT"})j";

/// Imports {dir}/`input`; `answers` follow the dialog, in which `acts` come after the layout.
PlayRun Import(CTemporaryFolder const& folder, std::string const& acts = "", std::string const& answers = "",
               std::string const& input = "in.bin", PlayOptions const& options = {}) {
    std::string const dialog = R"j(, {"dialog": 4004, "do": [)j" + (kLayout + acts) + R"j(, {"click": 1}]})j";
    bool const isShown = !answers.starts_with("!");
    return Play(R"j({"operation": "import", "answers": [
                       {"dialog": 4063, "do": [{"select": "Formats", "row": 3}, {"click": 1}]},
                       {"open": "{dir}/)j" +
                    input + R"j("}, {"save": "{dir}/out.nvt"})j" + (isShown ? dialog + answers : answers.substr(1)) +
                    "]}",
                {{"dir", folder.Path()}}, options);
}

std::string Message(std::string const& text) {
    return R"j(, {"message": ")j" + text + R"j(", "answer": "ok"})j";
}

TEST(BinaryXYZImport, ImportsAPartialRecordToo) {
    CTemporaryFolder const folder;
    WriteWholeFile(folder / "in.bin", Records(10) + std::string("\x05\x00\x01\x00", 4));
    NoticeWindow owner;
    PlayRun const run = Import(
        folder,
        R"j(, {"set": "Sampling Frequency (Hz):", "to": "4"}, {"set": "Split into lines at (points)", "to": "4"})j",
        Message("File has unknown format"), "in.bin", {.withBytes = true, .owner = &owner});
    EXPECT_EQ(run.failure, "");
    EXPECT_EQ(run.value, 1);
    ExpectGolden(run, NORVA_TEST_DATA "/import_binary/binary_xyz.jsonl", {{"dir", folder.Path()}});
    EXPECT_EQ(folder.Count(), 2U);
    EXPECT_EQ(owner.notices.size(), run.Events("notice").size());
    EXPECT_EQ(owner.notices.back(), "FINISH 0");

    CNorvaFileUtil store;
    ASSERT_EQ(store.SetFileName(folder / "out.nvt", kReopenStore, nullptr), 1);
    std::vector<float> fiducial(3);
    ASSERT_EQ(store.ReadColumn(0, 2, 0, 3, fiducial.data()), 1);
    EXPECT_EQ(fiducial, (std::vector<float>{2.0F, 2.25F, 2.5F}));
    std::vector<double> mag(3);
    ASSERT_EQ(store.ReadColumn(2, 2, 0, 3, mag.data()), 1);
    EXPECT_EQ(mag, (std::vector<double>{1.0, 1.125, kNoDataDouble}));
}

TEST(BinaryXYZImport, ReadsFilesOfManyBlocks) {
    constexpr int kRecords = 100'000;
    CTemporaryFolder const folder;
    WriteWholeFile(folder / "in.bin", Records(kRecords));
    PlayRun const run = Import(folder, R"j(, {"click": "Add Fiducial Channel"})j");
    ASSERT_EQ(run.value, 1) << run.failure;
    CNorvaFileUtil store;
    ASSERT_EQ(store.SetFileName(folder / "out.nvt", kReopenStore, nullptr), 1);
    ASSERT_EQ(store.ChannelCount, 3);
    std::vector<std::int16_t> first(kRecords);
    std::vector<double> second(kRecords);
    std::vector<float> third(kRecords);
    ASSERT_EQ(store.ReadColumn(0, 0, 0, kRecords, first.data()), 1);
    ASSERT_EQ(store.ReadColumn(1, 0, 0, kRecords, second.data()), 1);
    ASSERT_EQ(store.ReadColumn(2, 0, 0, kRecords, third.data()), 1);
    for (int n = 0; n < kRecords; ++n) {
        auto const at = static_cast<std::size_t>(n);
        ASSERT_EQ(first[at], static_cast<std::int16_t>(n)) << n;
        ASSERT_EQ(second[at], n / 8.0) << n;
        ASSERT_EQ(third[at], static_cast<std::int16_t>(-n)) << n;
    }

    // A third of a second is rounded before it is multiplied.
    ASSERT_EQ(Import(folder, R"j(, {"set": "Sampling Frequency (Hz):", "to": "3"})j").value, 1);
    ASSERT_EQ(store.SetFileName(folder / "out.nvt", kReopenStore, nullptr), 1);
    ASSERT_EQ(store.ReadColumn(0, 0, 0, kRecords, third.data()), 1);
    EXPECT_EQ(third[7], 2.3333334922790527F);
    EXPECT_EQ(third[99'991], 33330.3359375F);
}

TEST(BinaryXYZImport, TellsItsOwnerEveryPercentOnce) {
    for (int const records : {1, 7, 97, 98, 250, 1999}) {
        CTemporaryFolder const folder;
        WriteWholeFile(folder / "in.bin", Records(records));
        NoticeWindow owner;
        Import(folder, "", "", "in.bin", {.owner = &owner});
        std::vector<std::string> expected{"START 0", "Importing... 0"};
        int last = 0;
        for (int step = 0; step < records + 3; ++step) {
            int const percent = step * 100 / (records + 3);
            if (step >= records || percent > last) expected.push_back("Importing... " + std::to_string(last = percent));
        }
        expected.push_back("FINISH 0");
        EXPECT_EQ(owner.notices, expected) << records;
    }
}

TEST(BinaryXYZImport, FailsWithoutTraces) {
    struct Case {
        char const* what;
        std::string input;
        std::string acts;
        std::string answers;
        std::string lastError;
        bool hasBegun;  ///< notices went out
        FaultPoint point = FaultPoint::Open;
        std::string fault = "-";  ///< end of the path that fails
    };
    std::string const full = "\nNo space left on device";
    for (
        Case const& c : std::vector<Case>{
            {"no file", "none.bin", "", "!" + Message("File could not be open"), "none.bin\nNo such file", false},
            {"a folder", "in.1", "", "!" + Message("File could not be open"), "in.1\nIs a directory", false},
            {"cancelled", "in.bin", "", R"j(!, {"dialog": 4004, "do": [{"click": 2}]})j", "", false},
            {"a column file that cannot be created", "in.bin", "", "", "in.1\nIs a directory", true},
            {"a column file that is the input", "self.0", "", "", "it is the input file itself", true},
            {"more lines than a store takes", "one.bin",
             R"j(, {"set": "Total Records in File:", "to": "16000001"}, {"set": "Split into lines at (points)", "to": "1"})j",
             Message("16000001 records of 1 points a line make 16000001 lines; a store takes 16000000 at most"),
             "16000001 lines", false},
            {"a full disk", "one.bin", "", Message("Couldn't write the file : {dir}/one.1\\nNo space left on device"),
             "one.1" + full, true, FaultPoint::Write, "/one.1"},
            {"a full disk after a warning", "odd.bin", "",
             Message("File has unknown format") +
                 Message("Couldn't write the file : {dir}/odd.2\\nNo space left on device"),
             "odd.2" + full, true, FaultPoint::Write, "/odd.2"},
            {"a read error", "one.bin", "", Message("Couldn't read the file : {dir}/one.bin\\nNo space left on device"),
             "one.bin" + full, true, FaultPoint::Read, "/one.bin"},
            {"a store that cannot be finished", "one.bin", "", "", full, true, FaultPoint::Sync, ""},
        }) {
        CTemporaryFolder const folder;
        for (char const* name : {"in.bin", "one.bin", "self.0"}) WriteWholeFile(folder / name, Records(100'000));
        WriteWholeFile(folder / "odd.bin", Records(100'000) + "odd");
        std::filesystem::create_directory(folder / "in.1");
        WriteWholeFile(folder / "out.nvt", "an older store");
        SetFaultHook([&c](FaultPoint point, std::string const& path) {
            return c.fault != "-" && point == c.point && path.ends_with(c.fault) ? ENOSPC : 0;
        });
        PlayRun const run = Import(folder, c.acts, c.answers, c.input);
        SetFaultHook({});
        EXPECT_EQ(run.failure, "") << c.what;
        EXPECT_EQ(run.value, 0) << c.what;
        EXPECT_NE(GetLastErrorText().find(c.lastError), std::string::npos) << c.what << ": " << GetLastErrorText();
        EXPECT_EQ(run.Events("notice").empty(), !c.hasBegun) << c.what;
        EXPECT_EQ(run.Events("cursor").size(), c.hasBegun ? 1U : 0U) << c.what;
        EXPECT_EQ(folder.Count(), 6U) << c.what;
        EXPECT_EQ(ReadWholeFile(folder / "out.nvt"), "an older store") << c.what;
        EXPECT_TRUE(ReadWholeFile(folder / "self.0") == Records(100'000)) << c.what;
    }
}

TEST(BinaryXYZImport, RefusesMoreRecordsThanTheDiskTakes) {
    CTemporaryFolder const folder;
    WriteWholeFile(folder / "in.bin", Records(2));
    PlayRun const run = Play(R"j({"operation": "import", "answers": [
                                    {"dialog": 4063, "do": [{"select": "Formats", "row": 3}, {"click": 1}]},
                                    {"open": "{dir}/in.bin"}, {"save": "{dir}/out.nvt"},
                                    {"dialog": 4004, "do": [)j" +
                                 std::string(kLayout) + R"j(,
                                        {"set": "Total Records in File:", "to": "9223372036854775807"},
                                        {"click": 1}]}]})j",
                             {{"dir", folder.Path()}}, {.defaults = true});
    EXPECT_EQ(run.value, 0);
    std::vector<std::string> const messages = run.Texts("message");
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_TRUE(messages[0].starts_with("Not enough free space on the disk : " + folder.Path() + "/\n")) << messages[0];
    EXPECT_TRUE(run.Events("notice").empty());
    EXPECT_EQ(folder.Count(), 1U);
}

}  // namespace
}  // namespace norva::test
