#pragma once

#include "exchange/import_format.h"
#include "norva/column_text.h"
#include "norva/import_report.h"
#include "norva/inspection.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// Which line of a source each line of a text was made of. Lines at a steady distance take no room of their own.
class CLineMap {
public:
    /// Text lines come in ascending order.
    void Add(std::uint64_t textLine, std::uint64_t sourceLine);
    /// 0 for a text line that was made of none.
    std::uint64_t SourceLine(std::uint64_t textLine) const;
    bool IsEmpty() const { return m_runs.empty(); }

private:
    struct Run {
        std::uint64_t textLine;
        std::uint64_t sourceLine;
        std::uint64_t step;   ///< from one source line to the next
        std::uint64_t count;  ///< text lines that follow each other
    };
    std::vector<Run> m_runs;
};

/// What a conversion found out about its source.
struct ConvertedSource {
    ImportReport report;     ///< unit, parts and bytes, settings, and what was found before any row was made
    std::uint64_t rows = 0;  ///< that were written
    CLineMap lines;          ///< of the rows and markers; none where rows are not made of lines
    std::vector<InspectionFinding> findings{};  ///< on what the text does not show
    std::vector<int> unused{};                  ///< columns, from 0, that no row has a value for
};

/// Rewrites a file (first path) as column text (second path). A failure has been shown where it asks for that.
using ConvertToText =
    std::function<Status(std::string const& inputPath, std::string const& textPath, ConvertedSource& source)>;

/// Imports a file through a temporary text file: converts it to `temporaryName` in the user's temporary folder,
/// imports that text, and deletes it whatever comes of the import. It shows no message when the folder cannot be had;
/// what a failed conversion has left stays there.
/// Settings with a reading of their own (ColumnTextSettings::reading) are of the text that `toTable` makes.
Status RunConvertedImport(ImportJob& job, std::string_view temporaryName, ConvertToText const& convert,
                          ConvertToText const& toTable);

/// The import that the whole of the text proposes which `toTable` makes of the file. Evidence names lines of the file,
/// or rows where those are not made of lines.
Status InspectConvertedText(std::string const& path, std::string_view temporaryName, ConvertToText const& toTable,
                            InspectionOptions const& options, Inspection& inspection);

/// The first lines of the text that the file is converted to, which is deleted then.
Status PreviewConvertedText(std::string const& path, std::string_view temporaryName, ConvertToText const& convert,
                            TextPreview& preview);

/// Runs a converter, which has ConvertToXYZ and TakeSource.
template <typename Converter>
Status ConvertBy(std::string const& inputPath, std::string const& textPath, ConvertedSource& source) {
    Converter converter;
    Status status = converter.ConvertToXYZ(inputPath, textPath);
    source = converter.TakeSource();
    return status;
}

}  // namespace norva
