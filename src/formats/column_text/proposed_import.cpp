#include "formats/column_text/proposed_import.h"

#include "exchange/column_files.h"
#include "exchange/exception_guard.h"
#include "exchange/row_report.h"
#include "formats/column_text/column_store.h"
#include "formats/column_text/row_converter.h"
#include "formats/column_text/text_line.h"
#include "inspection/row_adaptor.h"
#include "inspection/source_lines.h"
#include "norva/import_export.h"
#include "platform/file_percent.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <deque>
#include <utility>
#include <vector>

namespace norva {

namespace {

/// Bytes of the lines that were read and are not told of yet: rows may come after lines that stand below them.
class CLineBytes {
public:
    void Add(std::uint64_t bytes) { m_bytes.push_back(bytes); }
    /// Bytes of `count` lines from `number` on, each of which is taken once.
    std::uint64_t Take(std::uint64_t number, std::uint64_t count) {
        std::uint64_t sum = 0;
        for (std::uint64_t line = number; line < number + count; ++line) {
            std::uint64_t& bytes = m_bytes[static_cast<std::size_t>(line - m_first)];
            sum += std::exchange(bytes, kTaken);
        }
        while (!m_bytes.empty() && m_bytes.front() == kTaken) {
            m_bytes.pop_front();
            ++m_first;
        }
        return sum;
    }

private:
    static constexpr std::uint64_t kTaken = UINT64_MAX;

    std::deque<std::uint64_t> m_bytes;
    std::uint64_t m_first = 1;  ///< number of the first line that is kept
};

/// Takes the rows and lines of a text, stores the values in column files and counts what became of each line.
class CReadingImport : private IAdaptedSink {
public:
    CReadingImport(ImportJob& job, ColumnTextSettings settings)
        : m_job(job),
          m_settings(std::move(settings)),
          m_report(m_settings.columns),
          m_converter(m_settings.columns, kRowDelimiters, {.upperCase = false}, m_dateTime, m_geographic, m_files,
                      m_report) {}

    Status Run(std::string const& textPath) {
        CSourceLines lines;
        if (Status status = lines.Open(textPath); !status) return status;
        if (Status status = CreateStore(m_job); !status) return status;
        CProgressWindow window("Loading data from the file", textPath);
        if (Status status = CreateColumnFiles(m_files, textPath, m_settings.columns.size()); !status) return status;
        if (Status status = ReadRows(window, lines, textPath); !status) return status;

        for (ReportLine const& profile : m_job.report.lines) {
            m_job.store->AddProfileToStructure(profile.name, static_cast<long>(profile.locations));
        }
        if (Status status = StartWriting(window, textPath, m_settings.columns, *m_job.store); !status) return status;
        if (Status status = HandOverColumns(window, m_files, m_settings.columns, *m_job.store); !status) return status;
        m_job.settings = std::move(m_settings);
        return {};
    }

private:
    struct Part {
        char const* name;
        std::uint64_t lines = 0;
        std::uint64_t bytes = 0;
    };

    Status ReadRows(CProgressWindow& window, CSourceLines& lines, std::string const& textPath) {
        CRowAdaptor adaptor(m_settings, *this);
        CFilePercent percent(lines.Length(), 1);
        std::string_view line;
        std::uint64_t offset = 0;
        bool goesOn = true;
        while (goesOn && lines.Next(line)) {
            if (percent.Changed(lines.Offset())) window.Reporter().FilePercent(percent.Value());
            m_bytes.Add(lines.Offset() - offset);
            offset = lines.Offset();
            goesOn = adaptor.Feed(line, lines.Number());
        }
        if (goesOn) adaptor.Finish();
        if (Status status = lines.Result(textPath); !status) return status;
        if (m_files.Failed()) return Shown(m_files.Error());
        if (m_report.LineCount() == 0) return Status::Failure("There are no data rows in the file", textPath);
        m_converter.Finish();
        FinishReport(lines.Length(), lines.Number());
        return {};
    }

