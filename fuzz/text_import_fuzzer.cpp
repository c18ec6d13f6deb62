#include "entry/import_formats.h"
#include "fuzz_folder.h"
#include "norva/import_export.h"
#include "norva/scripted_toolkit.h"
#include "platform/last_error.h"
#include "read_store.h"
#include "ui/control_ids.h"

#include <cstdlib>

using namespace norva;

namespace {

ScriptAction Act(ScriptAction::Kind kind, int control, int column = -1) {
    ScriptAction action;
    action.kind = kind;
    action.control = control;
    action.column = column;
    return action;
}

/// Gives the first column a type, or makes it the line label, as `choice` says, and continues.
ScriptAnswer Settings(unsigned choice) {
    using namespace ids::SetChannels;
    static constexpr int kButtons[] = {0,     kText, kFloat,      kDouble,     kShort,    kLong,
                                       kDate, kTime, kGeographic, kSkipColumn, kLineLabel};
    ScriptAnswer answer;
    answer.dialog = 4003;
    if (int const button = kButtons[choice % std::size(kButtons)]; button != 0) {
        answer.actions.push_back(Act(ScriptAction::Kind::SelectColumn, kPreview, 0));
        answer.actions.push_back(Act(ScriptAction::Kind::Click, button));
    }
    answer.actions.push_back(Act(ScriptAction::Kind::Click, kButtonOk));
    return answer;
}

}  // namespace

/// Imports the bytes after the first, which chooses the settings and whether they are comma-separated. Whatever the
/// text, the rows that are counted are those that are written, so that nothing but the fixed refusals ends an import.
extern "C" int LLVMFuzzerTestOneInput(unsigned char const* data, std::size_t size) {
    if (size == 0) return 0;
    test::CTemporaryFolder& folder = fuzz::Folder();
    std::string const path = folder / (data[0] % 2 == 0 ? "in.xyz" : "in.csv");
    test::WriteWholeFile(path, fuzz::AsText(data + 1, size - 1));
    CScriptedToolkit toolkit({Settings(data[0] / 2)}, true, nullptr);
    SetToolkit(&toolkit);
    ClearLastErrorText();
    CNorvaFileUtil store;
    ImportJob job;
    job.store = &store;
    job.inputPath = path;
    job.storePath = folder / "out.nvt";
    bool const isImported = RunTextImport(job) != 0;
    if (!isImported) store.CloseCurFile();
    SetToolkit(nullptr);
    std::string const reason = GetLastErrorText();
    bool const isRefused = reason.starts_with("There ") || reason.starts_with("Couldn't read the file : ");
    bool const isScriptFailure = !toolkit.Failure().empty();  // there was no first column
    if (!isImported && !isRefused && !isScriptFailure) std::abort();
    if (isImported) {
        fuzz::ReadWholeStore(job.storePath);
        std::filesystem::remove(job.storePath);
    }
    std::filesystem::remove(path);
    if (folder.Count() != 0) std::abort();
    return 0;
}
