#include "harness.h"

#include "exchange/export_selection_template.h"
#include "norva/import_export.h"
#include "platform/last_error.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>

namespace norva::fuzz {

namespace {

namespace fs = std::filesystem;

/// A toolkit that knows whether a message was shown or a dialog cancelled.
class CWatchingToolkit : public CScriptedToolkit {
public:
    explicit CWatchingToolkit(std::vector<ScriptAnswer> answers)
        : CScriptedToolkit(std::move(answers), true, nullptr) {}

    int RunModal(CDialog& dialog) override {
        int const button = CScriptedToolkit::RunModal(dialog);
        hasShown = hasShown || button == kButtonCancel;
        return button;
    }
    MessageAnswer ShowMessage(MessageRequest const& request) override {
        hasShown = true;
        return CScriptedToolkit::ShowMessage(request);
    }

    bool hasShown = false;
};

/// Laws: a description has a value for every column of its tables; a refusal says why.
void Describe(ImportFormat const& format, std::string const& path) {
    DescriptionSettings settings;
    settings.format = format.label;
    settings.record = {{"A", "int16", ""}, {"B", "double", "m"}};
    FileDescription description;
    if (DescribeFile(path, settings, description) == 0) {
        if (GetLastErrorText().empty()) Broken("a description refused in silence");
        return;
    }
    for (FileDescription::Table const& table : description.tables) {
        for (auto const& row : table.rows) {
            if (row.size() != table.columns.size()) Broken("a description lacks values");
        }
    }
}

}  // namespace

void Broken(std::string_view law) {
    std::cerr << "broken law: " << law << std::endl;
    std::abort();
}

test::CTemporaryFolder& Folder() {
    static bool const isInMemory =
        fs::is_directory("/dev/shm") && std::getenv("TMPDIR") == nullptr && setenv("TMPDIR", "/dev/shm", 0) == 0;
    static_cast<void>(isInMemory);
    static test::CTemporaryFolder folder;
    static bool const isCurrent = [] {
        fs::create_directory(folder / "temporary");
        fs::current_path(folder.Path());
        return setenv("TMPDIR", (folder / "temporary").c_str(), 1) == 0;
    }();
    static_cast<void>(isCurrent);
    return folder;
}

ScriptAction Click(int control) {
    ScriptAction action;
    action.control = control;
    return action;
}

ScriptAction Set(int control, std::string text) {
    ScriptAction action = Click(control);
    action.kind = ScriptAction::Kind::Set;
    action.value = std::move(text);
    return action;
}

ScriptAction SelectRow(int control, int row, DialogEvent::Modifier modifier) {
    ScriptAction action = Click(control);
    action.kind = ScriptAction::Kind::SelectRow;
    action.row = row;
    action.modifier = modifier;
    return action;
}

ScriptAction SelectColumn(int control, int column) {
    ScriptAction action = Click(control);
    action.kind = ScriptAction::Kind::SelectColumn;
    action.column = column;
    return action;
}

ScriptAnswer DialogAnswer(int dialog, std::vector<ScriptAction> actions) {
    ScriptAnswer answer;
    answer.dialog = dialog;
    answer.actions = std::move(actions);
    return answer;
}

bool Import(ImportTry const& what, std::string_view bytes) {
    test::CTemporaryFolder const& folder = Folder();
    test::WriteWholeFile(folder / what.fileName, bytes);
    Describe(what.format, folder / what.fileName);
    CWatchingToolkit toolkit(what.answers);
    CToolkitScope const scope(toolkit);
    ClearLastErrorText();
    CNorvaFileUtil store;
    ImportJob job;
    job.store = &store;
    job.inputPath = folder / what.fileName;
    job.storePath = folder / kStoreName;
    job.gravityMeterMode = what.gravityMeterMode;
    Status const status = what.format.import(job);
    bool const isImported = status.IsGood();
    if (!isImported) {
        store.CloseCurFile();
        if (!toolkit.hasShown && toolkit.Failure().empty() && status.Text().empty()) Broken("refused in silence");
        CleanUp({what.fileName});
        return false;
    }
    if (!ReadWholeStore(job.storePath)) Broken("an imported store does not open");
    fs::remove(job.inputPath);
    return true;
}

bool Export(ExportType const& type, std::string const& store, std::string const& output) {
    using namespace ids::Export;
    CScriptedToolkit toolkit({DialogAnswer(4000, {Click(kLinesAddAll), Click(kColumnsAddAll), Click(kButtonOk)})}, true,
                             nullptr);
    CToolkitScope const scope(toolkit);
    CNorvaFileUtil source;
    if (source.SetFileName(Folder() / store, kReopenStore, nullptr) == 0) Broken("a written store does not open");
    ExportJob job{&source, Folder() / output};
    return type.run(job).IsGood();
}

bool ReadWholeStore(std::string const& path) {
    CNorvaFileUtil store;
    if (store.SetFileName(path, kReopenStore, nullptr) == 0) return false;
    std::vector<char> values;
    std::vector<double> elements;
    std::string text;
    for (int channel = 0; channel < store.ChannelCount; ++channel) {
        for (int profile = 0; profile < store.ProfileCount; ++profile) {
            long const count = store.GetProfileLocationNum(profile, 0);
            values.resize(static_cast<std::size_t>(count) * store.GetChannelValueSize(channel));
            if (store.ReadColumn(channel, profile, 0, count, values.data()) == 0) Broken("a column cannot be read");
            float single = 0;
            double number = 0;
            int integer = 0, dataType = -1;
            long longInteger = 0;
            for (long location = 0; location < count; ++location) {
                bool const isRead = store.GetData(channel, profile, location, single, number, integer, longInteger,
                                                  text, dataType) != 0;
                if (!isRead) Broken("a value cannot be read");
                if (dataType != DataType::kText && store.GetArrayData(channel, profile, location, elements) == 0) {
                    Broken("elements cannot be read");
                }
            }
        }
    }
    return true;
}

void CleanUp(std::vector<std::string> const& expected) {
    std::vector<fs::path> files;
    for (fs::directory_entry const& entry : fs::recursive_directory_iterator(Folder().Path())) {
        if (entry.is_directory()) continue;
        files.push_back(entry.path());
        std::string const name = entry.path().lexically_relative(Folder().Path()).string();
        // A conversion that failed leaves its text in the private folder of the process.
        bool const isConverted = name.starts_with("temporary/") && name.ends_with("_temp.xyz");
        if (!isConverted && std::ranges::find(expected, name) == expected.end()) Broken("left behind: " + name);
    }
    for (fs::path const& file : files) fs::remove(file);
}

}  // namespace norva::fuzz
