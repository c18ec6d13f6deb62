#pragma once

#include "norva/file_util.h"
#include "norva/settings.h"
#include "norva/status.h"

#include <string>
#include <string_view>

namespace norva {

/// Fixed numbers of the export types.
enum class ExportTypeCode { None = -1, Native = 0, Xyz = 1, Reserved = 2, Worksheet = 3, Gbn = 4 };

/// One export as it is given to an exporter.
struct ExportJob {
    CNorvaFileUtil* store = nullptr;
    std::string outputPath;
    CWindow* owner = nullptr;
    bool asks = true;           ///< lines and channels are chosen by a person, in the export window
    ExportSettings settings{};  ///< given where nobody is asked
};

/// One row of the export type table.
struct ExportType {
    ExportTypeCode code = ExportTypeCode::None;
    std::string_view label;
    std::string_view extensions;              ///< upper-case letters, separated by blanks; "P*": all that begin so
    Status (*run)(ExportJob& job) = nullptr;  ///< null: no exporter
};

}  // namespace norva
