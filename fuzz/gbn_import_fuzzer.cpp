#include "entry/import_formats.h"
#include "fuzz_folder.h"
#include "norva/scripted_toolkit.h"
#include "read_store.h"
#include "ui/control_ids.h"

#include <array>
#include <cstdlib>

using namespace norva;

namespace {

ScriptAction Click(int control) {
    ScriptAction action;
    action.control = control;
    return action;
}

/// Presses "Continue", with all channels as one data type or with a line left out, as `choice` says.
ScriptAnswer Contents(unsigned choice) {
    using namespace ids::GbnImport;
    static constexpr std::array kRadios{kFloat, kShort, kDouble, kLong, kText};
    ScriptAnswer answer;
    answer.dialog = 4059;
    if ((choice & 8U) != 0) answer.actions.push_back(Click(kFiducial));
    if ((choice & 7U) < kRadios.size()) {
        for (int row = 0; row < 2; ++row) {
            ScriptAction select;
            select.kind = ScriptAction::Kind::SelectRow;
            select.control = kChannels;
            select.row = row;
            select.modifier = row == 0 ? DialogEvent::Modifier::None : DialogEvent::Modifier::Shift;
            answer.actions.push_back(select);
        }
        answer.actions.push_back(Click(kRadios[choice & 7U]));
        answer.actions.push_back(Click(kSetForSelected));
    }
    if ((choice & 16U) != 0) {
        ScriptAction tick;
        tick.kind = ScriptAction::Kind::Tick;
        tick.control = kLines;
        tick.row = 0;
        tick.on = false;
        answer.actions.push_back(tick);
    }
    answer.actions.push_back(Click(kButtonOk));
    return answer;
}

}  // namespace

/// Imports the bytes after the first, which chooses what the dialog is answered; every message is answered by OK.
extern "C" int LLVMFuzzerTestOneInput(unsigned char const* data, std::size_t size) {
    if (size == 0) return 0;
    test::CTemporaryFolder& folder = fuzz::Folder();
    test::WriteWholeFile(folder / "in.gbn", fuzz::AsText(data + 1, size - 1));
    CScriptedToolkit toolkit({Contents(data[0])}, true, nullptr);
    SetToolkit(&toolkit);
    ImportJob job;
    CNorvaFileUtil store;
    job.store = &store;
    job.inputPath = folder / "in.gbn";
    job.storePath = folder / "out.nvt";
    bool const isImported = RunGbnImport(job) != 0;
    if (!isImported) store.CloseCurFile();
    SetToolkit(nullptr);
    if (isImported) {
        fuzz::ReadWholeStore(job.storePath);
        std::filesystem::remove(job.storePath);
    }
    // No temporary file is left behind, whatever came of the import.
    if (folder.Count() != 1) std::abort();
    return 0;
}
