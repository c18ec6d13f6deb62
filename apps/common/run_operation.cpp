#include "common/command_error.h"
#include "common/script_json.h"
#include "norva/import_export.h"
#include "norva/trace.h"
#include "norva/traced_store.h"

namespace norva {

namespace {

int RunImport(Script const& script, CTracedStore& store, CWindow* owner, std::string& storeName) {
    // The zero byte at the end, which no file name has, tells a name that was handed back from one that was never
    // touched, even when both are the same.
    std::string const proposed = script.store + '\0';
    storeName = proposed;
    int const value = Import_Data_File(&store, storeName, owner, script.level);
    if (storeName == proposed) storeName.clear();
    return value;
}

}  // namespace

PlayResult RunOperation(Script const& script, CToolkit& toolkit, CTrace* trace, CWindow* owner) {
    CToolkitScope const scope(toolkit);
    CTracedStore store;
    if (!script.isImport && store.SetFileName(script.store, kReopenStore, nullptr) == 0) {
        throw CommandError(GetLastErrorText(), kExitUsage);
    }
    PlayResult result;
    store.SetTrace(trace);
    if (script.isImport) {
        result.value = RunImport(script, store, owner, result.store);
    } else {
        result.value = Export_Data_File(&store, script.name, result.store, owner);
    }
    store.SetTrace(nullptr);
    if (trace != nullptr) trace->Result(result.value, result.store);
    result.failure = toolkit.Failure();
    return result;
}

}  // namespace norva
