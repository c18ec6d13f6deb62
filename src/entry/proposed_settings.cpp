#include "entry/import_formats.h"
#include "exchange/exception_guard.h"
#include "norva/exchange.h"
#include "norva/formats.h"
#include "norva/inspection.h"

#include <algorithm>

namespace norva {

namespace {

/// Formats whose files are read by a proposal as they stand.
constexpr ImportFormatCode kInspected[] = {ImportFormatCode::AsciiXyz, ImportFormatCode::AsciiCsv,
                                           ImportFormatCode::AsciiGem, ImportFormatCode::CG5};

Status Propose(std::string const& path, std::string const& format, ImportSettings& settings) {
    RecognizedFormat const recognized = format.empty() ? RecognizeImportFormat(path) : RecognizedFormat{0, format, {}};
    if (recognized.label.empty()) return Status::Failure("Couldn't read the file", path, recognized.reason);
    if (FindImportFormat(recognized.label) == nullptr) {
        return Status::Failure("Couldn't read the file", path, "There is no format \"" + format + "\".");
    }
    if (!HasProposal(recognized.label)) return {};
    Inspection found;
    if (Status status = InspectTextFile(path, {}, found); !status) return status;
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
    return row != nullptr && std::ranges::find(kInspected, row->code) != std::end(kInspected);
}

Status ProposeSettings(std::string const& path, std::string const& format, ImportSettings& settings) {
    settings = {};
    return Guarded("Couldn't read the file", path, [&] { return Propose(path, format, settings); });
}

}  // namespace norva
