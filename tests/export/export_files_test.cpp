#include "entry/export_types.h"
#include "export_run.h"
#include "norva/export_to_xyz_file.h"
#include "platform/files.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <cerrno>

namespace norva {
namespace {

using namespace test;

class CExporterInTest : public CExportToXYZFile {
public:
    CExporterInTest() : CExportToXYZFile(nullptr, "", nullptr) {}
    using CExportToXYZFile::AdjustChannelName;
    using CExportToXYZFile::AdjustProfileName;
    using CExportToXYZFile::MFormatString;
};

/// A line of the file: every text right-justified in 20 characters, 5 blanks behind it.
std::string Row(std::string line, std::vector<std::string> const& texts) {
    for (std::string const& text : texts) line += std::string(20 - text.size(), ' ') + text + "     ";
    return line;
}

TEST(XyzExport, LabelsOfLinesAndChannels) {
    CExporterInTest const exporter;
    struct Case {
        char const* name;
        char const* line;
        char const* channel;
    };
    for (Case const& one :
         {Case{"L10.5:2", "L10_5_2", "L10.5:2"}, Case{"L 7", "L_7", "L_7"}, Case{"Mag (nT)", "Mag_(nT)", "Mag"},
          Case{"a(b) (c d)", "a(b)_(c_d)", "ab"}, Case{"(odd", "(odd", "odd"}, Case{"odd)", "odd)", "odd"},
          Case{"  . : ", "", ".:"}, Case{"x (y) z", "x_(y)_z", "x_y_z"}, Case{"", "", ""}}) {
        SCOPED_TRACE(one.name);
        EXPECT_EQ(exporter.AdjustProfileName(one.name), one.line);
        EXPECT_EQ(exporter.AdjustChannelName(one.name), std::string(one.name) == "  . : " ? "._:" : one.channel);
    }
    EXPECT_EQ(exporter.MFormatString("abc", 6), " abc  ");
}

TEST(XyzExport, GoldenRunFromSaveDialogToFile) {
    CTemporaryFolder folder;
    ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
    {
        CNorvaFileUtil store;
        ASSERT_NE(store.SetFileName(folder / "s.nvt", kReopenStore, nullptr), 0);
        store.MarkLocToDelete(0, 0, 1);
        ASSERT_NE(store.CloseCurFile(), 0);
    }
    PlayRun const run = Export(folder, "out.xyz", R"({"double": 4005, "row": 1}, {"click": 4008}, {"click": 4011},
        {"click": 4046}, {"click": 1})");
    EXPECT_EQ(run.failure, "");
    EXPECT_EQ(run.value, 1);
    ExpectGolden(run, NORVA_TEST_DATA "/export/xyz.jsonl", {{"dir", folder.Path()}});
    std::string const text = ReadWholeFile(folder / "out.xyz");
    std::vector<std::string> rows;
    for (std::size_t at = 0, end = 0; (end = text.find("\r\n", at)) != std::string::npos; at = end + 2) {
        rows.push_back(text.substr(at, end - at));
    }
    ASSERT_EQ(rows.size(), 10U);
    EXPECT_EQ(rows[0], Row("/ ", {"POINT_ID", "X_(m)", "Mag_(nT)", "Fid", "Raw_(mV)", "Station", "Counts"}));
    EXPECT_EQ(rows[1], "LINE L20");
    EXPECT_EQ(rows[2], Row("  ", {"1_1", "1001.25", "47995.50", "500", "-5", "S5", "5"}));
    EXPECT_EQ(rows[5], "LINE L10");
    EXPECT_EQ(rows[6], Row("  ", {"2_2", "*", "*", "*", "*", "*", "*"}));
}

TEST(XyzExport, EmptyLinesAndHiddenLinesAreNotOffered) {
    CTemporaryFolder folder;
    StoreSample sample;
    sample.lines = {{"empty", 0}, {"hidden", 1}, {"deleted", 1}, {"good", 1}};
    sample.channels = {
        {{"X", "", DataType::kFloat, 0, 0, 1, 0, 2, -1, 0}, CPackedValues().Add(1.F).Add(2.F).Add(3.F).bytes}};
    CNorvaFileUtil store;
    ASSERT_TRUE(WriteSample(store, folder / "s.nvt", sample));
    ASSERT_NE(store.SetFileName(folder / "s.nvt", kReopenStore, nullptr), 0);
    store.SetProfileFlag(1, 1);
    store.MarkLocToDelete(2, 0, 1);
    ASSERT_NE(store.CloseCurFile(), 0);
    PlayRun const run = Export(folder, "out.xyz");
    EXPECT_EQ(run.Control("dialog", 0, 4005)["items"], nlohmann::json({"good"}));
    EXPECT_FALSE(run.Control("dialog", 0, 4091)["enabled"].get<bool>());
}

TEST(ExportRouting, TypesOfExtensions) {
    struct Case {
        char const* extension;
        int type;
    };
    for (Case const& one : {Case{"nvt", 0}, Case{"EET", 0}, Case{"prn", 2}, Case{"p", 2}, Case{"xyz", 1},
                            Case{"ASC", 1}, Case{"Dat", 1}, Case{"dmp", 1}, Case{"txt", 1}, Case{"xls", 3},
                            Case{"xlsx", -1}, Case{"gbn", 4}, Case{"", -1}, Case{"csv", -1}}) {
        EXPECT_EQ(ExportTypeOf(one.extension), one.type) << one.extension;
    }
}

TEST(ExportRouting, OnlyANativeFileMayReplaceItsOwnStore) {
    CTemporaryFolder folder;
    ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
    std::string const bytes = ReadWholeFile(folder / "s.nvt");
    for (char const* const name : {"out.xyz", "out.xls", "out.gbn"}) {
        ASSERT_EQ(link((folder / "s.nvt").c_str(), (folder / name).c_str()), 0);
        PlayRun const run = Play(R"({"operation": "export", "store": "{dir}/s.nvt", "name": "", "answers":
                                     [{"save": "{dir}/)" +
                                     std::string(name) + R"("}]})",
                                 {{"dir", folder.Path()}}, {.defaults = true});
        EXPECT_EQ(run.value, 0) << name;
        EXPECT_EQ(run.Events("message").size(), 1U) << name;
        EXPECT_EQ(ReadWholeFile(folder / "s.nvt"), bytes) << name;
    }
    EXPECT_EQ(Export(folder, "s.nvt").value, 1);
    CNorvaFileUtil store;
    EXPECT_NE(store.SetFileName(folder / "s.nvt", kReopenStore, nullptr), 0);
    EXPECT_EQ(store.ChannelCount, 6);
}