    bool Row(AdaptedRow const& row) override {
        if (m_settings.labelColumn >= 0 && !row.label.empty() && row.label != m_label) {
            m_label = row.label;
            m_startsLine = true;
        }
        if (m_startsLine || m_report.LineCount() == 0) StartProfile(row.number);
        m_report.StartRow(row.source, row.number);
        bool const isJoined = row.mend.how == RowMend::How::NextLines;
        if (!isJoined && row.mend.how != RowMend::How::None) m_report.NoteRow(&ImportReport::mended);
        auto const more = isJoined ? std::ranges::count(row.source, '\n') : 0;
        Count(kRows, row.number, 1 + static_cast<std::uint64_t>(more));
        for (std::size_t i = 0; i < row.cells.size(); ++i) {
            if (!Store(static_cast<int>(i), row.cells[i])) return false;
        }
        return true;
    }

    bool Line(LineView const& line) override {
        PartOf const part = PartFor(line.kind);
        Count(part, line.number, 1);
        if (part == kMarkers) {
            m_label = line.label;
            m_startsLine = true;
        } else if (part == kLeftOut || part == kOtherTable) {
            m_report.GoTo(line.text, line.number);
            m_report.NoteRow(&ImportReport::leftOut);
        }
        return true;
    }

    bool Store(int column, AdaptedCell const& cell) {
        switch (cell.what) {
            case AdaptedCell::What::Value:
                return m_converter.Number(column, cell.value, cell.text);
            case AdaptedCell::What::Text:
                return m_converter.Text(column, cell.text);
            case AdaptedCell::What::Unreadable:
                return m_converter.Unreadable(column, cell.text);
            default:
                return m_converter.Missing(column, cell.text);
        }
    }

    void StartProfile(std::uint64_t number) {
        m_startsLine = false;
        std::string const name = m_label.empty() ? "LINE" + std::to_string(++m_unnamed) : m_label;
        m_report.StartLine(name, number);
        m_converter.StartLine();
    }

    enum PartOf { kRows, kMarkers, kComments, kRules, kEmpty, kAbove, kNamesAgain, kNothing, kLeftOut, kOtherTable };

    static PartOf PartFor(TableLine kind) {
        switch (kind) {
            case TableLine::Marker:
                return kMarkers;
            case TableLine::Comment:
                return kComments;
            case TableLine::Rule:
                return kRules;
            case TableLine::Blank:
                return kEmpty;
            case TableLine::Above:
                return kAbove;
            case TableLine::NamesAgain:
                return kNamesAgain;
            case TableLine::NothingAtEnd:
                return kNothing;
            case TableLine::Odd:
                return kLeftOut;
            default:
                return kOtherTable;
        }
    }

    void Count(PartOf part, std::uint64_t number, std::uint64_t lines) {
        m_parts[part].lines += lines;
        m_parts[part].bytes += m_bytes.Take(number, lines);
    }

    void FinishReport(std::uint64_t length, std::uint64_t lineCount) {
        std::uint64_t bytes = 0;
        for (Part const& part : m_parts) {
            bytes += part.bytes;
            if (part.lines > 0 || part.name == m_parts[kRows].name) m_report.AddPart(part.name, part.lines, part.bytes);
        }
        // A mark at the end of the file belongs to no line.
        if (bytes < length) m_report.AddPart("end mark", 0, length - bytes);
        m_report.AddSetting("read by", "a proposal from the whole file");
        m_report.AddSetting("lines by", m_settings.labelColumn < 0
                                            ? "markers"
                                            : "column " + std::to_string(m_settings.labelColumn + 1));
        m_job.report = m_report.Take("lines", lineCount, length, length);
    }

    ImportJob& m_job;
    ColumnTextSettings m_settings;
    CNorvaDateTime m_dateTime;
    CNorvaGeographic m_geographic;
    CColumnFiles m_files;
    CRowReport m_report;
    CRowConverter m_converter;
    CLineBytes m_bytes;
    std::string m_label;
    bool m_startsLine = false;
    int m_unnamed = 0;
    std::array<Part, 10> m_parts{{{"data rows"},
                                  {"markers"},
                                  {"comments"},
                                  {"rules"},
                                  {"empty"},
                                  {"above the data"},
                                  {"names again"},
                                  {"rows of nothing at the end"},
                                  {"left out"},
                                  {"another table"}}};
};

}  // namespace

Status ImportByReading(ImportJob& job, std::string const& textPath) {
    auto const& settings = std::get<ColumnTextSettings>(job.settings);
    if (!CRowAdaptor::CanRead(settings)) {
        return Status::Failure("The settings do not fit together", job.inputPath,
                               "Every column needs its reading, and every column of the file its look.");
    }
    return CReadingImport(job, settings).Run(textPath);
}

}  // namespace norva
