#pragma once

#include "norva/api.h"
#include "norva/file_util.h"
#include "norva/window.h"

#include <string>

/// Import and export with the library's windows. A host without windows uses norva/exchange.h.
///
/// Both functions run on the caller's thread until they are done, and ask through that thread's toolkit (SetToolkit in
/// norva/toolkit.h; without one every window counts as cancelled). The store, the owner and the toolkit stay the
/// host's: the library keeps none of them beyond the call. `store` must not be null. `owner`, null for none, is handed
/// to the store and to message boxes that belong to a window, and gets the notices of an import (WM_OWNER_NOTICE in
/// norva/window.h). No exception comes out. Several threads may call at the same time, each with a store of its own.

/// Lets the user choose a format, a file and a store file name, and imports the file into `store`.
///
/// `store` is opened for writing, filled and closed. `storeFileName` receives the proposed and then the confirmed name.
/// `formatLevel` decides which formats are offered: 0 the usual ones, from 1 on all, at 5 with "ASCII GEM" first, below
/// 0 none (ListImportFormats in norva/formats.h).
/// 1: imported and closed. 0: cancelled or failed, GetLastErrorText() says why; an older store of that name is as it
/// was. GetImportReport (norva/import_report.h) says what became of every value.
extern "C" NORVA_API int Import_Data_File(norva::CNorvaFileUtil* store, std::string& storeFileName,
                                          norva::CWindow* owner, int formatLevel);

/// Lets the user choose an output file (`fileName` is proposed), lines and channels, and writes them. Its extension
/// decides the format (ListExportFormats).
///
/// `store` is open for reading, and stays so. `newStoreFileName` is untouched when the user cancels the file dialog;
/// once a name is confirmed it is emptied, and becomes that name for a native file, whatever comes of the export.
/// 1: written. 0: cancelled or failed, GetLastErrorText() says why; an older file of that name is as it was.
/// GetExportReport (norva/export_report.h) says what the file does not hold as the store does.
extern "C" NORVA_API int Export_Data_File(norva::CNorvaFileUtil* store, std::string fileName,
                                          std::string& newStoreFileName, norva::CWindow* owner);

namespace norva {

/// Why the last operation of this thread that failed did so: what, where, the system's reason. Empty when unknown.
NORVA_API std::string GetLastErrorText();
/// Version of the library, "major.minor.patch".
NORVA_API char const* GetLibraryVersion();

}  // namespace norva
