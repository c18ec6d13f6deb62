#include "entry/import_formats.h"
#include "entry/quiet_toolkit.h"
#include "exchange/exception_guard.h"
#include "norva/exchange.h"
#include "norva/formats.h"
#include "norva/inspection.h"

#include <algorithm>

namespace norva {

namespace {

Status FindRow(std::string const& path, std::string const& format, ImportFormat const*& row) {
    RecognizedFormat const recognized = format.empty() ? RecognizeImportFormat(path) : RecognizedFormat{0, format, {}};
    if (recognized.label.empty()) return Status::Failure("Couldn't read the file", path, recognized.reason);
    row = FindImportFormat(recognized.label);
    if (row == nullptr) {
        return Status::Failure("Couldn't read the file", path, "There is no format \"" + format + "\".");
    }
    return {};
}

Status Inspect(std::string const& path, ImportFormat const& row, InspectionOptions const& options,
               Inspection& inspection) {
    std::vector<std::string> messages;
    ProgressCallback const noProgress;
    CQuietToolkit toolkit(noProgress, messages);
    CToolkitScope const scope(toolkit);
    Status status = row.inspect(path, options, inspection);
    if (status || !status.Text().empty()) return status;
    return Status::Failure("Couldn't read the file", path, messages.empty() ? std::string() : messages.back());
}

Status Propose(std::string const& path, std::string const& format, ImportSettings& settings) {
    ImportFormat const* row = nullptr;
    if (Status status = FindRow(path, format, row); !status) return status;
    if (row->propose != nullptr) return row->propose(path, settings);
    if (row->inspect == nullptr) return {};
    Inspection found;
    if (Status status = Inspect(path, *row, {}, found); !status) return status;
    if (!found.isTable) {
        auto const isTold = [](InspectionFinding const& finding) { return finding.subject == "table"; };
        auto const told = std::ranges::find_if(found.findings, isTold);
        std::string const why = told == found.findings.end() ? "." : ": " + told->evidence;
        return Status::Failure("Couldn't read the file", path, "It does not read as a table" + why);
    }
    settings = std::move(found.settings);
    return {};
}

}  // namespace

bool HasProposal(std::string_view format) {
    ImportFormat const* const row = FindImportFormat(format);
    return row != nullptr && row->inspect != nullptr;
}

Status InspectFile(std::string const& path, std::string const& format, InspectionOptions const& options,
                   Inspection& inspection) {
    inspection = {};
    return Guarded("Couldn't read the file", path, [&] {
        ImportFormat const* row = nullptr;
        if (Status status = FindRow(path, format, row); !status) return status;
        if (row->inspect == nullptr) {
            return Status::Failure("Couldn't read the file", path, "Files of its format are no column text.");
        }
        return Inspect(path, *row, options, inspection);
    });
}

Status ProposeSettings(std::string const& path, std::string const& format, ImportSettings& settings) {
    settings = {};
    return Guarded("Couldn't read the file", path, [&] { return Propose(path, format, settings); });
}

}  // namespace norva
