#include "common/script_json.h"
#include "entry/browse_for_file.h"
#include "entry/exp_imp_context.h"
#include "formats/column_text/converted_import.h"
#include "norva/converters.h"
#include "norva/exchange.h"
#include "norva/import_export.h"
#include "norva/scripted_toolkit.h"
#include "support/play.h"
#include "support/store_samples.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <new>
#include <thread>

namespace norva::test {

namespace {

/// A store whose call of one name is refused, or throws, and which notes its calls.
class CFailingStore : public CNorvaFileUtil {
public:
    std::string failing;
    bool throws = false;
    std::string calls;

    int SetFileName(std::string const& path, EETFileMode mode, CWindow* owner) override {
        return Passes("SetFileName") && CNorvaFileUtil::SetFileName(path, mode, owner);
    }
    int CloseCurFile() override { return Passes("CloseCurFile") && CNorvaFileUtil::CloseCurFile(); }
    int SaveProfileStructure() override { return Passes("Profiles") && CNorvaFileUtil::SaveProfileStructure(); }
    int SaveChannelStructure() override { return Passes("Channels") && CNorvaFileUtil::SaveChannelStructure(); }
    int StartWriteData() override { return Passes("Start") && CNorvaFileUtil::StartWriteData(); }
    int WriteHuge(void const* data, std::size_t count) override {
        return Passes("WriteHuge") && CNorvaFileUtil::WriteHuge(data, count);
    }
    int EndWriteData() override { return Passes("End") && CNorvaFileUtil::EndWriteData(); }

private:
    bool Passes(char const* call) {
        calls += std::string(calls.empty() ? "" : " ") + call;
        if (failing == call && throws) throw std::bad_alloc();
        return failing != call;
    }
};

ScriptAnswer FileAnswer(ScriptAnswer::Kind kind, std::string path, std::string extension = "") {
    ScriptAnswer answer;
    answer.kind = kind;
    answer.path = std::move(path);
    answer.extension = std::move(extension);
    return answer;
}

/// Picks a row of the format list.
ScriptAnswer FormatAnswer(int row) {
    ScriptAnswer answer;
    answer.dialog = 4063;
    ScriptAction pick;
    pick.kind = ScriptAction::Kind::DoubleClick;
    pick.control = "Formats";
    pick.row = row;
    answer.actions = {pick};
    return answer;
}

}  // namespace

TEST(ImportRouting, FormatListFollowsTheLevel) {
    std::string const first = R"("ASCII XYZ","ASCII CSV",)";
    std::string const gem = R"("ASCII GEM",)";
    std::string const middle = R"-("Binary XYZ","Geosoft GBN","Scintrex CG3","Scintrex CG5","Scintrex IPR_12",)-"
                               R"-("SeaSPY(Marine Magnetics)",)-";
    std::string const last = R"-("GPS Exchange Format(GPX)"])-";
    std::string const full = "[" + first + gem + middle + R"("Tarko",)" + last;
    std::pair<int, std::string> const cases[] = {{-1, "[]"}, {0, "[" + first + gem + middle + last},
                                                 {1, full},  {4, full},
                                                 {6, full},  {5, "[" + gem + first + middle + R"("Tarko",)" + last}};
    for (auto const& [level, labels] : cases) {
        // OK does nothing with nothing selected, so only Cancel ends an empty list.
        PlayRun const run = Play(R"({"operation": "import", "level": )" + std::to_string(level) +
                                 R"(, "answers": [{"dialog": 4063, "do": [)" + (level < 0 ? R"({"click": 1}, )" : "") +
                                 R"({"click": 2}]}]})");
        EXPECT_EQ(run.failure, "");
        EXPECT_EQ(run.value, 0);
        EXPECT_EQ(run.Control("dialog", 0, 5000).at("items").dump(), labels) << level;
        EXPECT_EQ(run.Control("dialog", 0, 5000).at("selected").dump(), level < 0 ? "[]" : "[0]") << level;
    }
}

TEST(ImportRouting, DoubleClickChoosesAndTheFilesAreAskedFor) {
    PlayRun const run = Play(R"({"operation": "import", "store": "before.nvt", "answers": [
        {"dialog": 4063, "do": [{"double": "Formats", "row": 2}]}, {"open": "/data/a.b/line7.stn"}, {"save": null}]})");
    EXPECT_EQ(run.failure, "");
    EXPECT_EQ(run.value, 0);
    EXPECT_EQ(run.Events("open").at(0).dump(),
              R"({"event":"open","filter":"ASCII Files (*.txt; *stn)|*.txt; *.stn|All Files (*.*)|*.*||",)"
              R"("flags":4100,"initial":"","path":"/data/a.b/line7.stn","title":"Import file"})");
    nlohmann::json const save = run.Events("save").at(0);
    EXPECT_EQ(save.at("filter"), "NVT files (*.nvt)|*.nvt|");
    EXPECT_EQ(save.at("flags"), 6);
    EXPECT_EQ(save.at("initial"), "/data/a.b/line7.nvt");
}

