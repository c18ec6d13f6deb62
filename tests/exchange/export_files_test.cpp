#include "entry/export_types.h"
#include "exchange/export_run.h"
#include "norva/export_report.h"
#include "norva/export_to_xyz_file.h"
#include "platform/files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>

#include <sys/stat.h>
#include <unistd.h>

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

/// A line of the file: every text right-justified in 20 characters, 5 blanks behind it, CR LF.
std::string Row(std::string line, std::vector<std::string> const& texts) {
    for (std::string const& text : texts) line += std::string(20 - text.size(), ' ') + text + "     ";
    return line + "\r\n";
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
    ASSERT_TRUE(WriteStore(folder / "s.nvt", MakeStoreSample(), {{0, 0}}));
    PlayRun const run = Export(folder, "out.xyz", R"({"double": 4005, "row": 1}, {"click": 4008}, {"click": 4011},
        {"click": 4046}, {"click": 1})");
    EXPECT_EQ(run.failure, "");
    EXPECT_EQ(run.value, 1);
    ExpectGolden(run, NORVA_TEST_DATA "/xyz.jsonl", {{"dir", folder.Path()}});
    std::string const text = ReadWholeFile(folder / "out.xyz");
    std::string const head = Row("/ ", {"POINT_ID", "X_(m)", "Mag_(nT)", "Fid", "Raw_(mV)", "Station", "Counts"});
    std::string const first = Row("  ", {"1_1", "1001.25", "47995.50", "500", "-5", "S5", "5"});
    std::string const gap = Row("  ", {"2_2", "*", "*", "*", "*", "*", "*"});
    EXPECT_TRUE(text.starts_with(head + "LINE L20\r\n" + first)) << text;
    EXPECT_NE(text.find("\r\nLINE L10\r\n" + gap), std::string::npos) << text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 10);
}

TEST(XyzExport, EmptyLinesAndHiddenLinesAreNotOffered) {
    CTemporaryFolder folder;
    StoreSample sample;
    sample.lines = {{"empty", 0}, {"hidden", 1}, {"deleted", 1}, {"a good.one", 1}};
    sample.channels = {{{"A name of more than 20", "", DataType::kFloat, 0, 0, 1, 0, 2, -1, 0},
                        CPackedValues().Add(1.F).Add(2.F).Add(3.F).bytes}};
    ASSERT_TRUE(WriteStore(folder / "s.nvt", sample, {{2, 0}}));
    CNorvaFileUtil store;
    ASSERT_NE(store.SetFileName(folder / "s.nvt", kReopenStore, nullptr), 0);
    store.SetProfileFlag(1, 1);
    ASSERT_NE(store.CloseCurFile(), 0);
    PlayRun const run = Export(folder, "out.xyz", R"({"click": 4007}, {"click": 4011}, {"click": 4015}, {"click": 1})");
    EXPECT_EQ(run.Control("dialog", 0, 4005)["items"], nlohmann::json({"a good.one"}));
    EXPECT_FALSE(run.Control("dialog", 0, 4091)["enabled"].get<bool>());
    std::string const head = Row("/ ", {"LINE"});
    EXPECT_EQ(ReadWholeFile(folder / "out.xyz"),
              head.substr(0, head.size() - 2) + "A_name_of_more_than_20     \r\n" + Row("  ", {"a_good_one", "3.00"}));

    ExportReport report;
    ASSERT_EQ(GetExportReport(report), 1);
    EXPECT_EQ(report.lines, 1U);
    EXPECT_EQ(report.locations, 1U);
    EXPECT_EQ(report.hiddenLines, 1U);
    EXPECT_EQ(report.changedNames, 2U);
    // There is none after an export that was given up.
    EXPECT_EQ(Export(folder, "out.xyz", R"({"click": 2})").value, 0);
    EXPECT_EQ(GetExportReport(report), 0);
}

TEST(ExportRouting, TypesOfExtensions) {
    struct Case {
        char const* extension;
        int type;
    };
    for (Case const& one : {Case{"nvt", 0}, Case{"EET", 0}, Case{"prn", 2}, Case{"p", 2}, Case{"xyz", 1},
                            Case{"ASC", 1}, Case{"Dat", 1}, Case{"dmp", 1}, Case{"txt", 1}, Case{"xls", 3},
                            Case{"xlsx", -1}, Case{"gbn", 4}, Case{"", -1}, Case{"csv", -1}}) {
        EXPECT_EQ(static_cast<int>(ExportTypeOf(one.extension)), one.type) << one.extension;
    }
}

