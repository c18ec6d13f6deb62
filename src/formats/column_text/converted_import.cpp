#include "formats/column_text/converted_import.h"

#include "exchange/report_places.h"
#include "formats/column_text/ascii_file_import.h"
#include "formats/column_text/text_preview.h"
#include "platform/files.h"
#include "platform/temporary_folder.h"

#include <algorithm>
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

Status RunConvertedImport(ImportJob& job, std::string_view temporaryName, ConvertToText const& convert) {
    std::string textPath;
    if (Status status = PrivateTemporaryFolder(textPath); !status) return std::move(status).Silent();
    textPath += temporaryName;
    ConvertedSource source;
    if (Status status = convert(job.inputPath, textPath, source); !status) return status;
    CFileRemover const remover(textPath);
    job.gravityMeterMode = 0;
    Status status = CAsciiFileImport(job).Run(textPath);
    if (status) MoveReportToSource(job.report, std::move(source));
    return status;
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
