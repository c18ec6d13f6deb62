#pragma once

#include "norva/api.h"
#include "norva/values.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

/// What a person chooses in the windows of an import or an export, as plain data with defaults.
namespace norva {

/// How a text file is to be read where the first rows alone do not say it. Members that are not set leave the rules of
/// the format list's text formats: separators by the file's extension, "." as decimal mark, "*" for a missing value.
struct TextReading {
    enum class Encoding { Utf8, Latin1, Utf16Little, Utf16Big };

    Encoding encoding = Encoding::Utf8;
    char separator = ' ';            ///< ',', ';', '\t', '|', ' ' for runs of blanks and tabs, '\0' for one column
    char quote = '\0';               ///< '"', '\'' or none
    bool backslashQuote = false;     ///< a quote inside of quotes is written \" and not doubled
    bool quotesEveryRow = false;     ///< texts are quoted in nearly every row, so that a row without is odd
    char decimalMark = '.';          ///< '.' or ',' where most numbers have it; both are read but with ','
    int width = 0;                   ///< cells of a row
    bool trailingSeparator = false;  ///< every row ends in a separator
    std::vector<std::string> commentMarks{};  ///< lines that begin so are comments
    std::vector<std::string> missing{};       ///< cells that stand for a missing value in every column, "" among them
    std::uint64_t firstDataLine = 1;          ///< line of the file, from 1
    std::uint64_t firstMarkerLine = 1;        ///< lines that start a line of the survey may stand above the data, too
    std::string headerText{};                 ///< the line of the names, which may come again further down; or empty
    std::vector<std::string> markerWords{};   ///< words that start a line of the survey, upper case; none: no markers

    bool operator==(TextReading const&) const = default;
};

/// What most cells of one column of a file look like: what a row is held against to tell whether it agrees.
struct ColumnLook {
    enum class Kind { Empty, Text, Number, Date, Time, DateTime, Position };

    Kind kind = Kind::Text;
    int usualLength = 0;     ///< of a text
    bool hasBlanks = false;  ///< inside of most texts
    bool hasDigits = false;  ///< in most texts
    bool isQuoted = false;   ///< most texts
    std::string suffix{};    ///< behind every number: a unit or a sign

    bool operator==(ColumnLook const&) const = default;
};

/// What one channel of a text file needs beyond its description.
struct ColumnReading {
    enum class Form {
        Plain,     ///< a number or a text
        Date,      ///< in parts, or with the name of the month
        Time,      ///< hours and minutes, seconds and their fraction
        DateTime,  ///< date and time in one cell; the channel takes the part that its display format names
        DayOfYear,
        CompactDate,   ///< YYYYMMDD
        CompactTime,   ///< HHMMSS with or without a fraction
        EpochSeconds,  ///< since 1970-01-01 UTC; the channel takes date or time
        Degrees,       ///< degrees, or degrees and minutes, or all three, with signs or letters
        PackedMinutes  ///< ddmm.mmmm
    };

    int source = 0;  ///< column of the file, from 0; two channels may read one column
    Form form = Form::Plain;
    std::string order{};                 ///< of a date's parts: "dmy", "mdy", "ymd"
    std::vector<std::string> missing{};  ///< numbers of this column that stand for a missing value
    std::int64_t epochDivisor = 1;       ///< 1000 for milliseconds

    bool operator==(ColumnReading const&) const = default;
};

/// Column text: XYZ, CSV, GEM and CG-5 files, and GPX and IPR_12 files once they are rows.
struct ColumnTextSettings {
    int skip = 0;                               ///< lines with text that are left out at the start of the file
    std::vector<NorvaChannelStruct> columns{};  ///< one per channel; DataType::kSkipped for one that is not imported
    int labelColumn = -1;                       ///< column whose changes start a new line of the survey; -1: by markers
    std::optional<TextReading> reading{};       ///< none: as the text formats read
    std::vector<ColumnReading> columnReadings{};  ///< one per entry of `columns` where `reading` is set
    std::vector<ColumnLook> looks{};              ///< one per column of the file where `reading` is set