TEST(ExportRouting, OnlyANativeFileMayReplaceItsOwnStore) {
    CTemporaryFolder folder;
    ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
    std::string const bytes = ReadWholeFile(folder / "s.nvt");
    for (char const* const name : {"out.xyz", "out.xls", "out.gbn"}) {
        std::filesystem::create_hard_link(folder / "s.nvt", folder / name);
        PlayRun const run = Play(R"({"operation": "export", "store": "{dir}/s.nvt", "name": "", "answers":
                                     [{"save": "{dir}/)" +
                                     std::string(name) + R"("}]})",
                                 {{"dir", folder.Path()}}, {.defaults = true});
        EXPECT_EQ(run.value, 0) << name;
        EXPECT_EQ(run.Events("message").size(), 1U) << name;
        EXPECT_EQ(run.Events("dialog").size(), 0U) << name;
        EXPECT_EQ(ReadWholeFile(folder / "s.nvt"), bytes) << name;
    }
}

/// Fails the n-th call on a new file, for every n until an export gets through; also onto the store's own file.
TEST(ExportFaults, AFailedExportLeavesTheOlderFileWholeAndNothingElse) {
    for (std::string const name : {"out.xyz", "out.xls", "out.nvt", "out.gbn", "s.nvt"}) {
        CTemporaryFolder folder;
        ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
        std::string const older = ReadWholeFile(folder / "s.nvt");
        ASSERT_EQ(Export(folder, name).value, 1);
        std::string const whole = ReadWholeFile(folder / name);
        int calls = 1;
        for (int n = 0; calls > n; ++n) {
            ASSERT_LT(n, 200);
            SCOPED_TRACE(name + ", call " + std::to_string(n));
            WriteWholeFile(folder / name, older);
            calls = 0;
            SetFaultHook([&](FaultPoint point, std::string const& path) {
                bool const isNew = path.find("/." + name) != std::string::npos || point == FaultPoint::Rename;
                return isNew && calls++ == n ? ENOSPC : 0;
            });
            PlayRun const run = Play(ExportScript(name, kAll, ""), {{"dir", folder.Path()}}, {.defaults = true});
            SetFaultHook({});
            EXPECT_EQ(folder.Count(), name == "s.nvt" ? 1U : 2U);
            EXPECT_EQ(ReadWholeFile(folder / name), run.value == 1 ? whole : older);
            if (run.value == 1) continue;
            bool const isSilent = n == 0 && !name.ends_with(".nvt");  // it cannot be created
            EXPECT_EQ(run.Events("message").size(), isSilent ? 0U : 1U);
            EXPECT_TRUE(GetLastErrorText().ends_with("No space left on device")) << GetLastErrorText();
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
        PlayRun const run = Export(folder, name, kAll,
                                   R"(, {"message": "Couldn't read the store : {dir}/s.nvt\nInput/output error", )"
                                   R"("answer": "ok"})");
        SetFaultHook({});
        EXPECT_EQ(run.value, 0) << name;
        EXPECT_EQ(run.failure, "") << name;
        EXPECT_EQ(ReadWholeFile(folder / name), "older") << name;
    }
}

TEST(ExportFaults, WhatStandsInTheWayIsShownAndTheExportGoesOn) {
    struct Case {
        std::string output;
        mode_t folderMode;
        mode_t fileMode;
        std::vector<std::string> shown;
        int value;
    };
    char const* const failed = "New order File could not be opened ";
    for (Case const& one :
         {Case{"folder.xyz", 0777, 0777, {"Is a directory"}, 0},
          Case{"folder.nvt", 0777, 0777, {"Is a directory", failed}, 0}, Case{"out.xyz", 0777, 0777, {}, 1},
          Case{"out.xyz", 0555, 0777, {"Permission denied"}, 1}, Case{"out.xyz", 0777, 0555, {"Permission denied"}, 0},
          Case{"s.nvt", 0555, 0777, {"Permission denied", failed}, 0}}) {
        SCOPED_TRACE(one.output);
        CTemporaryFolder folder;
        ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
        std::string const store = ReadWholeFile(folder / "s.nvt");
        if (one.output.starts_with("folder")) std::filesystem::create_directory(folder / one.output);
        if (one.output == "out.xyz") WriteWholeFile(folder / one.output, "older");
        ASSERT_EQ(chmod((folder / one.output).c_str(), one.fileMode), 0);
        ASSERT_EQ(chmod(folder.Path().c_str(), one.folderMode), 0);
        // The superuser may write anywhere.
        uid_t const user = geteuid();
        ASSERT_EQ(user == 0 ? seteuid(65534) : 0, 0);
        PlayRun const run = Play(ExportScript(one.output, kAll, ""), {{"dir", folder.Path()}}, {.defaults = true});
        ASSERT_EQ(seteuid(user), 0);
        ASSERT_EQ(chmod(folder.Path().c_str(), 0777), 0);
        EXPECT_EQ(run.value, one.value);
        ASSERT_EQ(run.Texts("message"), one.shown);
        EXPECT_EQ(run.store, one.output.ends_with(".nvt") ? folder / one.output : "");
        for (std::size_t i = 0; i < one.shown.size(); ++i) {
            EXPECT_EQ(run.Events("message")[i]["caption"], i == 0 ? "Error" : "Save File");
        }
        EXPECT_EQ(ReadWholeFile(folder / "s.nvt"), store);
    }
}

}  // namespace
}  // namespace norva
