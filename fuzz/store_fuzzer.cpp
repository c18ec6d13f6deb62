#include "harness.h"

using namespace norva;

/// Opens any bytes as a store and reads, checks, marks and sorts what opens.
NORVA_FUZZ_TARGET(store) {
    std::string const path = fuzz::Folder() / "in.nvt";
    test::WriteWholeFile(path, bytes);
    if (fuzz::ReadWholeStore(path)) {
        CNorvaFileUtil store;
        if (store.SetFileName(path, kReopenStore, nullptr) == 0) fuzz::Broken("what opened once opens again");
        bool const isWhole = store.VerifyData() != 0;
        bool const isMarked = store.ProfileCount > 0 && store.MarkLocToDelete(0, 0, 1) != 0;
        bool const isSorted = store.SortByChannel(nullptr, store.ChannelCount - 1, 1, -1, 1, -1) != 0;
        if (store.CloseCurFile() != 0 && (isMarked || isSorted) && !fuzz::ReadWholeStore(path)) {
            fuzz::Broken("what was marked or sorted opens again");
        }
        if (isWhole && store.SetFileName(path, kReopenStore, nullptr) != 0 && store.VerifyData() == 0) {
            fuzz::Broken("what was whole stays so");
        }
    }
    fuzz::CleanUp({"in.nvt"});
}
