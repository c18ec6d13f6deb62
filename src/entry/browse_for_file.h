#pragma once

#include <string>

namespace norva {

/// Which file is asked for.
enum class FileDialogMode {
    ImportStore = 1,   ///< the store file that an import makes
    ImportInput = 2,   ///< the file that is imported
    ExportOutput = 3,  ///< the file that an export writes
};

/// The file must exist; no read-only check box.
inline constexpr unsigned kOpenDialogFlags = 0x1004;
/// Overwriting asks for confirmation; no read-only check box.
inline constexpr unsigned kSaveDialogFlags = 6;

/// Asks for a file name; `path` is proposed and replaced. `formatCode` gives the filter of ImportInput, and receives
/// the export type of ExportOutput. 1 when the user confirmed, 0 on cancel.
int BrowseForFile(std::string& path, unsigned flags, FileDialogMode mode, int& formatCode);

}  // namespace norva
