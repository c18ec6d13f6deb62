#include "exchange/export_run.h"
#include "norva/exchange.h"
#include "norva/export_to_excel.h"
#include "norva/export_to_xyz_file.h"
#include "norva/value_text.h"
#include "platform/files.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace norva {
namespace {

using namespace test;

constexpr char const* kOutputs[] = {"out.xyz", "out.xls", "out.gbn", "out.nvt"};

ExportRequest RequestOf(CTemporaryFolder const& folder, std::string const& output, ExportSettings settings = {}) {
    ExportRequest request;
    request.storePath = folder / "s.nvt";
    request.outputPath = folder / output;
    request.settings = std::move(settings);
    request.replace = true;
    return request;
}

Status Exported(ExportRequest const& request) {
    ExportResult result;
    return ExportStore(request, result);
}

TEST(ExportSettings, GiveTheSameBytesAsTheWindow) {
    struct Case {
        ExportSettings settings;
        char const* actions;
    };
    std::string const some = R"({"double": 4005, "row": 1}, {"double": 4005, "row": 0}, {"double": 4001, "row": 2},
        {"double": 4001, "row": 0}, )";
    std::string const labelled = some + R"({"click": 4015}, {"click": 4091}, {"click": 1})";
    std::string const plain = some + R"({"click": 1})";
    for (std::string const output : kOutputs) {
        bool const isTable = output.ends_with("xyz") || output.ends_with("xls");
        std::string const units = output.ends_with("xyz") ? labelled : some + R"({"click": 4015}, {"click": 1})";
        for (Case const& one : {Case{{}, kAll}, Case{{.lines = {{1, 0}}, .channels = {{2, 0}}}, plain.c_str()},
                                Case{{.lines = {{1, 0}}, .channels = {{2, 0}}, .labelAsChannel = true, .units = false},
                                     isTable ? units.c_str() : plain.c_str()}}) {
            SCOPED_TRACE(output + ", " + one.actions);
            CTemporaryFolder folder;
            ASSERT_TRUE(WriteStore(folder / "s.nvt", MakeStoreSample(), {{0, 1}}));
            ASSERT_EQ(Export(folder, output, one.actions).value, 1);
            std::string const shown = ReadWholeFile(folder / output);
            ExportResult result;
            Status const status = ExportStore(RequestOf(folder, output, one.settings), result);
            ASSERT_TRUE(status) << status.Text();
            EXPECT_EQ(ReadWholeFile(folder / output), shown);
            EXPECT_EQ(result.messages, std::vector<std::string>());
            EXPECT_EQ(result.settings.lines->size(), 2U);
            EXPECT_EQ(result.report.locations, 7U);
            EXPECT_EQ(result.report.deletedLocations, 1U);
        }
    }
}

TEST(ExportSettings, ThatDoNotFitTheStoreAreRefused) {
    CTemporaryFolder folder;
    StoreSample sample = MakeStoreSample();
    sample.lines = {{"L10", 4}, {"hidden", 4}};
    ASSERT_TRUE(WriteStore(folder / "s.nvt", sample, {}));
    CNorvaFileUtil store;
    ASSERT_NE(store.SetFileName(folder / "s.nvt", kReopenStore, nullptr), 0);
    store.SetProfileFlag(1, 1);
    ASSERT_NE(store.CloseCurFile(), 0);
    struct Case {
        ExportSettings settings;
        char const* reason;
    };
    for (std::string const output : kOutputs) {
        for (Case const& one :
             {Case{{.lines = {{2}}}, "there is no line 2: the store has 2, counted from 0"},
              Case{{.lines = {{-1}}}, "there is no line -1"}, Case{{.lines = {{0, 0}}}, "line 0 is chosen twice"},
              Case{{.lines = {{1}}}, "line 1 is hidden or has no locations"},
              Case{{.lines = {{}}}, "no line is chosen"}, Case{{.channels = {{0, 6}}}, "there is no channel 6"},
              Case{{.channels = {{}}}, "no channel is chosen"}}) {
            Status const status = Exported(RequestOf(folder, output, one.settings));
            EXPECT_NE(status.Reason().find(one.reason), std::string::npos) << status.Text();
            EXPECT_EQ(status.Path(), folder / output);
        }
    }
    EXPECT_EQ(folder.Count(), 1U);

    sample.lines = {{"L10", 17000}};
    sample.channels.resize(1);
    sample.channels[0].values.assign(17000 * sizeof(double), '\1');
    ASSERT_TRUE(WriteStore(folder / "s.nvt", sample, {}));
    Status const large = Exported(RequestOf(folder, "out.xls"));
    EXPECT_NE(large.Reason().find("The sheet will have 17002 rows"), std::string::npos) << large.Text();
    EXPECT_TRUE(Exported(RequestOf(folder, "out.xls", {.writeOversized = true})));
}

