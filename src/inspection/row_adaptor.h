#pragma once

#include "inspection/source_lines.h"
#include "inspection/table_reader.h"
#include "norva/settings.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// One cell as a store takes it.
struct AdaptedCell {
    enum class What : unsigned char {
        Missing,
        Value,      ///< `value`: a number, a date in years, a time in hours, degrees
        Text,       ///< UTF-8, without quotes
        Unreadable  ///< neither a value of the channel nor a mark: to be stored as missing, and reported
    };
    What what = What::Missing;
    double value = 0;
    std::string_view text;  ///< as the file writes it (for Text in UTF-8): what a report shows
};

struct AdaptedRow {
    std::uint64_t number = 0;            ///< line of the file, from 1; the first of a row over several lines
    std::string_view source;             ///< the line as it stands
    std::span<AdaptedCell const> cells;  ///< one per entry of the settings' columns; skipped ones are Missing
    std::string_view label;              ///< of the label column; empty without one
    RowMend mend;
};

/// Takes rows and markers in the order of the file. Views last until the call returns; false ends the reading.
class IAdaptedSink {
public:
    virtual ~IAdaptedSink() = default;
    virtual bool Row(AdaptedRow const& row) = 0;
    virtual bool Line(LineView const& line) = 0;
};

/// Turns the lines of a text file, by settings whose `reading` is set, into cells that a text importer stores: split,
/// odd rows mended or left out, missing values told from values, dates, times and positions converted. What is a row
/// and how it is split is decided by the reader that inspections use.
class CRowAdaptor : private IRowSink {
public:
    /// Both have to outlive the adaptor. The settings need `reading`, one column reading per column and their looks.
    CRowAdaptor(ColumnTextSettings const& settings, IAdaptedSink& sink);

    /// Whether the settings fit together: to be asked before the first line is fed.
    static bool CanRead(ColumnTextSettings const& settings);
    /// The lines of a CSourceLines, in order. False once the sink has ended the reading.
    bool Feed(std::string_view line, std::uint64_t number);
    bool Finish();

private:
    struct Plan {
        ColumnReading const* reading = nullptr;
        std::size_t source = 0;
        CellKind kind = CellKind::Missing;  ///< what the cells read as; Missing for a skipped channel
        bool isRead = false;                ///< by the table reader
        bool isDate = false;                ///< the channel takes the date of a cell with date and time
        unsigned order = 0;
        std::vector<double> missing;
        // Rows of one day follow each other.
        DateText date;
        double year = 0;
    };

    void Row(RowView const& row) override;
    void Line(LineView const& line) override;
    void Adapt(Plan& plan, CellPart const& part, CellRead const& read, AdaptedCell& cell);
    double NumberAs(Plan const& plan, double number, bool& isRead) const;
    std::string_view TextOf(CellPart const& part, std::string& buffer);

    ColumnTextSettings const& m_settings;
    IAdaptedSink& m_sink;
    SplitRule m_rule;
    CellRules m_cellRules;
    std::vector<Plan> m_plans;
    std::vector<AdaptedCell> m_cells;
    std::vector<std::string> m_buffers;  ///< texts that differ from what the line holds
    std::string m_plain;
    std::string m_label;
    CellRead m_read;
    CTableReader m_reader;
    bool m_goesOn = true;
};

}  // namespace norva
