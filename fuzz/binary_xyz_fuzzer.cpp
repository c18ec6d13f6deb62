#include "entry/import_formats.h"
#include "fuzz_folder.h"
#include "norva/scripted_toolkit.h"
#include "read_store.h"
#include "ui/control_ids.h"

#include <cstdlib>

using namespace norva;

namespace {

constexpr std::size_t kSettings = 12;
constexpr int kMostChannels = 8;

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

/// A layout: how many channels, the formats of each, records and points a line (0: as the dialog has them).
ScriptAnswer Layout(unsigned char const* settings) {
    using namespace ids::BinaryImport;
    static constexpr int kRead[] = {kReadInt32, kReadInt16, kReadFloat64, kReadFloat32};
    static constexpr int kWrite[] = {kWriteFloat, kWriteDouble, kWriteShort, kWriteLong};
    int const channels = 1 + settings[0] % kMostChannels;
    ScriptAnswer answer;
    answer.dialog = 4004;
    answer.actions = {Set(kChannelCount, std::to_string(channels)), Click(kSetCount)};
    for (int row = 0; row < channels; ++row) {
        ScriptAction select = Click(kChannels);
        select.kind = ScriptAction::Kind::SelectRow;
        select.row = row;
        unsigned const formats = settings[1 + row];
        answer.actions.insert(answer.actions.end(), {select, Click(kRead[formats % 4]), Click(kWrite[formats / 4 % 4]),
                                                     Click(kSetForSelected)});
    }
    if (settings[9] != 0) answer.actions.push_back(Set(kTotalRecords, std::to_string(settings[9] - 100)));
    if (settings[10] != 0) answer.actions.push_back(Set(kPointsPerLine, std::to_string(settings[10])));
    if (settings[11] % 2 != 0) answer.actions.push_back(Click(kAddFiducial));
    answer.actions.push_back(Click(kButtonOk));
    return answer;
}

}  // namespace

/// The first bytes are settings, the others the file; every message is answered by OK.
extern "C" int LLVMFuzzerTestOneInput(unsigned char const* data, std::size_t size) {
    if (size < kSettings) return 0;
    test::CTemporaryFolder& folder = fuzz::Folder();
    test::WriteWholeFile(folder / "in.bin", fuzz::AsText(data + kSettings, size - kSettings));
    CScriptedToolkit toolkit({Layout(data)}, true, nullptr);
    SetToolkit(&toolkit);
    ImportJob job;
    CNorvaFileUtil store;
    job.store = &store;
    job.inputPath = folder / "in.bin";
    job.storePath = folder / "out.nvt";
    bool const isImported = RunBinaryXyzImport(job) != 0;
    if (!isImported) store.CloseCurFile();
    SetToolkit(nullptr);
    if (isImported) {
        fuzz::ReadWholeStore(job.storePath);
        if (store.SetFileName(job.storePath, kReopenStore, nullptr) == 0) std::abort();
        long locations = 0;
        for (int line = 0; line < store.ProfileCount; ++line) locations += store.GetProfileLocationNum(line, 0);
        int const channels = 1 + data[0] % kMostChannels + (data[11] % 2 == 0 ? 1 : 0);
        if (store.ChannelCount != channels || (data[9] > 100 && locations != data[9] - 100)) std::abort();
        store.CloseCurFile();
        std::filesystem::remove(job.storePath);
    }
    // No temporary file is left behind, whatever came of the import.
    if (folder.Count() != 1) std::abort();
    return 0;
}
