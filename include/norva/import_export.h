#pragma once

#include "norva/api.h"
#include "norva/file_util.h"
#include "norva/window.h"

#include <string>

/// Lets the user choose a format, a file and a store file name and imports the file into `store`.
/// `storeFileName` receives the proposed and then the confirmed name. 1: imported and closed; 0: cancelled or failed.
extern "C" NORVA_API int Import_Data_File(norva::CNorvaFileUtil* store, std::string& storeFileName,
                                          norva::CWindow* owner, int formatLevel);

/// Lets the user choose an output file (`fileName` is proposed), lines and channels, and writes them.
/// `newStoreFileName` is emptied once a name is confirmed, and becomes that name for a native file.
extern "C" NORVA_API int Export_Data_File(norva::CNorvaFileUtil* store, std::string fileName,
                                          std::string& newStoreFileName, norva::CWindow* owner);

namespace norva {

/// Why the last operation of this thread that failed did so: what, where, the system's reason. Empty when unknown.
NORVA_API std::string GetLastErrorText();
/// Version of the library, "major.minor.patch".
NORVA_API char const* GetLibraryVersion();

}  // namespace norva