    bool operator==(ColumnTextSettings const&) const = default;
};

/// A SeaSPY log.
struct SeaSpySettings {
    std::vector<NorvaChannelStruct> columns{};  ///< one per field; empty: all fields as the log has them
    bool interpolated = false;                  ///< keep coordinates that the logger interpolated

    bool operator==(SeaSpySettings const&) const = default;
};

/// A gravity meter dump (CG3).
struct Cg3Settings {
    /// Places of the columns to import in the dump's column list, from 0, see ListCg3File(); none: the usual ones.
    std::optional<std::vector<int>> columns{};
    int dateFormat = 1;      ///< code of a date template
    int timeFormat = 1;      ///< code of a time template
    bool sortByTime = true;  ///< sort every line by its time channel, where one is imported

    bool operator==(Cg3Settings const&) const = default;
};

/// One channel of a fixed-length binary record.
struct RecordChannel {
    enum class Format { None, Int32, Float, Double, Int16 };

    std::string name{};
    std::string units{};
    Format format = Format::None;     ///< in the file, little-endian; None: not said yet
    int dataType = DataType::kFloat;  ///< in the store: float, double, long or short

    bool operator==(RecordChannel const&) const = default;
};

/// A file of fixed-length binary records.
struct RecordSettings {
    std::vector<RecordChannel> channels{};
    /// None: as many as the file holds, a partial last one included. More than that are filled with missing values.
    std::optional<std::int64_t> records{};
    std::optional<std::int64_t> pointsPerLine{};  ///< none: all in one line
    bool fiducial = true;                         ///< add a channel of the time since the first record, in seconds
    int frequency = 1;                            ///< records per second, for the fiducial

    bool operator==(RecordSettings const&) const = default;
};

/// A GBN file. Places are those of ListGbnFile(), from 0; lists that are not set mean all. The store takes lines and
/// channels in the order of the file.
struct GbnSettings {
    struct Channel {
        int number = 0;  ///< place in the file's channel list
        std::optional<std::string> name{};
        std::optional<std::string> units{};
        std::optional<int> dataType{};

        bool operator==(Channel const&) const = default;
    };
    struct Line {
        int number = 0;  ///< place in the file's line list
        std::string name{};

        bool operator==(Line const&) const = default;
    };

    std::optional<std::vector<int>> lines{};     ///< places in the file's line list
    std::optional<std::vector<int>> channels{};  ///< places in the file's channel list
    std::vector<Channel> changes{};              ///< what channels are called and become other than as they stand
    std::vector<Line> lineNames{};               ///< lines that are called other than in the file
    bool fiducial = true;                        ///< add a channel of fiducials

    bool operator==(GbnSettings const&) const = default;
};

/// Settings of one import. The empty state stands for what the format's window would open with.
using ImportSettings =
    std::variant<std::monostate, ColumnTextSettings, SeaSpySettings, Cg3Settings, RecordSettings, GbnSettings>;

/// Which settings an import takes: the place in ImportSettings.
enum class SettingsKind { None, ColumnText, SeaSpy, Cg3, Records, Gbn };

/// What an export writes, and how. Label, point number and digits are of XYZ files and worksheets, units of XYZ and CSV
/// files; the others have no place for them. A CSV file has the line's name in its first column and every digit anyway.
struct ExportSettings {
    std::optional<std::vector<int>> lines{};     ///< profile numbers of the store in output order; none: all shown ones
    std::optional<std::vector<int>> channels{};  ///< places in the store's channel order, in output order; none: all
    bool labelAsChannel = false;                 ///< the line's name in a column of its own
    bool pointId = false;                        ///< a point number in a column of its own
    bool units = true;                           ///< units in the column titles, where there are any
    bool unitRow = false;                        ///< of CSV: units in a row of their own below the titles
    bool writeOversized = false;                 ///< write a sheet that its readers cannot hold whole
    bool fullDigits = false;                     ///< as many digits as a number needs to read back the same

    bool operator==(ExportSettings const&) const = default;
};

}  // namespace norva