TEST(ImportRouting, ProposesAStoreName) {
    std::tuple<char const*, int, char const*> const cases[] = {
        {"/d/line7.dmp", 6, "/d/line7.nvt"}, {"C:\\d\\data.p01", 2, "C:\\d\\datap01.nvt"},
        {"/d/data.p01", 1, "/d/data.nvt"},   {"/d/a.b.xyz", 1, "/d/a.b.nvt"},
        {"/d/survey", 1, "/d/survey.nvt"},   {"/d/survey", 2, "/d/survey.nvt"},
    };
    for (auto const& [input, code, expected] : cases) {
        EXPECT_EQ(ProposedStorePath(input, static_cast<ImportFormatCode>(code)), expected) << input;
    }
}

TEST(FileDialogs, ExtensionsAreAddedToNamesWithoutADot) {
    std::tuple<FileDialogMode, char const*, char const*, char const*, int> const cases[] = {
        {FileDialogMode::ImportStore, "/out/line7", "", "/out/line7.nvt", 99},
        {FileDialogMode::ImportStore, "/out.old/line7", "", "/out.old/line7", 99},
        {FileDialogMode::ExportOutput, "/out/line7", "gbn", "/out/line7.gbn", 4},
        {FileDialogMode::ExportOutput, "/out/line7.TXT", "gbn", "/out/line7.TXT", 1},
        {FileDialogMode::ExportOutput, "/out/line7", "", "/out/line7.nvt", 0},
    };
    for (auto const& [mode, typed, picked, expected, expectedCode] : cases) {
        CScriptedToolkit toolkit({FileAnswer(ScriptAnswer::Kind::Save, typed, picked)}, false, nullptr);
        SetToolkit(&toolkit);
        std::string path = "/proposed";
        int code = 99;
        EXPECT_EQ(BrowseForFile(path, kSaveDialogFlags, mode, code), 1) << typed;
        SetToolkit(nullptr);
        EXPECT_EQ(path, expected);
        EXPECT_EQ(code, expectedCode) << typed;
    }
}

/// Keeps the message boxes that it answers by default.
class CMessagesToolkit : public CScriptedToolkit {
public:
    explicit CMessagesToolkit(std::vector<ScriptAnswer> answers)
        : CScriptedToolkit(std::move(answers), true, nullptr) {}
    MessageAnswer ShowMessage(MessageRequest const& request) override {
        shown += request.text;
        return CScriptedToolkit::ShowMessage(request);
    }
    std::string shown;
};

TEST(ImportRouting, RefusalsOfTheStoreAreSilentAndExceptionsAreShown) {
    std::string const started = "SetFileName Profiles Channels Start ";
    std::tuple<char const*, bool, std::string, std::string> const cases[] = {
        {"", false, started + "WriteHuge WriteHuge End CloseCurFile", ""},
        {"SetFileName", false, "SetFileName CloseCurFile", ""},
        {"Profiles", false, "SetFileName Profiles CloseCurFile", ""},
        {"Channels", false, "SetFileName Profiles Channels CloseCurFile", ""},
        {"Start", false, started + "CloseCurFile", ""},
        {"WriteHuge", false, started + "WriteHuge CloseCurFile", "Couldn't write the file : out"},
        {"End", false, started + "WriteHuge WriteHuge End CloseCurFile", ""},
        {"Profiles", true, "SetFileName Profiles CloseCurFile",
         "Couldn't import the file : in.xyz\nThere is not enough memory."},
    };
    for (auto const& [failing, throws, calls, message] : cases) {
        CTemporaryFolder const folder;
        WriteWholeFile(folder / "in.xyz", "LINE 1\n1 2\n");
        CMessagesToolkit toolkit({FileAnswer(ScriptAnswer::Kind::Open, folder / "in.xyz"),
                                  FileAnswer(ScriptAnswer::Kind::Save, folder / "out.nvt")});
        SetToolkit(&toolkit);
        CFailingStore store;
        store.failing = failing;
        store.throws = throws;
        std::string path;
        EXPECT_EQ(Import_Data_File(&store, path, nullptr, 0), store.failing.empty() ? 1 : 0) << failing;
        SetToolkit(nullptr);
        EXPECT_EQ(path, folder / "out.nvt");
        EXPECT_EQ(store.calls, calls) << failing;
        std::string shown = toolkit.shown;
        EXPECT_EQ(GetLastErrorText().empty(), store.failing.empty()) << failing << ": a silent failure has a reason";
        if (std::size_t const at = shown.find(folder / ""); at != std::string::npos) {
            shown.erase(at, folder.Path().size() + 1);
        }
        EXPECT_EQ(shown.substr(0, message.size()), message) << failing;
        EXPECT_EQ(shown.empty(), message.empty()) << failing;
        EXPECT_EQ(std::filesystem::exists(folder / "out.nvt"), store.failing.empty()) << failing;
    }
}