/// Fails the n-th system call on an output file, for every n until an export gets through.
TEST(ExportFaults, AFailedExportLeavesTheOlderFileWholeAndNothingElse) {
    for (char const* const name : {"out.xyz", "out.xls", "out.nvt", "out.gbn"}) {
        CTemporaryFolder folder;
        ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
        ASSERT_EQ(Export(folder, name).value, 1);
        std::string const whole = ReadWholeFile(folder / name);
        int calls = 1;
        for (int n = 0; calls > n; ++n) {
            ASSERT_LT(n, 200);
            SCOPED_TRACE(std::string(name) + ", call " + std::to_string(n));
            WriteWholeFile(folder / name, "older");
            calls = 0;
            SetFaultHook([&](FaultPoint, std::string const& path) {
                bool const output = path.find("/out.") != std::string::npos || path.find("/.out.") != std::string::npos;
                return output && calls++ == n ? ENOSPC : 0;
            });
            PlayRun const run = Export(folder, name);
            SetFaultHook({});
            EXPECT_EQ(folder.Count(), 2U);
            EXPECT_EQ(ReadWholeFile(folder / name), run.value == 1 ? whole : "older");
        }
    }
}

TEST(ExportFaults, AStoreThatCannotBeReadIsNotExportedInPart) {
    for (char const* const name : {"out.xyz", "out.xls", "out.nvt", "out.gbn"}) {
        CTemporaryFolder folder;
        ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
        WriteWholeFile(folder / name, "older");
        bool writing = false;
        SetFaultHook([&](FaultPoint point, std::string const& path) {
            writing = writing || path.find("/.out.") != std::string::npos;
            return writing && point == FaultPoint::Read && path == folder / "s.nvt" ? EIO : 0;
        });
        PlayRun const run = Export(folder, name, R"({"click": 4007}, {"click": 4011}, {"click": 1})",
                                   R"(, {"message": "Couldn't read the store : {dir}/s.nvt\nInput/output error", )"
                                   R"("answer": "ok"})");
        SetFaultHook({});
        EXPECT_EQ(run.value, 0) << name;
        EXPECT_EQ(run.failure, "") << name;
        EXPECT_EQ(ReadWholeFile(folder / name), "older") << name;
    }
}

TEST(ExportFaults, WhatStandsInTheWayIsShownAndTheExportGoesOn) {
    CTemporaryFolder folder;
    ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
    ASSERT_EQ(mkdir((folder / "out.xyz").c_str(), 0777), 0);
    PlayRun run = Export(folder, "out.xyz", R"({"click": 4007}, {"click": 4011}, {"click": 1})",
                         R"(, {"message": "Is a directory", "answer": "ok"})");
    EXPECT_EQ(run.failure, "");
    EXPECT_EQ(run.value, 0);
    ASSERT_EQ(run.Events("message").size(), 1U);
    EXPECT_EQ(run.Events("message")[0]["caption"], "Error");
    EXPECT_EQ(run.Events("message")[0]["icon"], "information");
    ASSERT_EQ(mkdir((folder / "out.nvt").c_str(), 0777), 0);
    run = Export(folder, "out.nvt", R"({"click": 4007}, {"click": 4011}, {"click": 1})",
                 R"(, {"message": "Is a directory", "answer": "ok"},
                     {"message": "New order File could not be opened ", "answer": "ok"})");
    EXPECT_EQ(run.failure, "");
    EXPECT_EQ(run.store, folder / "out.nvt");
}

}  // namespace
}  // namespace norva
