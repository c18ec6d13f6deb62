#include "entry/exp_imp_context.h"
#include "exchange/exception_guard.h"
#include "exchange/last_reports.h"
#include "norva/import_export.h"
#include "norva/toolkit.h"
#include "platform/last_error.h"

namespace {

/// Tells the toolkit when an exported function returns.
class CCall {
public:
    CCall() = default;
    CCall(CCall const&) = delete;
    CCall& operator=(CCall const&) = delete;
    ~CCall() { norva::CurrentToolkit().CallEnded(); }
};

}  // namespace

int Import_Data_File(norva::CNorvaFileUtil* store, std::string& storeFileName, norva::CWindow* owner, int formatLevel) {
    CCall const call;
    return norva::GuardedResult("The import failed", {}, [&] {
        norva::ClearLastErrorText();
        norva::ForgetLastImportReport();
        norva::CExpImpContext context;
        return context.ImportData(store, storeFileName, owner, formatLevel);
    });
}

int Export_Data_File(norva::CNorvaFileUtil* store, std::string fileName, std::string& newStoreFileName,
                     norva::CWindow* owner) {
    CCall const call;
    return norva::GuardedResult("The export failed", {}, [&] {
        norva::ClearLastErrorText();
        norva::ForgetLastExportReport();
        norva::CExpImpContext context;
        return context.ExportData(store, fileName, newStoreFileName, owner);
    });
}
