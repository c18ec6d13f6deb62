#include "entry/browse_for_file.h"
#include "entry/converted_import.h"
#include "entry/exp_imp_context.h"
#include "norva/converters.h"
#include "norva/import_export.h"
#include "norva/scripted_toolkit.h"
#include "platform/text.h"
#include "support/play.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <new>

namespace norva::test {

namespace {

/// A store whose call of one name fails, or throws, and which notes the calls that come after its opening.
class CFailingStore : public CNorvaFileUtil {
public:
    std::string failing;
    bool throws = false;
    std::string calls;

    int SetFileName(std::string const& path, EETFileMode mode, CWindow* owner) override {
        return Passes("SetFileName") ? CNorvaFileUtil::SetFileName(path, mode, owner) : 0;
    }
    int CloseCurFile() override { return Passes("CloseCurFile") ? CNorvaFileUtil::CloseCurFile() : 0; }
    int AddProfileToStructure(std::string const& name, long count) override {
        return Passes("AddProfileToStructure") ? CNorvaFileUtil::AddProfileToStructure(name, count) : 0;
    }
    int SaveProfileStructure() override {
        return Passes("SaveProfileStructure") ? CNorvaFileUtil::SaveProfileStructure() : 0;
    }
    int SaveChannelStructure() override {
        return Passes("SaveChannelStructure") ? CNorvaFileUtil::SaveChannelStructure() : 0;
    }
    int StartWriteData() override { return Passes("StartWriteData") ? CNorvaFileUtil::StartWriteData() : 0; }
    int WriteHuge(void const* buffer, std::size_t count) override {
        return Passes("WriteHuge") ? CNorvaFileUtil::WriteHuge(buffer, count) : 0;
    }
    int EndWriteData() override { return Passes("EndWriteData") ? CNorvaFileUtil::EndWriteData() : 0; }

private:
    bool Passes(char const* call) {
        calls += std::string(calls.empty() ? "" : " ") + call;
        if (failing != call) return true;
        if (throws) throw std::bad_alloc();
        return false;
    }
};

/// Answers of an import by default buttons, with these file names; notes the messages.
class CImportToolkit : public CScriptedToolkit {
public:
    CImportToolkit(std::string open, std::string save)
        : CScriptedToolkit(
              {File(ScriptAnswer::Kind::Open, std::move(open)), File(ScriptAnswer::Kind::Save, std::move(save))}, true,
              nullptr) {
        SetToolkit(this);
    }
    ~CImportToolkit() override { SetToolkit(nullptr); }

