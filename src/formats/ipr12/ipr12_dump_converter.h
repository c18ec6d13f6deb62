#pragma once

#include "formats/column_text/converted_import.h"
#include "norva/file_description.h"
#include "platform/files.h"
#include "platform/line_reader.h"
#include "platform/text.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// Rewrites an IPR_12 multi-channel dump as column text: a title row, a marker line for every survey line, then a row
/// a reading.
///
/// A dump is a header block, closed by a line of "*", then station groups: a line of positions, a line of station
/// values, then readings of three lines each. Further survey lines begin with a header block that "---" opens.
class CIPR12DumpConverter {
public:
    /// A failure has been shown, but for an output that cannot be created, which is silent.
    Status ConvertToXYZ(std::string const& inputPath, std::string const& outputPath);
    /// What ConvertToXYZ made of the dump.
    ConvertedSource TakeSource();
    /// Counts what the dump holds, by the same reading.
    Status Describe(std::string const& inputPath, FileDescription& description);

    static constexpr std::size_t kSlots = 9;
    using Slots = std::array<std::string_view, kSlots>;

    /// Reads a line of a reading into its slots: up to seven values right-aligned in slots 0 to 6, then, after a "|",
    /// one or two right-aligned in slots 7 and 8. The others are "*". They last as long as the line.
    /// False when it has more than they take.
    static bool ReadSlots(std::string_view line, Slots& slots);
    /// A position as a signed number: 100N gives 100, 25W gives -25, 100S+25 gives -100.
    static std::string ConvertPosition(std::string_view value);
    /// The part of a line name before its first "+".
    static std::string_view ConvertLineName(std::string_view name);

private:
    using Strings = std::vector<std::string>;
    enum class Group { None, Inside, Readings };
    /// Kinds of lines of the dump.
    enum Part { kHeaders, kStations, kReadings, kEmpty, kLeftOut };
    static std::array<ReportPart, 5> const kNoLines;

    bool CheckFormat();
    Status TooManyStationValues(std::string const& inputPath) const;
    void ReadHeader();
    void WriteTitles(CReplacementFile& output);
    /// Without an output the readings are counted only. Stops at a station line of too many values.
    void ConvertData(CReplacementFile* output);
    /// Reads a header block inside the data, up to its line of "*", and writes the marker of the line it names.
    void StartSurveyLine(CReplacementFile* output);
    /// Reads the two lines after a record line and writes the row.
    void ConvertReading(CReplacementFile* output);
    std::string_view PositionForReading(std::size_t index) const;

    /// The next line that is not empty, trimmed and split; false at the end of the file.
    bool NextLine();
    bool ReadLine(std::string_view& line);
    /// What the lines since the last call are, empty ones apart.
    void CountAs(Part part);
    void CountEmptyLine();
    /// Notes a line of the dump of which something or all is not in the store.
    void NoteLine(ReportFinding& finding, std::string_view line);
    std::string_view Token(std::size_t index) const;
    bool TokenContains(std::string_view text) const;
    /// Replaces `values` by the tokens from `first` on.
    void KeepTokens(std::size_t first, Strings& values) const;

    CLineReader m_file;
    std::string_view m_line;                 ///< read last by NextLine
    std::vector<std::string_view> m_tokens;  ///< of that line
    Strings m_stationTitles;
    Strings m_channelTitles;
    Strings m_voltageTitles;
    Strings m_firstReadingTitles;
    Strings m_secondReadingTitles;
    Strings m_positions;
    Strings m_stationValues;
    Strings m_recordValues;
    std::string m_firstReadingLine;
    Slots m_firstReadingValues;
    Slots m_secondReadingValues;
    std::string m_lineName;
    std::string m_lineCoordinate;
    std::size_t m_readingNumber = 0;  ///< within the station group, from 1
    struct SurveyLine {
        std::string name;
        std::int64_t readings = 0;
    };
    std::vector<SurveyLine> m_surveyLines;
    std::int64_t m_stationGroups = 0;
    std::uint64_t m_wideStationLine = 0;  ///< the line that has too many values; 0 for none
    ConvertedSource m_source;
    std::array<ReportPart, 5> m_parts = kNoLines;
    std::uint64_t m_lineNumber = 0;  ///< of the line read last, from 1
    std::uint64_t m_lineBytes = 0;   ///< of that line
    std::uint64_t m_pending = 0;     ///< lines that do not count as anything yet
    std::uint64_t m_pendingBytes = 0;
    std::uint64_t m_textLines = 0;  ///< written
    std::vector<TextField> m_fields;
    std::string m_row;
};

}  // namespace norva
