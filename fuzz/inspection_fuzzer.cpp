#include "harness.h"
#include "inspection/reference_reader.h"
#include "inspection/row_adaptor.h"
#include "norva/inspection.h"

#include <cmath>

using namespace norva;

namespace {

/// Compares what the adaptor makes of every row with a plain reading of its line.
class CComparison : public IAdaptedSink {
public:
    explicit CComparison(ColumnTextSettings const& settings) : m_settings(settings) {}

    bool Row(AdaptedRow const& row) override {
        ++m_rows;
        ++m_lines;
        for (char const c : row.source) m_lines += row.mend.how == RowMend::How::NextLines && c == '\n' ? 1U : 0U;
        if (row.number < m_last) fuzz::Broken("rows in the order of the file");
        m_last = row.number;
        if (row.cells.size() != m_settings.columns.size()) fuzz::Broken("a cell for every column");
        for (AdaptedCell const& cell : row.cells) {
            if (cell.what == AdaptedCell::What::Value && std::isnan(cell.value))
                fuzz::Broken("a value that is a number");
        }
        bool const isPlain =
            row.mend.how == RowMend::How::None && row.source.find_first_of("\"'") == std::string_view::npos;
        if (isPlain && m_settings.reading->encoding != TextReading::Encoding::Latin1) Compare(row);
        return true;
    }
    bool Line(LineView const&) override {
        ++m_lines;
        return true;
    }

    std::uint64_t Rows() const { return m_rows; }
    std::uint64_t Lines() const { return m_lines; }

private:
    void Compare(AdaptedRow const& row) const {
        std::vector<std::string> const plain = test::PlainCells(row.source, m_settings.reading->separator);
        for (std::size_t i = 0; i < row.cells.size(); ++i) {
            auto const source = static_cast<std::size_t>(m_settings.columnReadings[i].source);
            std::string const wanted = source < plain.size() ? plain[source] : "";
            if (row.cells[i].text != wanted) fuzz::Broken("the cells of a plain reading");
        }
    }

    ColumnTextSettings const& m_settings;
    std::uint64_t m_rows = 0;
    std::uint64_t m_lines = 0;
    std::uint64_t m_last = 0;
};

}  // namespace

/// Whatever the bytes: a refusal says why, every line is accounted for, and the adaptor takes the rows that the
/// inspection counted.
NORVA_FUZZ_TARGET(inspection) {
    std::string const path = fuzz::Folder() / "in.txt";
    test::WriteWholeFile(path, bytes);
    Inspection found;
    if (Status const status = InspectTextFile(path, {}, found); !status) {
        if (status.Text().empty()) fuzz::Broken("a refusal in silence");
        return fuzz::CleanUp({"in.txt"});
    }
    InspectionCounts const& counts = found.counts;
    std::uint64_t const told = counts.rows + counts.continued + counts.leftOut + counts.otherTable + counts.above +
                               counts.markers + counts.comments + counts.rules + counts.blank + counts.namesAgain +
                               counts.nothingAtEnd;
    if (told != counts.lines) fuzz::Broken("every line is accounted for");
    if (found.Text().empty()) fuzz::Broken("a proposal without evidence");
    if (!CRowAdaptor::CanRead(found.settings)) fuzz::Broken("a proposal that can be read by");
    CSourceLines source;
    if (!source.Open(path)) fuzz::Broken("a file that opens twice");
    CComparison comparison(found.settings);
    CRowAdaptor adaptor(found.settings, comparison);
    std::string_view line;
    while (source.Next(line)) adaptor.Feed(line, source.Number());
    adaptor.Finish();
    if (comparison.Rows() != counts.rows) fuzz::Broken("the rows that were counted");
    if (comparison.Lines() != counts.lines) fuzz::Broken("the lines that were counted");
    fuzz::CleanUp({"in.txt"});
}