    MessageAnswer ShowMessage(MessageRequest const& request) override {
        messages += request.text;
        return MessageAnswer::Ok;
    }
    std::string messages;

private:
    static ScriptAnswer File(ScriptAnswer::Kind kind, std::string path) {
        ScriptAnswer answer;
        answer.kind = kind;
        answer.path = std::move(path);
        return answer;
    }
};

}  // namespace

TEST(ImportRouting, FormatListFollowsTheLevel) {
    using Labels = std::vector<std::string>;
    Labels const basic = {"ASCII XYZ",
                          "ASCII CSV",
                          "ASCII GEM",
                          "Binary XYZ",
                          "Geosoft GBN",
                          "Scintrex CG3",
                          "Scintrex CG5",
                          "Scintrex IPR_12",
                          "SeaSPY(Marine Magnetics)",
                          "GPS Exchange Format(GPX)"};
    Labels full = basic;
    full.insert(full.end() - 1, "Tarko");
    Labels gemFirst = full;
    std::rotate(gemFirst.begin(), gemFirst.begin() + 2, gemFirst.begin() + 3);
    struct {
        int level;
        Labels labels;
    } const cases[] = {{-1, {}}, {0, basic}, {1, full}, {4, full}, {5, gemFirst}, {6, full}};
    for (auto const& test : cases) {
        // OK does nothing with nothing selected, so only Cancel ends an empty list.
        PlayRun const run = Play(R"({"operation": "import", "level": )" + std::to_string(test.level) +
                                 R"(, "answers": [{"dialog": 4063, "do": [)" +
                                 (test.level < 0 ? R"({"click": 1}, )" : "") + R"({"click": 2}]}]})");
        EXPECT_EQ(run.failure, "");
        EXPECT_EQ(run.value, 0);
        nlohmann::json const list = run.Control("dialog", 0, 5000);
        EXPECT_EQ(list.at("items").get<Labels>(), test.labels) << test.level;
        EXPECT_EQ(list.at("selected").size(), test.labels.empty() ? 0U : 1U) << test.level;
    }
}

TEST(ImportRouting, AsksForTheFilesOfTheFormat) {
    struct {
        int row;  ///< of level 1
        char const* filter;
    } const cases[] = {
        {0, "ASCII Files (*.asc; *.xyz; *.dat; *.txt)|*.asc;*.xyz;*.dat;*.txt|All Files (*.*)|*.*||"},
        {1, "CSV files (*.csv)|*.csv|All Files (*.*)|*.*||"},
        {2, "ASCII Files (*.txt; *stn)|*.txt; *.stn|All Files (*.*)|*.*||"},
        {6, "Scintrex CG5 dump (*.dmp; *.raw)|*.dmp;*.raw||"},
        {8, "SeaSPY Files (*.mag)|*.mag|All Files (*.*)|*.*||"},
    };
    for (auto const& test : cases) {
        PlayRun const run = Play(R"({"operation": "import", "level": 1, "store": "before.nvt", "answers": [
            {"dialog": 4063, "do": [{"double": "Formats", "row": )" +
                                 std::to_string(test.row) + R"(}]},
            {"open": "/data/a.b/line7.dmp"}, {"save": null}]})");
        EXPECT_EQ(run.failure, "");
        EXPECT_EQ(run.value, 0);
        nlohmann::json const open = run.Events("open").at(0);
        EXPECT_EQ(open.at("title"), "Import file");
        EXPECT_EQ(open.at("filter"), test.filter);
        EXPECT_EQ(open.at("flags"), 0x1004);
        nlohmann::json const save = run.Events("save").at(0);
        EXPECT_EQ(save.at("filter"), "NVT files (*.nvt)|*.nvt|");
        EXPECT_EQ(save.at("flags"), 6);
        EXPECT_EQ(save.at("initial"), "/data/a.b/line7.nvt");
    }
}

TEST(ImportRouting, ProposesAStoreName) {
    struct {
        char const* input;
        int code;
        char const* expected;
    } const cases[] = {
        {"/d/line7.dmp", 6, "/d/line7.nvt"}, {"C:\\d\\data.p01", 2, "C:\\d\\datap01.nvt"},
        {"/d/data.p01", 1, "/d/data.nvt"},   {"/d/a.b.xyz", 1, "/d/a.b.nvt"},
        {"/d/survey", 1, "/d/survey.nvt"},   {"/d/survey", 2, "/d/survey.nvt"},
        {"/d/survey.", 2, "/d/survey.nvt"},
    };
    for (auto const& [input, code, expected] : cases) EXPECT_EQ(ProposedStorePath(input, code), expected) << input;
}

TEST(ImportRouting, ExtensionsAreAddedToNamesWithoutADot) {
    struct {
        FileDialogMode mode;
        char const* typed;
        char const* picked;
        char const* expected;
        int code;
    } const cases[] = {
        {FileDialogMode::ImportStore, "/out/line7", "", "/out/line7.nvt", 99},
        {FileDialogMode::ImportStore, "/out.old/line7", "", "/out.old/line7", 99},
        {FileDialogMode::ExportOutput, "/out/line7", "gbn", "/out/line7.gbn", 4},
        {FileDialogMode::ExportOutput, "/out/line7.TXT", "gbn", "/out/line7.TXT", 1},
        {FileDialogMode::ExportOutput, "/out/line7", "", "/out/line7.nvt", 0},
    };
    for (auto const& test : cases) {
        ScriptAnswer answer;
        answer.kind = ScriptAnswer::Kind::Save;
        answer.path = test.typed;
        answer.extension = test.picked;
        CScriptedToolkit toolkit({answer}, false, nullptr);
        SetToolkit(&toolkit);
        std::string path = "/proposed";
        int code = 99;
        EXPECT_EQ(BrowseForFile(path, kSaveDialogFlags, test.mode, code), 1) << test.typed;
        SetToolkit(nullptr);
        EXPECT_EQ(path, test.expected);
        EXPECT_EQ(code, test.code) << test.typed;
    }
}

TEST(ImportRouting, RefusalsOfTheStoreAreSilentAndCloseIt) {
    std::string const described = "SetFileName AddProfileToStructure ";
    std::string const started = described + "SaveProfileStructure SaveChannelStructure StartWriteData ";
    struct {
        char const* failing;
        bool throws;
        std::string calls;
        char const* message;
    } const cases[] = {
        {"", false, started + "WriteHuge WriteHuge EndWriteData CloseCurFile", ""},
        {"SetFileName", false, "SetFileName CloseCurFile", ""},
        {"SaveProfileStructure", false, described + "SaveProfileStructure CloseCurFile", ""},
        {"SaveChannelStructure", false, described + "SaveProfileStructure SaveChannelStructure CloseCurFile", ""},
        {"StartWriteData", false, started + "CloseCurFile", ""},
        {"EndWriteData", false, started + "WriteHuge WriteHuge EndWriteData CloseCurFile", ""},
        {"AddProfileToStructure", true, described + "CloseCurFile",
         "Couldn't import the file : {in}\nThere is not enough memory."},
        {"WriteHuge", false, started + "WriteHuge CloseCurFile", "Couldn't write the file : {out}"},
    };
    for (auto const& test : cases) {
        CTemporaryFolder const folder;
        std::string const input = folder / "in.xyz";
        WriteWholeFile(input, "LINE 1\n1 2\n");
        CImportToolkit toolkit(input, folder / "out.nvt");
        CFailingStore store;
        store.failing = test.failing;
        store.throws = test.throws;
        std::string path;
        EXPECT_EQ(Import_Data_File(&store, path, nullptr, 0), store.failing.empty() ? 1 : 0) << test.failing;
        EXPECT_EQ(path, folder / "out.nvt");
        EXPECT_EQ(store.calls, test.calls) << test.failing;
        std::string message = ReplaceAll(test.message, "{in}", input);
        EXPECT_EQ(toolkit.messages, ReplaceAll(message, "{out}", path)) << test.failing;
        EXPECT_EQ(std::filesystem::exists(folder / "out.nvt"), store.failing.empty()) << test.failing;
    }
}

TEST(ImportRouting, TemporaryTextIsDeletedAfterItsImport) {
    struct {
        char const* text;  ///< null: the conversion fails
        int expected;
        bool remains;
    } const cases[] = {{"LINE 1\n1 2\n", 1, false}, {"", 0, false}, {nullptr, 0, true}};
    for (auto const& test : cases) {
        CTemporaryFolder const folder;
        CImportToolkit toolkit("", "");
        CNorvaFileUtil store;
        ImportJob job;
        job.store = &store;
        job.inputPath = folder / "in.csv";
        job.storePath = folder / "out.nvt";
        job.gravityMeterMode = 1;
        std::string temporary;
        int const result = RunConvertedImport(job, "T_temp.xyz", [&](std::string const& from, std::string const& to) {
            EXPECT_EQ(from, job.inputPath);
            temporary = to;
            WriteWholeFile(to, test.text == nullptr ? "half" : test.text);
            return test.text == nullptr ? 0 : 1;
        });
        EXPECT_EQ(result, test.expected);
        std::string directory;
        ASSERT_EQ(CUAC::GetUserNorvaToolTempDirectory(directory), 1);
        EXPECT_EQ(temporary, directory + "T_temp.xyz");
        EXPECT_EQ(std::filesystem::exists(temporary), test.remains);
        std::filesystem::remove(temporary);
        EXPECT_EQ(folder.Count(), static_cast<std::size_t>(test.expected));
    }
}

TEST(ExportRouting, NewStoreNameFollowsTheDialogAndTheType) {
    struct {
        char const* save;
        char const* expected;  ///< of the new store name
    } const cases[] = {{"null", "before"}, {"\"{dir}/out.prn\"", ""}, {"\"{dir}/out.zip\"", ""}};
    for (auto const& test : cases) {
        CTemporaryFolder const folder;
        ASSERT_TRUE(WriteSampleStore(folder / "in.nvt"));
        CNorvaFileUtil store;
        ASSERT_EQ(store.SetFileName(folder / "in.nvt", kReopenStore, nullptr), 1);
        ScriptAnswer answer;
        answer.kind = ScriptAnswer::Kind::Save;
        if (std::string path = test.save; path != "null") {
            answer.path = folder / path.substr(7, path.size() - 8);
        }
        CScriptedToolkit toolkit({answer}, false, nullptr);
        SetToolkit(&toolkit);
        std::string name = "before";
        EXPECT_EQ(Export_Data_File(&store, folder / "in.xyz", name, nullptr), 0) << test.save;
        SetToolkit(nullptr);
        EXPECT_EQ(toolkit.Failure(), "");
        EXPECT_EQ(name, test.expected) << test.save;
        EXPECT_EQ(folder.Count(), 1U) << test.save;
    }
}

TEST(ExportRouting, TheOpenStoreIsNotOverwritten) {
    CTemporaryFolder const folder;
    ASSERT_TRUE(WriteSampleStore(folder / "in.nvt"));
    std::filesystem::create_symlink(folder / "in.nvt", folder / "same.xyz");
    std::string const before = ReadWholeFile(folder / "in.nvt");
    PlayRun const run = Play(R"({"operation": "export", "store": "{dir}/in.nvt", "name": "a", "answers": [
        {"save": "{dir}/same.xyz"},
        {"message": "The open store cannot be exported onto itself : {dir}/same.xyz", "answer": "ok"}]})",
                             {{"dir", folder.Path()}});
    EXPECT_EQ(run.failure, "");
    EXPECT_EQ(run.value, 0);
    EXPECT_EQ(ReadWholeFile(folder / "in.nvt"), before);
}

}  // namespace norva::test
