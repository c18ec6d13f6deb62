#include "common/script_json.h"
#include "harness.h"
#include "norva/trace.h"
#include "support/store_samples.h"

#include <filesystem>
#include <stdexcept>

using namespace norva;

namespace {

/// Keeps every path that a script names inside the folder: inputs are those that stand there, outputs are new.
class CFencedToolkit : public CScriptedToolkit {
public:
    using CScriptedToolkit::CScriptedToolkit;

    bool ChooseFileToOpen(FileRequest const& request, std::string& path) override {
        if (!CScriptedToolkit::ChooseFileToOpen(request, path)) return false;
        std::string const own =
            fuzz::Folder() / ("in." + std::filesystem::path(path).extension().string().substr(0, 9));
        path = std::filesystem::exists(own) ? own : fuzz::Folder() / "in.xyz";
        return true;
    }
    bool ChooseFileToSave(FileRequest const& request, std::string& path, std::string& extension) override {
        if (!CScriptedToolkit::ChooseFileToSave(request, path, extension)) return false;
        path = fuzz::Folder() / kOutput;
        return true;
    }

    static constexpr char const* kOutput = "played.out";
};

}  // namespace

/// Plays any text as a script on small files of a few formats.
NORVA_FUZZ_TARGET(script) {
    Script script;
    try {
        script = ParseScript(std::string(bytes), {{"dir", "/folder"}});
    } catch (std::runtime_error const&) {
        return;
    }
    test::CTemporaryFolder const& folder = fuzz::Folder();
    test::WriteWholeFile(folder / "in.xyz", "/ X Y Mag\nLINE 10\n1 2 3.5\n2 3 *\nLINE 20\n4 5 6\n");
    test::WriteWholeFile(folder / "in.csv", "Line,X,Date\n1,2.5,2024/01/31\n2,3.5,2024/02/01\n");
    if (!test::WriteSampleStore(folder / "in.nvt")) fuzz::Broken("the sample store is not written");
    script.store = folder / "in.nvt";
    CTrace trace([](std::string_view line) { line.back() == '\n' ? void() : fuzz::Broken("a line of trace"); }, true);
    CFencedToolkit toolkit(script.answers, false, &trace);
    RunOperation(script, toolkit, &trace, nullptr);
    fuzz::CleanUp({"in.xyz", "in.csv", "in.nvt", CFencedToolkit::kOutput});
}
