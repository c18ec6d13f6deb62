#pragma once

#include "norva/api.h"
#include "norva/settings.h"
#include "norva/status.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// A proposal for the import of a text file, from the whole of the file, with the reason for every choice.
namespace norva {

/// What a person settles beforehand; all else is found out.
struct InspectionOptions {
    std::optional<std::string> dates{};         ///< "dmy", "mdy" or "ymd" where dates allow it
    std::vector<double> noData{};               ///< numbers that stand for a missing value, however rare
    std::vector<double> keep{};                 ///< numbers that do not
    std::vector<std::string> markerWords{};     ///< further words that start a line of the survey
    bool findsMarkers = true;                   ///< false: no other words do
    std::optional<int> labelColumn{};           ///< column of the file whose changes start a line, from 0; -1: none
    std::optional<char> separator{};            ///< as in TextReading
    std::optional<std::uint64_t> headerLine{};  ///< line of the file that holds the names, from 1; 0: none
    std::vector<int> textColumns{};             ///< columns of the file, from 0, that are stored as texts
};

/// One choice and why it was made.
struct InspectionFinding {
    std::string subject{};   ///< "separator", "header line", or the name of a column
    std::string choice{};    ///< "semicolon", "31", "double"
    std::string evidence{};  ///< a sentence with counts and line numbers
    bool isDoubt = false;    ///< another reading suits as well, or nearly so
    std::string option{};    ///< of the command line, which would settle the doubt; or empty

    bool operator==(InspectionFinding const&) const = default;
};

/// A line that does not agree with the table.
struct InspectedLine {
    enum class What {
        Mended,      ///< stored, read otherwise than the rows around it
        LeftOut,     ///< not stored
        OtherTable,  ///< not stored; this line and those up to `last` have another width
        SpoiltCell   ///< stored with one missing value
    };

    std::uint64_t line = 0;  ///< from 1
    std::uint64_t last = 0;  ///< the same for a single line
    What what = What::LeftOut;
    std::string text{};    ///< of the line or the cell, cut to a length that can be shown
    std::string reason{};  ///< "11 parts needed, 12 found: one separator too many before part 4, read without it"

    bool operator==(InspectedLine const&) const = default;
};

/// Lines of the file, and what they are. They sum up to all lines.
struct InspectionCounts {
    std::uint64_t lines = 0;
    std::uint64_t rows = 0;       ///< that an import stores, in one or more lines each
    std::uint64_t mended = 0;     ///< of the rows
    std::uint64_t continued = 0;  ///< lines that go on with a quoted text
    std::uint64_t leftOut = 0;    ///< lines that suit the table in no reading
    std::uint64_t otherTable = 0;
    std::uint64_t above = 0;  ///< names, units and text above the data
    std::uint64_t markers = 0;
    std::uint64_t comments = 0;
    std::uint64_t rules = 0;
    std::uint64_t blank = 0;
    std::uint64_t namesAgain = 0;
    std::uint64_t nothingAtEnd = 0;  ///< rows of empty cells behind the data

    bool operator==(InspectionCounts const&) const = default;
};

struct Inspection {
    ColumnTextSettings settings{};
    std::uint64_t headerLine = 0;  ///< line of the names, the last of them; 0: none
    std::uint64_t unitLine = 0;    ///< 0: none
    std::vector<InspectionFinding> findings{};
    std::vector<InspectedLine> lines{};      ///< in the order of the file, the first thousand
    std::vector<std::string> surveyLines{};  ///< labels of the first lines of the survey
    InspectionCounts counts{};
    bool isTable = false;      ///< the file reads as rows of one table
    bool isConverted = false;  ///< the rows are made of a file that has neither separators nor names of its own

    /// How many findings are doubts. Lines that do not agree do not count.
    NORVA_API std::size_t Doubts() const;
    /// One line for each finding and each line that does not agree; "? " in front of doubts.
    NORVA_API std::string Text() const;
};

/// Reads the file once, in bounded memory, and proposes how to import it. Fails, with nothing in `inspection`, when the
/// file cannot be read or is no text.
NORVA_API Status InspectTextFile(std::string const& path, InspectionOptions const& options, Inspection& inspection);

/// The same for a file of any format that becomes column text; `format` is a label of the format list, empty:
/// recognised. Options that the format itself settles are not looked at. Fails for other formats.
NORVA_API Status InspectFile(std::string const& path, std::string const& format, InspectionOptions const& options,
                             Inspection& inspection);

/// One cell as settings read it.
struct InspectedCell {
    enum class What { Value, Missing, Unreadable };  ///< unreadable: stored as missing, and counted in the report

    What what = What::Value;
    std::string text{};  ///< as it stands in the file, a text without its quotes

    bool operator==(InspectedCell const&) const = default;
};

struct InspectedRow {
    std::uint64_t line = 0;              ///< of the file, from 1
    std::string surveyLine{};            ///< label of the line of the survey that it belongs to, where it has one
    std::vector<InspectedCell> cells{};  ///< one per entry of the settings' columns

    bool operator==(InspectedRow const&) const = default;
};

/// The first rows of a text file, at most `most`, as an import by the settings reads them. The settings need `reading`.
NORVA_API Status ReadFirstRows(std::string const& path, ColumnTextSettings const& settings, std::size_t most,
                               std::vector<InspectedRow>& rows);

}  // namespace norva
