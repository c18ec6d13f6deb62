#pragma once

#include "norva/api.h"
#include "norva/settings.h"

#include <string>
#include <vector>

namespace norva {

/// One entry of the format list.
struct ImportFormatInfo {
    int code = 0;        ///< fixed number of the format
    std::string label;   ///< as the "Import Formats" dialog shows it
    std::string filter;  ///< of the "Import file" dialog
    SettingsKind settings = SettingsKind::None;
};

/// What the format list offers at a level, in its order.
NORVA_API std::vector<ImportFormatInfo> ListImportFormats(int level);

/// What can be written. CSV files are written without windows alone (ExportStore).
struct ExportFormatInfo {
    std::string label;
    std::vector<std::string> extensions;  ///< lower case, without a dot; each selects the format
};

NORVA_API std::vector<ExportFormatInfo> ListExportFormats();

/// The format that a file seems to be of.
struct RecognizedFormat {
    int code = 0;  ///< 0 when the file cannot be read, or is empty
    std::string label;
    std::string reason;  ///< what in the file says so, or why not
};

/// Looks at the first 64 KB of a file, then at its extension. Opens nothing else and shows nothing.
NORVA_API RecognizedFormat RecognizeImportFormat(std::string const& path);

}  // namespace norva
