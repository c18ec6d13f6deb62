#include "entry/exp_imp_context.h"
#include "exchange/exception_guard.h"
#include "exchange/report_draft.h"
#include "norva/import_export.h"
#include "platform/last_error.h"

int Import_Data_File(norva::CNorvaFileUtil* store, std::string& storeFileName, norva::CWindow* owner, int formatLevel) {
    return norva::GuardedResult("The import failed", {}, [&] {
        norva::ClearLastErrorText();
        norva::ForgetReport();
        norva::CExpImpContext context;
        return context.ImportData(store, storeFileName, owner, formatLevel);
    });
}

int Export_Data_File(norva::CNorvaFileUtil* store, std::string fileName, std::string& newStoreFileName,
                     norva::CWindow* owner) {
    return norva::GuardedResult("The export failed", {}, [&] {
        norva::ClearLastErrorText();
        norva::CExpImpContext context;
        return context.ExportData(store, fileName, newStoreFileName, owner);
    });
}
