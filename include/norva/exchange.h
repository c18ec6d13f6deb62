#pragma once

#include "norva/api.h"
#include "norva/export_report.h"
#include "norva/file_util.h"
#include "norva/import_report.h"
#include "norva/settings.h"
#include "norva/status.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// Import and export without windows: settings in, a status and a report out.
///
/// Nothing is shown and nobody is asked. Calls do not touch each other: several may run at once, on threads of their
/// own, each with a store of its own. No call throws.
namespace norva {

/// How far a running import or export is.
struct ExchangeProgress {
    std::string_view step;     ///< what is done now, "Loading data from the file"; lasts until the callback returns
    std::string_view channel;  ///< the channel at hand, empty for none
    int percent = 0;           ///< of the step
};

/// Called on the caller's thread, at most some hundred times for a step. False cancels: the call ends soon with
/// Status::IsCancelled(), and leaves everything as it was.
using ProgressCallback = std::function<bool(ExchangeProgress const& progress)>;

struct ImportRequest {
    std::string inputPath;
    std::string storePath;      ///< the store to make
    std::string format{};       ///< label in the format list; empty: recognised
    ImportSettings settings{};  ///< of that format's kind; the empty state: what its window would open with,
                                ///< see ProposeSettings()
    bool replace = false;       ///< a store of that name may be replaced
    bool checksum = false;      ///< also read the source for its SHA-256
    std::size_t places = ReportFinding::kUsualPlaces;  ///< of each finding that the report keeps
    ProgressCallback progress{};
    /// A store of the host's own to fill; null: one of the library's.
    CNorvaFileUtil* store = nullptr;
};

struct ImportResult {
    ImportReport report{};
    ImportSettings settings{};            ///< that the import ran by
    std::vector<std::string> messages{};  ///< what the library would have shown, in order
};

/// Imports a file into a new store. After a failure an older store of that name is as it was.
NORVA_API Status ImportFile(ImportRequest const& request, ImportResult& result);

/// Whether an import of the format has settings to propose from the whole of a file; `format` is a label of the format
/// list.
NORVA_API bool HasProposal(std::string_view format);

/// The settings that a file is best imported by where nobody says otherwise: of a text by InspectTextFile(), else the
/// empty state. `format` is a label of the format list; empty: recognised. Fails for a file that cannot be read and for
/// a format that there is not, and for a text that does not read as a table.
NORVA_API Status ProposeSettings(std::string const& path, std::string const& format, ImportSettings& settings);

struct ExportRequest {
    std::string storePath{};  ///< the store to read, unless `store` is given
    std::string outputPath;   ///< its extension names the type, see ListExportFormats
    ExportSettings settings{};
    bool replace = false;  ///< a file of that name may be replaced
    ProgressCallback progress{};
    CNorvaFileUtil* store = nullptr;  ///< an open store of the host's own
};

struct ExportResult {
    ExportReport report{};
    ExportSettings settings{};            ///< that the export ran by, with the lines and channels written
    std::vector<std::string> messages{};  ///< what the library would have shown, in order
};

/// Writes lines and channels of a store. After a failure an older file of that name is as it was.
NORVA_API Status ExportStore(ExportRequest const& request, ExportResult& result);

}  // namespace norva