TEST(ImportRouting, TheStoreNeverTakesThePlaceOfItsSource) {
    CTemporaryFolder const folder;
    std::string const input = folder / "in.xyz";
    std::string const text = "L1\n1 2\n3 4\n";
    WriteWholeFile(input, text);
    std::filesystem::create_hard_link(input, folder / "hard.nvt");
    std::filesystem::create_symlink("in.xyz", folder / "soft.nvt");
    for (char const* const store : {"in.xyz", "hard.nvt", "soft.nvt", "./in.xyz"}) {
        PlayRun const run = Play(R"({"operation": "import", "store": "", "answers": [
            {"dialog": 4063, "do": [{"select": "Formats", "row": 0}, {"click": 1}]},
            {"open": "{dir}/in.xyz"}, {"save": "{dir}/{store}"}]})",
                                 {{"dir", folder.Path()}, {"store", store}}, {.defaults = true});
        EXPECT_EQ(run.value, 0) << store;
        std::string const said = "The store cannot take the place of the file that is imported : " + input;
        EXPECT_EQ(run.Texts("message"), std::vector<std::string>{said}) << store;
        ImportRequest request;
        request.inputPath = input;
        request.storePath = folder / store;
        request.replace = true;
        ImportResult result;
        EXPECT_EQ(ImportFile(request, result).Text(), said) << store;
        EXPECT_EQ(ReadWholeFile(input), text) << store;
        EXPECT_EQ(folder.Count(), 3U) << store;
    }
}

TEST(ImportRouting, TemporaryTextIsDeletedAfterItsImport) {
    // The text that the conversion writes (none: it fails), the result, whether the text remains.
    std::tuple<char const*, int, bool> const cases[] = {
        {"LINE 1\n1 2\n", 1, false}, {"", 0, false}, {nullptr, 0, true}};
    for (auto const& [text, expected, remains] : cases) {
        CTemporaryFolder const folder;
        CScriptedToolkit toolkit({}, true, nullptr);
        SetToolkit(&toolkit);
        CNorvaFileUtil store;
        ImportJob job{&store, folder / "in.csv", folder / "out.nvt", nullptr, 1};
        std::string temporary, directory;
        auto const convert = [&, written = text](std::string const& from, std::string const& to, ConvertedSource&) {
            EXPECT_EQ(from, job.inputPath);
            WriteWholeFile(temporary = to, written == nullptr ? "half" : written);
            return written == nullptr ? Status::Failure("half of it").Silent() : Status();
        };
        EXPECT_EQ(RunConvertedImport(job, "T_temp.xyz", convert, convert).IsGood(), expected != 0);
        SetToolkit(nullptr);
        ASSERT_EQ(CUAC::GetUserNorvaToolTempDirectory(directory), 1);
        EXPECT_EQ(temporary, directory + "T_temp.xyz");
        EXPECT_EQ(std::filesystem::exists(temporary), remains);
        std::filesystem::remove(temporary);
        EXPECT_EQ(folder.Count(), static_cast<std::size_t>(expected));
    }
}

TEST(ImportRouting, EndsInSilenceWithoutATemporaryFolder) {
    std::pair<int, char const*> const cases[] = {{0, "survey.xyz"}, {7, "ipr12.dmp"}, {9, "tracks.gpx"}};
    CTemporaryFolder const folder;
    for (auto const& [row, sample] : cases) {
        // A thread asks for its folder once; this one has none yet.
        std::thread([&, row = row, sample = sample] {
            setenv("TMPDIR", "/none/such", 1);
            CScriptedToolkit toolkit(
                {FormatAnswer(row), FileAnswer(ScriptAnswer::Kind::Open, NORVA_SAMPLES "/" + std::string(sample)),
                 FileAnswer(ScriptAnswer::Kind::Save, folder / "out.nvt")},
                true, nullptr);
            CToolkitScope const scope(toolkit);
            CNorvaFileUtil store;
            std::string path;
            EXPECT_EQ(Import_Data_File(&store, path, nullptr, 0), 0) << sample;
            EXPECT_EQ(toolkit.Failure(), "") << sample;
            EXPECT_TRUE(GetLastErrorText().starts_with("Couldn't create the temporary folder : /none/such/")) << sample;
            unsetenv("TMPDIR");
        }).join();
        EXPECT_EQ(folder.Count(), 0U) << sample;
    }
}

