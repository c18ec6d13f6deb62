#include "formats/column_text/converted_import.h"

#include "exchange/report_places.h"
#include "formats/column_text/ascii_file_import.h"
#include "formats/column_text/proposed_import.h"
#include "formats/column_text/text_preview.h"
#include "platform/files.h"
#include "platform/temporary_folder.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace norva {

namespace {

/// Deletes a file at the end of its scope.
class CFileRemover {
public:
    explicit CFileRemover(std::string const& path) : m_path(path) {}
    CFileRemover(CFileRemover const&) = delete;
    CFileRemover& operator=(CFileRemover const&) = delete;
    ~CFileRemover() { RemoveFile(m_path); }

private:
    std::string const& m_path;
};

/// Makes the report of an import of converted text one of the source.
void MoveReportToSource(ImportReport& report, ConvertedSource&& source) {
    auto const relocate = [&source](ReportFinding& finding) {
        std::erase_if(finding.places, [&source](ReportPlace& place) {
            place.line = source.lines.SourceLine(place.line);
            place.column = 0;
            return place.line == 0;
        });
    };
    for (ReportChannel& channel : report.channels) {
        for (ReportKind const* kind = kReportKinds; kind->name != nullptr; ++kind) relocate(channel.*kind->finding);
    }
    for (ReportRowKind const* kind = kReportRowKinds; kind->name != nullptr; ++kind) relocate(report.*kind->finding);
    for (ReportLine& line : report.lines) line.sourceLine = source.lines.SourceLine(line.sourceLine);
    ImportReport& told = source.report;
    report.leftOut = std::move(told.leftOut);
    report.cutRecords = std::move(told.cutRecords);
    report.joined = std::move(told.joined);
    report.moreValues.count += told.moreValues.count;
    report.moreValues.places.insert(report.moreValues.places.begin(), told.moreValues.places.begin(),
                                    told.moreValues.places.end());
    if (report.moreValues.places.size() > MostPlaces()) report.moreValues.places.resize(MostPlaces());
    // A row that did not come through as one.
    std::uint64_t const locations = report.LocationCount();
    report.leftOut.count += std::max(source.rows, locations) - std::min(source.rows, locations);
    report.settings.insert(report.settings.end(), told.settings.begin(), told.settings.end());
    report.parts = std::move(told.parts);
    report.unit = std::move(told.unit);
    report.unitsRead = told.unitsRead;
    report.bytesRead = told.bytesRead;
    report.sourceSize = told.sourceSize;
}

/// "line 12" of the text as the line of the source that it was made of, or as its row below the names.
std::string InSource(std::string const& text, ConvertedSource const& source) {
    constexpr std::string_view word = "line ";
    std::string moved;
    std::size_t next = 0;
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, next)) {
        std::size_t const digits = at + word.size();
        std::size_t const end = std::min(text.find_first_not_of("0123456789", digits), text.size());
        std::uint64_t number = 0;
        std::from_chars(text.data() + digits, text.data() + end, number);
        moved.append(text, next, at - next);
        next = end;
        if (end == digits) {
            moved += word;
        } else if (source.lines.IsEmpty()) {
            moved += "row " + std::to_string(number - std::min<std::uint64_t>(number, 1));
        } else {
            moved += std::string(word) + std::to_string(source.lines.SourceLine(number));
        }
    }
    return moved.append(text, next);
}

/// Columns that no row has a value for are no channels of the source.
void DropUnused(Inspection& inspection, std::vector<int> const& unused) {
    ColumnTextSettings& settings = inspection.settings;
    for (std::size_t i = settings.columns.size(); i-- > 0;) {
        if (std::ranges::find(unused, settings.columnReadings[i].source) == unused.end()) continue;
        std::erase_if(inspection.findings,
                      [&](InspectionFinding const& one) { return one.subject == settings.columns[i].name; });
        settings.columns.erase(settings.columns.begin() + static_cast<std::ptrdiff_t>(i));
        settings.columnReadings.erase(settings.columnReadings.begin() + static_cast<std::ptrdiff_t>(i));
        if (settings.labelColumn > static_cast<int>(i)) --settings.labelColumn;
    }
}

