#pragma once

#include "norva/api.h"
#include "norva/values.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// What an import made of every byte, row and value of its source.
namespace norva {

/// A place in the source.
struct ReportPlace {
    std::uint64_t line = 0;    ///< from 1
    std::uint64_t column = 0;  ///< byte of the line, from 1; 0 where only the line is known
    std::string text{};        ///< as it stands there, its first 200 bytes at most
};

/// How often something was found, and where first.
struct ReportFinding {
    static constexpr std::size_t kUsualPlaces = 5;  ///< kept where nobody asks for more or fewer

    std::uint64_t count = 0;
    std::vector<ReportPlace> places{};
};

/// A share of the source that was treated in one way.
struct ReportPart {
    std::string name;
    std::uint64_t count = 0;  ///< in the report's unit
    std::uint64_t bytes = 0;
};

/// One channel of the store. Whatever is not found below was taken as it stands, texts in upper case.
struct ReportChannel {
    int column = 0;  ///< of the source, from 1; 0 for a channel that was added
    NorvaChannelStruct settings{};
    std::uint64_t values = 0;    ///< all of them, those without data too
    ReportFinding noData{};      ///< marked in the source as missing
    ReportFinding missing{};     ///< the row ended before; stored as no-data (a text as "*")
    ReportFinding outOfRange{};  ///< too large for the type; stored as no-data
    /// Stored as another number, where a source's bytes are converted as they come: too large for the type, or marked
    /// as missing in a way that the type does not have.
    ReportFinding altered{};
    ReportFinding notNumber{};     ///< NaN, stored as it stands
    ReportFinding unreadable{};    ///< no digits: a number is stored as 0, a date, time or coordinate as no-data
    ReportFinding withRest{};      ///< a number followed by something else, which was ignored
    ReportFinding withFraction{};  ///< a whole-number channel dropped the digits after the point
    ReportFinding rounded{};       ///< numbers that, written with as many digits, are not what the source has
    ReportFinding cut{};           ///< texts longer than the channel
    ReportFinding dropped{};       ///< values for which the format gives the store no location
    ReportFinding backwards{};     ///< a time, date or fiducial below the one before it in its line
    bool hasRange = false;         ///< whether there are a minimum and a maximum
    double minimum = 0;
    double maximum = 0;
};

/// One line (profile) of the store.
struct ReportLine {
    std::string name;
    std::uint64_t locations = 0;
    std::uint64_t sourceLine = 0;  ///< of its first location
    bool isRepeated = false;       ///< a line before has the same name
};

struct ReportSetting {
    std::string name;
    std::string value;
};

struct NORVA_API ImportReport {
    std::string sourcePath;
    std::uint64_t sourceSize = 0;
    std::string sourceSha256;  ///< 64 hexadecimal digits; empty unless asked for
    std::string format;        ///< label in the format list
    std::string norvaVersion;
    std::vector<ReportSetting> settings;
    std::vector<NorvaChannelStruct> columns;  ///< how each column was to be read, skipped ones too

    std::string unit;  ///< what the parts count: "lines", "records"
    std::uint64_t unitsRead = 0;
    std::uint64_t bytesRead = 0;
    std::vector<ReportPart> parts;

    std::vector<ReportChannel> channels;
    std::vector<ReportLine> lines;
    ReportFinding fewerValues;      ///< rows with fewer values than columns
    ReportFinding moreValues;       ///< rows with more; the surplus was ignored
    ReportFinding mended;           ///< rows that were split otherwise than the rows around them; no loss
    ReportFinding cutRecords;       ///< a binary source ends inside them
    ReportFinding leftOut;          ///< data that belongs to no line or channel, and so is not in the store
    ReportFinding doubtfulMarkers;  ///< taken as the start of a line, but may have been rows of data
    ReportFinding shifted;          ///< rows with an empty cell, behind which the values stand one column to the left
    ReportFinding split;            ///< rows with a value that its separators cut in pieces
    ReportFinding skippedRows;      ///< lines skipped at the top that read as data
    ReportFinding doubtfulNames;    ///< rows and markers whose line may have been given a wrong name
    ReportFinding joined;           ///< tracks or waypoints that continue a line that is not theirs

    /// Whether the parts add up to what was read, that to the whole source, and every channel to the locations.
    bool IsAccounted() const;
    /// Values and rows that did not reach the store as they stand in the source.
    std::uint64_t LossCount() const;
    std::uint64_t LocationCount() const;
    std::uint64_t RepeatedLines() const;
};

/// A kind of finding about values: its name in reports, and whether it is a loss.
struct ReportKind {
    char const* name;
    char const* text;
    ReportFinding ReportChannel::*finding;
    bool isLoss;
};
/// All kinds; ends with a kind without a name.
NORVA_API extern ReportKind const kReportKinds[];

/// A kind of finding about rows, as ReportKind.
struct ReportRowKind {
    char const* name;
    char const* text;
    ReportFinding ImportReport::*finding;
    bool isLoss;
};
/// All kinds; ends with a kind without a name.
NORVA_API extern ReportRowKind const kReportRowKinds[];

/// Copies the report of this thread's last Import_Data_File: 1, or 0 when that import failed or there was none. With
/// `withChecksum` 1 the source is read once more for its SHA-256, and 0 also tells that this failed
/// (GetLastErrorText() says why). ImportFile has a report in its result.
NORVA_API int GetImportReport(ImportReport& report, int withChecksum);
/// The SHA-256 of a file as 64 hexadecimal digits: 1, or 0 with the reason in GetLastErrorText().
NORVA_API int GetFileSha256(std::string const& path, std::string& digits);

}  // namespace norva