TEST(ExportSettings, WhatACallbackDoesWithAnotherStoreChangesNothing) {
    for (std::string const output : kOutputs) {
        SCOPED_TRACE(output);
        CTemporaryFolder folder;
        ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
        ASSERT_TRUE(WriteSampleStore(folder / "other.nvt"));
        ASSERT_TRUE(Exported(RequestOf(folder, output)));
        std::string const whole = ReadWholeFile(folder / output);
        WriteWholeFile(folder / output, "older");

        ExportRequest request = RequestOf(folder, output);
        std::string other;
        request.progress = [&other](ExchangeProgress const&) {
            CNorvaFileUtil store;
            store.SetFileName(other, kReopenStore, nullptr);
            return true;
        };
        other = folder / "other.nvt";  // opening it succeeds, and the export fails
        bool writing = false;
        SetFaultHook([&](FaultPoint point, std::string const& path) {
            writing = writing || path.find("/.out.") != std::string::npos;
            return writing && point == FaultPoint::Read && path == folder / "s.nvt" ? EIO : 0;
        });
        Status const failed = Exported(request);
        SetFaultHook({});
        EXPECT_EQ(failed.Text(), "Couldn't read the store : " + (folder / "s.nvt") + "\nInput/output error");
        EXPECT_EQ(ReadWholeFile(folder / output), "older");

        other = folder / "missing.nvt";  // opening it fails, and the export succeeds
        EXPECT_TRUE(Exported(request));
        EXPECT_EQ(ReadWholeFile(folder / output), whole);
    }
}

/// Opens another store, or fails to, whenever the progress window says something.
class CBusyToolkit : public CScriptedToolkit {
public:
    CBusyToolkit(std::vector<ScriptAnswer> answers, std::string other)
        : CScriptedToolkit(std::move(answers), true, nullptr), m_other(std::move(other)) {}
    void ProgressText(std::string_view /*text*/) override {
        CNorvaFileUtil store;
        store.SetFileName(m_other, kReopenStore, nullptr);
    }

private:
    std::string m_other;
};

TEST(ExportSettings, ExportedClassesTellTheirOwnReasonAndRunTwice) {
    CTemporaryFolder folder;
    ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
    CNorvaFileUtil store;
    ASSERT_NE(store.SetFileName(folder / "s.nvt", kReopenStore, nullptr), 0);
    ASSERT_EQ(CNorvaFileUtil().SetFileName(folder / "missing.nvt", kReopenStore, nullptr), 0);
    auto const script = [&](std::string const& output) {
        std::vector<ScriptAnswer> answers =
            ParseScript(ExportScript(output, kAll, ""), {{"dir", folder.Path()}}).answers;
        answers.erase(answers.begin());  // no save dialog
        return answers;
    };
    struct Case {
        char const* output;
        int value;
        std::string reason;
    };
    std::string const what = "Couldn't write the file : ";
    for (Case const& one :
         {Case{"out", 1, ""}, Case{"none/out", 0, what + (folder / "none/out.")}, Case{"out", 1, ""}}) {
        CExportToXYZFile text(&store, folder / one.output + ".xyz", nullptr);
        CExportToExcel sheet(&store, folder / one.output + ".xls", nullptr);
        for (int run = 0; run < 2; ++run) {
            for (bool const isText : {true, false}) {
                CBusyToolkit toolkit(script(one.output), folder / "missing.nvt");
                CToolkitScope const scope(toolkit);
                EXPECT_EQ(isText ? text.ExportToXYZFile() : sheet.Export(), one.value);
                bool const isTold = one.value != 0 || GetLastErrorText().starts_with(one.reason);
                EXPECT_TRUE(isTold) << GetLastErrorText();
            }
        }
    }
    ASSERT_TRUE(Exported(RequestOf(folder, "settings.xyz")));
    EXPECT_EQ(ReadWholeFile(folder / "out.xyz"), ReadWholeFile(folder / "settings.xyz"));
}

