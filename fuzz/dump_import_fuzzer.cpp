#include "entry/import_formats.h"
#include "fuzz_folder.h"
#include "norva/scripted_toolkit.h"
#include "read_store.h"

#include <cstdlib>

using namespace norva;

/// Imports the bytes after the first, which chooses the instrument; everything shown is answered by its default.
extern "C" int LLVMFuzzerTestOneInput(unsigned char const* data, std::size_t size) {
    if (size == 0) return 0;
    test::CTemporaryFolder& folder = fuzz::Folder();
    test::WriteWholeFile(folder / "in.dmp", fuzz::AsText(data + 1, size - 1));
    CScriptedToolkit toolkit({}, true, nullptr);
    SetToolkit(&toolkit);
    CNorvaFileUtil store;
    ImportJob job;
    job.store = &store;
    job.inputPath = folder / "in.dmp";
    job.storePath = folder / "out.nvt";
    constexpr int (*imports[])(ImportJob const&) = {RunCG3Import, RunIpr12Import, RunSeaSpyImport, RunGpxImport};
    bool const isImported = imports[data[0] % 4](job) != 0;
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