/// Makes what was found in a converted text a proposal for its source.
void MoveEvidenceToSource(Inspection& inspection, ConvertedSource& source) {
    bool const tellsOfLines = !source.findings.empty();
    std::erase_if(inspection.findings, [&](InspectionFinding const& finding) {
        bool const isOfText = finding.subject == "separator" || finding.subject == "header line";
        return (isOfText && !finding.isDoubt) || (finding.subject == "lines" && tellsOfLines);
    });
    for (InspectionFinding& finding : inspection.findings) {
        // Names of lines may look like numbers of lines.
        if (finding.subject != "lines") finding.evidence = InSource(finding.evidence, source);
    }
    for (InspectedLine& line : inspection.lines) {
        for (std::uint64_t* const number : {&line.line, &line.last}) {
            *number = source.lines.IsEmpty() ? *number - 1 : source.lines.SourceLine(*number);
        }
    }
    DropUnused(inspection, source.unused);
    inspection.findings.insert(inspection.findings.begin(), source.findings.begin(), source.findings.end());
    inspection.headerLine = 0;
    inspection.unitLine = 0;
    inspection.isConverted = true;
}

}  // namespace

void CLineMap::Add(std::uint64_t textLine, std::uint64_t sourceLine) {
    if (!m_runs.empty()) {
        Run& run = m_runs.back();
        std::uint64_t const last = run.sourceLine + run.step * (run.count - 1);
        bool const follows = textLine == run.textLine + run.count && sourceLine >= last;
        if (follows && run.count == 1) run.step = sourceLine - last;
        if (follows && sourceLine == last + run.step) {
            ++run.count;
            return;
        }
    }
    m_runs.push_back({textLine, sourceLine, 0, 1});
}

std::uint64_t CLineMap::SourceLine(std::uint64_t textLine) const {
    auto const next = std::ranges::upper_bound(m_runs, textLine, {}, &Run::textLine);
    if (next == m_runs.begin()) return 0;
    Run const& run = *std::prev(next);
    std::uint64_t const index = textLine - run.textLine;
    return index < run.count ? run.sourceLine + run.step * index : 0;
}

Status RunConvertedImport(ImportJob& job, std::string_view temporaryName, ConvertToText const& convert,
                          ConvertToText const& toTable) {
    auto const* const settings = std::get_if<ColumnTextSettings>(&job.settings);
    bool const hasReading = !job.asks && settings != nullptr && settings->reading;
    std::string textPath;
    if (Status status = PrivateTemporaryFolder(textPath); !status) return std::move(status).Silent();
    textPath += temporaryName;
    ConvertedSource source;
    if (Status status = (hasReading ? toTable : convert)(job.inputPath, textPath, source); !status) return status;
    CFileRemover const remover(textPath);
    job.gravityMeterMode = 0;
    Status status = hasReading ? ImportByReading(job, textPath) : CAsciiFileImport(job).Run(textPath);
    if (status) MoveReportToSource(job.report, std::move(source));
    return status;
}

Status InspectConvertedText(std::string const& path, std::string_view temporaryName, ConvertToText const& toTable,
                            InspectionOptions const& options, Inspection& inspection) {
    std::string textPath;
    if (Status status = PrivateTemporaryFolder(textPath); !status) return status;
    textPath += temporaryName;
    ConvertedSource source;
    CFileRemover const remover(textPath);
    if (Status status = toTable(path, textPath, source); !status) return status;
    if (Status status = InspectTextFile(textPath, options, inspection); !status) return status;
    MoveEvidenceToSource(inspection, source);
    return {};
}

Status PreviewConvertedText(std::string const& path, std::string_view temporaryName, ConvertToText const& convert,
                            TextPreview& preview) {
    std::string textPath;
    if (Status status = PrivateTemporaryFolder(textPath); !status) return status;
    textPath += temporaryName;
    ConvertedSource source;
    CFileRemover const remover(textPath);
    if (Status status = convert(path, textPath, source); !status) return status;
    Status status = PreviewTextFile(textPath, preview);
    preview.path = path;
    return status;
}

}  // namespace norva