/// A host's own store: it corrects a channel, and fills the long value of integers alone.
class CCorrectingStore : public CNorvaFileUtil {
public:
    int GetData(int index, int profile, long location, float& single, double& number, int& integer, long& longInteger,
                std::string& text, int& dataType) override {
        int unused = 0;
        int const given =
            CNorvaFileUtil::GetData(index, profile, location, single, number, unused, longInteger, text, dataType);
        if (dataType == DataType::kShort) integer = unused;
        if (index == 1 && profile == 0 && location == 3) return 0;
        if (given != 0 && index == 1) single += 1000;
        return given;
    }
};

TEST(ExportSettings, AHostsStoreGivesTheSameValuesToEveryFormat) {
    CTemporaryFolder folder;
    ASSERT_TRUE(WriteSampleStore(folder / "s.nvt"));
    CCorrectingStore store;
    ASSERT_NE(store.SetFileName(folder / "s.nvt", kReopenStore, nullptr), 0);
    for (std::string const output : kOutputs) {
        ExportRequest request = RequestOf(folder, output, {.channels = {{1, 2}}});
        request.store = &store;
        ExportResult result;
        Status const status = ExportStore(request, result);
        ASSERT_TRUE(status) << status.Text();
        EXPECT_EQ(result.report.channels[0].notGiven, 1U) << output;
        EXPECT_EQ(result.report.channels[0].values, 7U) << output;
    }
    std::string const text = ReadWholeFile(folder / "out.xyz");
    std::string const whole = "              49000.50                        0     \r\n";
    std::string const gap = "\r\n                   300     \r\n";
    for (std::string const& row : {whole, gap}) {
        EXPECT_NE(text.find(row), std::string::npos) << text;
    }
    auto const holds = [&](char const* output, float single, std::int32_t whole) {
        std::string const bytes = ReadWholeFile(folder / output);
        return bytes.find(CPackedValues().Add(single).bytes) != std::string::npos &&
               bytes.find(CPackedValues().Add(whole).bytes) != std::string::npos;
    };
    EXPECT_TRUE(holds("out.gbn", 49000.5F, 300));
    EXPECT_TRUE(holds("out.nvt", 49000.5F, 300));
}

/// Two lines with names, and one channel of each kind, that not every file can hold.
StoreSample AwkwardSample() {
    StoreSample sample;
    sample.lines = {{"L,1", 2}, {"L\n2", 1}, {"hidden", 1}};
    sample.channels = {
        {{"Y", "m", DataType::kDouble, 0, 0, 1, DisplayFormat::kFixed, 1, -1, 0},
         CPackedValues().Add(7134550.25).Add(0.1).Add(kNoDataDouble).Add(2.0).bytes},
        {{"E,x", "", DataType::kFloat, 0, 0, 1, DisplayFormat::kExponent, 1, -1, 0},
         CPackedValues().Add(7134550.F).Add(1.5F).Add(1.F).Add(2.F).bytes},
        {{"S", "", DataType::kShort, 0, 0, 1, DisplayFormat::kFixed, 0, -1, 0},
         CPackedValues().Add<std::int16_t>(-32768).Add<std::int16_t>(5).Add(kNoDataShort).Add<std::int16_t>(1).bytes},
        {{"T", "", DataType::kText, 1, 0, 300, DisplayFormat::kFixed, 0, -1, 0},
         CPackedValues().Text(std::string(300, 'x'), 300).Text("a b", 300).Text("", 300).Text("n\nl", 300).bytes},
        {{"A", "", DataType::kLong, 1, 0, 3, DisplayFormat::kFixed, 0, -1, 0},
         CPackedValues().Add(1).Add(2).Add(3).Add(4).Add(5).Add(6).Add(7).Add(8).Add(9).Add(1).Add(1).Add(1).bytes}};
    return sample;
}

