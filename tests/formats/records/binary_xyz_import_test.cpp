#include "norva/import_export.h"
#include "norva/import_report.h"
#include "platform/files.h"
#include "support/play.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <limits>
#include <random>

namespace norva::test {
namespace {

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

std::string Frequency(int hertz) {
    return R"j(, {"set": "Sampling Frequency (Hz):", "to": ")j" + std::to_string(hertz) + "\"}";
}

TEST(BinaryXYZImport, ImportsAPartialRecordToo) {
    CTemporaryFolder const folder;
    WriteWholeFile(folder / "in.bin", Records(10) + std::string("\x05\x00\x01\x00", 4));
    std::string const acts = R"j(, {"set": "Split into lines at (points)", "to": "4"})j";
    PlayRun const run =
        Import(folder, acts + Frequency(4), Message("File has unknown format"), "in.bin", {.withBytes = true});
    EXPECT_EQ(run.failure, "");
    EXPECT_EQ(run.value, 1);
    ExpectGolden(run, NORVA_TEST_DATA "/binary_xyz.jsonl", {{"dir", folder.Path()}});
    EXPECT_EQ(folder.Count(), 2U);
}

TEST(BinaryXYZImport, ReadsFilesOfManyBlocks) {
    constexpr int kRecords = 100'000;
    CTemporaryFolder const folder;
    WriteWholeFile(folder / "in.bin", Records(kRecords));
    ASSERT_EQ(Import(folder, Frequency(3)).value, 1);
    CNorvaFileUtil store;
    ASSERT_EQ(store.SetFileName(folder / "out.nvt", kReopenStore, nullptr), 1);
    CPackedValues expected[3];
    for (int n = 0; n < kRecords; ++n) {
        expected[0].Add(static_cast<std::int16_t>(n));
        expected[1].Add(n / 8.0);
        expected[2].Add(static_cast<float>(static_cast<std::int16_t>(-n)));
    }
    StoreSample const sample = ReadSample(store);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_TRUE(sample.channels.at(i + 1).values == expected[i].bytes) << i;
    // A third of a second is rounded before it is multiplied.
    EXPECT_EQ(sample.channels[0].values.substr(4 * 99'991, 4), CPackedValues().Add(33330.3359375F).bytes);
}

TEST(BinaryXYZImport, TellsItsOwnerEveryPercentOnce) {
    for (int const records : {1, 7, 97, 98, 250, 1999}) {
        CTemporaryFolder const folder;
        WriteWholeFile(folder / "in.bin", Records(records));
        PlayRun const run = Import(folder, R"j(, {"click": "Add Fiducial Channel"})j");
        std::vector<std::string> expected{"START0", "Importing...0"};
        int last = 0;
        for (int step = 0; step < records + 3; ++step) {
            int const percent = step * 100 / (records + 3);
            if (step >= records || percent > last) expected.push_back("Importing..." + std::to_string(last = percent));
        }
        expected.push_back("FINISH0");
        std::vector<std::string> notices;
        for (nlohmann::json const& notice : run.Events("notice")) {
            notices.push_back(notice["texts"][0].get<std::string>() + notice["texts"][1].get<std::string>());
        }
        EXPECT_EQ(notices, expected) << records;
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
    std::string const lines = "16000001 records of 1 points a line make 16000001 lines; a store takes 16000000 at most";
    std::string const noOpen = "!" + Message("File could not be open");
    auto const fault = [](std::string const& what) { return Message(what + "\\nNo space left on device"); };
    for (Case const& c : std::vector<Case>{
             {"no file", "none.bin", "", noOpen, "none.bin\nNo such file", false},
             {"a folder", "in.1", "", noOpen, "in.1\nIs a directory", false},
             {"a column file that cannot be created", "in.bin", "", "", "in.1\nIs a directory", true},
             {"a column file that is the input", "self.0", "", "", "it is the input file itself", true},
             {"more lines than a store takes", "one.bin",
              R"j(, {"set": "Total Records in File:", "to": "16000001"},
                    {"set": "Split into lines at (points)", "to": "1"})j",
              Message(lines), lines, false},
             {"a full disk", "one.bin", "", fault("Couldn't write the file : {dir}/one.1"), "one.1" + full, true,
              FaultPoint::Write, "/one.1"},
             {"a full disk after a warning", "odd.bin", "",
              Message("File has unknown format") + fault("Couldn't write the file : {dir}/odd.2"), "odd.2" + full, true,
              FaultPoint::Write, "/odd.2"},
             {"a read error", "one.bin", "", fault("Couldn't read the file : {dir}/one.bin"), "one.bin" + full, true,
              FaultPoint::Read, "/one.bin"},
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

/// A value of the source and what becomes of it.
template <typename Value>
struct Piece {
    Value value;
    ReportFinding ReportChannel::*asShort;
    ReportFinding ReportChannel::*asItIs;
};

TEST(BinaryXYZImport, AccountsForEveryByteAndValue) {
    constexpr auto kNoData = &ReportChannel::noData;
    constexpr auto kOut = &ReportChannel::outOfRange;
    constexpr auto kFraction = &ReportChannel::withFraction;
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    // 98303 becomes 32767 in 16 bits, which no source marked as no-data.
    Piece<std::int32_t> const wholes[] = {
        {2, nullptr, nullptr}, {32767, kNoData, nullptr}, {98303, kOut, nullptr}, {-70000, kOut, nullptr}};
    Piece<double> const reals[] = {{2, nullptr, nullptr},     {-2.5, kFraction, nullptr}, {32767, kNoData, nullptr},
                                   {98303, kOut, nullptr},    {1.0e30, kOut, kNoData},    {kNaN, kOut, nullptr},
                                   {-1.0e300, kOut, nullptr}, {1.5e9, kOut, nullptr}};
    std::mt19937 random(5);
    for (std::size_t const size : {1U, 4U, 11U, 12U, 13U, 14U, 15U, 140U, 700U, 1411U, 14'000U, 400'003U}) {
        for (std::size_t const asked : {std::size_t{0}, size / 28 + 1, size / 7 + 2}) {
            bool const isShort = size % 2 == 0;
            std::size_t const records = asked == 0 ? (size + 13) / 14 : asked;
            auto const present = [&](std::size_t end) {
                return std::min(size / 14 + (size % 14 >= end ? 1 : 0), records);
            };
            ReportChannel expected[3];
            CPackedValues values;
            for (std::size_t n = 0; n * 14 < size; ++n) {
                auto const& whole = wholes[random() % std::size(wholes)];
                auto const& real = reals[random() % std::size(reals)];
                auto const kind = isShort ? real.asShort : real.asItIs;
                auto const last = static_cast<std::int16_t>(random());
                values.Add(whole.value).Add(real.value).Add(last);
                if (n < present(4) && whole.asShort != nullptr) ++(expected[0].*whole.asShort).count;
                if (n < present(12) && kind != nullptr) ++(expected[1].*kind).count;
                if (n >= present(14)) continue;
                expected[2].minimum = n == 0 ? last : std::min<double>(expected[2].minimum, last);
                expected[2].maximum = n == 0 ? last : std::max<double>(expected[2].maximum, last);
            }
            CTemporaryFolder const folder;
            WriteWholeFile(folder / "in.bin", values.bytes.substr(0, size));
            std::string acts = isShort ? R"j(, {"select": "Channels:", "row": 1}, {"click": "64-bit float"},
                                               {"click": "Short Integer (2 bytes)"},
                                               {"click": "Set for Selected"})j"
                                       : "";
            if (asked > 0) {
                acts += R"j(, {"set": "Total Records in File:", "to": ")j" + std::to_string(asked) + "\"}";
            }
            std::string const input = std::to_string(size) + " bytes, records: " + std::to_string(asked);
            ASSERT_EQ(Import(folder, acts, "", "in.bin", {.defaults = true}).value, 1) << input;
            ImportReport report;
            ASSERT_EQ(GetImportReport(report, 0), 1) << input;
            EXPECT_TRUE(report.IsAccounted()) << input;
            EXPECT_EQ(report.sourceSize, size) << input;
            EXPECT_EQ(report.unitsRead, (size + 13) / 14) << input;
            EXPECT_EQ(report.LocationCount(), records) << input;
            EXPECT_EQ(report.cutRecords.count, size % 14 != 0 && records > size / 14 ? 1U : 0U) << input;
            ASSERT_EQ(report.channels.size(), 4U) << input;
            for (std::size_t i = 0; i < 3; ++i) {
                ReportChannel const& channel = report.channels[i + 1];
                for (auto const kind : {kNoData, kOut, kFraction}) {
                    EXPECT_EQ((channel.*kind).count, (expected[i].*kind).count) << input << ", channel " << i;
                }
                EXPECT_EQ(channel.missing.count, records - present(i == 0 ? 4 : i == 1 ? 12 : 14)) << input;
            }
            EXPECT_EQ(report.channels[3].minimum, expected[2].minimum) << input;
            EXPECT_EQ(report.channels[3].maximum, expected[2].maximum) << input;
        }
    }
}

TEST(BinaryXYZImport, RefusesMoreRecordsThanTheDiskTakes) {
    CTemporaryFolder const folder;
    WriteWholeFile(folder / "in.bin", Records(2));
    std::string const acts = R"j(, {"set": "Total Records in File:", "to": "9223372036854775807"})j";
    PlayRun const run = Import(folder, acts, "", "in.bin", {.defaults = true});
    EXPECT_EQ(run.value, 0);
    std::string const message = run.Texts("message").at(0);
    EXPECT_TRUE(message.starts_with("Not enough free space on the disk : " + folder.Path() + "/\n")) << message;
    EXPECT_TRUE(run.Events("notice").empty());
    EXPECT_EQ(folder.Count(), 1U);
}

}  // namespace
}  // namespace norva::test