TEST(Dialogs, HelpButtonsOpenTheirTopics) {
    std::string const import = R"({"operation": "import", "answers": [{"dialog": 4063, "do": [{"double": "Formats",
        "row": )";
    std::string const files = R"(}]}, {"open": "{samples}/survey.)";
    std::string const save = R"("}, {"save": "{dir}/out.nvt"}, {"dialog": )";
    std::string const help = R"(, "do": [{"click": "Help"}, {"click": 2}]}]})";
    std::pair<std::string, char const*> const cases[] = {
        {import + "0" + files + "xyz" + save + "4003" + help, "ascii_import"},
        {import + "3" + files + "gbn" + save + "4004" + help, "binary_import"},
        {R"({"operation": "export", "store": "{dir}/in.nvt", "answers": [{"save": "{dir}/out.xyz"}, {"dialog": 4000)" +
             help,
         "save_other_formats"}};
    CTemporaryFolder const folder;
    ASSERT_TRUE(WriteSampleStore(folder / "in.nvt"));
    for (auto const& [script, page] : cases) {
        for (char const* const file : {"/help/NorvaTool.chm", "/help/other.chm"}) {
            PlayRun const run = Play(script, {{"dir", folder.Path()}, {"samples", NORVA_SAMPLES}}, {.helpFile = file});
            EXPECT_EQ(run.failure, "") << page;
            bool const opens = std::string_view(file).find("Tool") != std::string_view::npos;
            ASSERT_EQ(run.Events("help").size(), opens ? 1U : 0U) << page << file;
            if (opens) {
                EXPECT_EQ(run.Events("help")[0]["topic"], std::string(file) + "::/html/" + page + ".htm");
            }
        }
    }
}

TEST(ExportRouting, TheNewStoreNameIsEmptiedOnceAFileIsConfirmed) {
    CTemporaryFolder const folder;
    ASSERT_TRUE(WriteSampleStore(folder / "in.nvt"));
    std::filesystem::create_directory(folder / "folder.nvt");
    char const* const all = R"({"dialog": 4000, "do": [{"click": 4007}, {"click": 4011}, {"click": 1}]})";
    struct Case {
        std::string save;
        std::string dialog;
        int value;
        std::string name;
    };
    for (Case const& one :
         {Case{"null", "", 0, "before"}, Case{R"("{dir}/out.xyz")", all, 1, ""},
          Case{R"("{dir}/out.xyz")", R"({"dialog": 4000, "do": [{"click": 2}]})", 0, ""},
          Case{R"("{dir}/out.prn")", "", 0, ""}, Case{R"("{dir}/out.nvt")", all, 1, folder / "out.nvt"},
          Case{R"("{dir}/folder.nvt")", all, 0, folder / "folder.nvt"}}) {
        std::string const dialog = one.dialog.empty() ? "" : ", " + one.dialog;
        Script const script = ParseScript(R"({"operation": "export", "store": "", "name": "", "answers": [{"save": )" +
                                              one.save + "}" + dialog + "]}",
                                          {{"dir", folder.Path()}});
        CScriptedToolkit toolkit(script.answers, true, nullptr);
        CToolkitScope const scope(toolkit);
        CNorvaFileUtil store;
        ASSERT_NE(store.SetFileName(folder / "in.nvt", kReopenStore, nullptr), 0);
        std::string name = "before";
        EXPECT_EQ(Export_Data_File(&store, "", name, nullptr), one.value) << one.save;
        EXPECT_EQ(name, one.name) << one.save;
    }
}

TEST(ExportRouting, NothingIsWrittenForOtherTypesAndOntoTheOpenStore) {
    std::string const refused =
        R"(, {"message": "The open store cannot be exported onto itself : {dir}/same.xyz", "answer": "ok"})";
    std::pair<std::string, std::string> const cases[] = {
        {"null", ""}, {R"("{dir}/out.prn")", ""}, {R"("{dir}/out.zip")", ""}, {R"("{dir}/same.xyz")", refused}};
    CTemporaryFolder const folder;
    ASSERT_TRUE(WriteSampleStore(folder / "in.nvt"));
    std::filesystem::create_symlink(folder / "in.nvt", folder / "same.xyz");
    std::string const before = ReadWholeFile(folder / "in.nvt");
    for (auto const& [save, more] : cases) {
        PlayRun const run = Play(R"({"operation": "export", "store": "{dir}/in.nvt", "name": "a", "answers": [
            {"save": )" + save + "}" +
                                     more + "]}",
                                 {{"dir", folder.Path()}});
        EXPECT_EQ(run.failure, "") << save;
        EXPECT_EQ(run.value, 0) << save;
        EXPECT_EQ(run.store, "") << save;
        EXPECT_EQ(ReadWholeFile(folder / "in.nvt"), before);
        EXPECT_EQ(folder.Count(), 2U) << save;
    }
}

}  // namespace norva::test