std::string Told(ExportReport const& report) {
    std::string told = std::to_string(report.LossCount()) + ", hidden " + std::to_string(report.hiddenLines) +
                       ", deleted " + std::to_string(report.deletedLocations) + ", names " +
                       std::to_string(report.changedNames);
    for (ExportReportChannel const& channel : report.channels) {
        for (ExportKind const* kind = kExportKinds; kind->name != nullptr; ++kind) {
            if (channel.*kind->count == 0) continue;
            told += ", " + channel.name + " " + kind->name + " " + std::to_string(channel.*kind->count);
        }
    }
    return told;
}

void WriteAwkwardStore(std::string const& path) {
    ASSERT_TRUE(WriteStore(path, AwkwardSample(), {{0, 1}}));
    CNorvaFileUtil store;
    ASSERT_NE(store.SetFileName(path, kReopenStore, nullptr), 0);
    store.SetProfileFlag(2, 1);
    ASSERT_NE(store.CloseCurFile(), 0);
}

TEST(ExportSettings, WhatAFileCannotHoldIsCountedAndTold) {
    struct Case {
        char const* output;
        bool fullDigits;
        char const* told;
    };
    for (Case const& one :
         {Case{"out.xyz", false,
               "7, hidden 1, deleted 1, names 1, Y fewerDigits 1, E,x exponents 1, T splitTexts 1, A laterElements 4"},
          Case{"out.xyz", true, "5, hidden 1, deleted 1, names 1, T splitTexts 1, A laterElements 4"},
          Case{"out.xls", false, "5, hidden 1, deleted 1, names 0, T cutTexts 1, A laterElements 4"},
          Case{"out.gbn", false, "4, hidden 1, deleted 1, names 2, A laterElements 4"},
          Case{"out.nvt", false, "5, hidden 1, deleted 1, names 2, S replaced 1, A laterElements 4"}}) {
        CTemporaryFolder folder;
        WriteAwkwardStore(folder / "s.nvt");
        ExportResult result;
        ASSERT_TRUE(ExportStore(RequestOf(folder, one.output, {.fullDigits = one.fullDigits}), result));
        EXPECT_EQ(Told(result.report), one.told) << one.output;
        std::string const written = ReadWholeFile(folder / one.output);
        if (std::string(one.output).ends_with("xyz")) {
            EXPECT_NE(written.find("LINE L_2\r\n"), std::string::npos) << written;
            EXPECT_EQ(written.find("7134550.25") != std::string::npos, one.fullDigits);
        }
        if (std::string(one.output).ends_with("nvt")) {
            CNorvaFileUtil store;
            EXPECT_EQ(store.SetFileName(folder / one.output, kReopenStore, nullptr), 1)
                << "the names must not break it";
        }
    }
}

TEST(ExportSettings, AStoreOntoItselfKeepsAllThatItHolds) {
    CTemporaryFolder folder;
    WriteAwkwardStore(folder / "s.nvt");
    ExportResult result;
    Status const status =
        ExportStore(RequestOf(folder, "s.nvt", {.lines = {{1, 0}}, .channels = {{4, 1, 0, 2, 3}}}), result);
    ASSERT_TRUE(status) << status.Text();
    EXPECT_EQ(Told(result.report), "0, hidden 0, deleted 0, names 0");
    CNorvaFileUtil store;
    ASSERT_NE(store.SetFileName(folder / "s.nvt", kReopenStore, nullptr), 0);
    EXPECT_EQ(store.VerifyData(), 1);
    EXPECT_EQ(store.IsLocMarkedToDelete(1, 1), 1);
    std::string name;
    long locations = 0;
    int flag = 0;
    store.GetProfileInfo(2, name, locations, flag);
    EXPECT_EQ(name + std::to_string(flag), "hidden1");
    StoreSample const before = AwkwardSample();
    StoreSample const after = ReadSample(store);
    EXPECT_EQ(after.lines[1].name, "L,1");
    EXPECT_EQ(after.channels[1].description.name, "E,x");
    EXPECT_EQ(after.channels[4].values.substr(300),
              before.channels[3].values.substr(0, 600) + before.channels[3].values.substr(900));
    std::vector<double> elements;
    ASSERT_EQ(store.GetArrayData(0, 1, 1, elements), 1);
    EXPECT_EQ(elements, (std::vector<double>{4, 5, 6}));
}

}  // namespace
}  // namespace norva
