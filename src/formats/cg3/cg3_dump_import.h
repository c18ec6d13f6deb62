#pragma once

#include "exchange/column_files.h"
#include "exchange/import_format.h"
#include "exchange/row_report.h"
#include "formats/cg3/cg3_dump_layout.h"
#include "norva/converters.h"
#include "norva/file_util.h"
#include "platform/line_reader.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// Imports the text dump of a CG3 gravity meter: a profile for every survey line, a channel for every column that the
/// user chooses, "Height" from the A-lines, "Date" from the block headers.
class CCG3DumpImport {
public:
    explicit CCG3DumpImport(ImportJob& job) : m_job(job), m_store(*job.store), m_inputPath(job.inputPath) {}

    /// Imports into the store, which is open for writing; written and closed after a success.
    Status Import();

private:
    /// What becomes of the values at one position of a data line.
    struct Column {
        enum class Kind { Number, Time, Text, Short };

        std::size_t position = 0;
        int channel = 0;
        Kind kind = Kind::Number;
        std::size_t width = 0;  ///< characters of a text
        double minimum = std::numeric_limits<double>::infinity();
        double maximum = -std::numeric_limits<double>::infinity();
        double previous = -std::numeric_limits<double>::infinity();  ///< of a time, in the same line
    };
    /// The lines between a profile's titles and its dash line.
    enum DataPart { kDataRows, kHeights, kEmpty, kLeftOut };

    Status OpenInput();
    Status ObtainSettings();
    void DescribeChannels();
    /// The channel of a column; `column` receives what becomes of its values.
    NorvaChannelStruct DescribeColumn(Column& column) const;
    /// Gives every text channel the largest length, and at least 8, of its texts; false after a read error.
    bool MeasureTexts();
    Status ParseData();
    void ParseProfile(CG3LineRecord& profile);
    /// A line of a profile's data, which is not empty.
    DataPart ParseDataLine(CG3LineRecord& profile, std::string_view line, std::uint64_t number);
    void WriteValue(Column& column, std::string_view token);
    void WriteNumber(Column& column, std::string_view token);
    /// What the token says, 0 when nothing, with what is to be said of it noted; outside the range for no-data.
    double NumberOf(Column& column, std::string_view token);
    void WriteTime(Column& column, std::string_view token);
    void WriteShort(Column& column, std::string_view token);
    void WriteDouble(int channel, double value);
    void WriteText(Column const& column, std::string_view token);
    /// The data line that waits for its height, if there is one, has none.
    void MissHeight();
    void WriteDates(std::size_t profile);
    Status WriteStore();
    Status Convert();
    /// Sorts the finished store, or an older one where nothing was written.
    void Sort(std::string const& storePath, bool isWritten);
    void StartReport();
    ImportReport Report(bool isSorted);
    ReportChannel& Found(Column const& column) { return m_report->Channel(column.channel); }
    Status ReadFailure() const { return Status::FileFailure("read", m_inputPath, m_file.Error()); }
    /// Goes to the first data line of a profile, an error before forgotten.
    bool SeekData(CG3LineRecord const& profile);
    /// The next line of a profile's data, trimmed and not empty; false at the next dash line or the end of the file.
    bool NextDataLine(std::string_view& line);

    ImportJob& m_job;
    CNorvaFileUtil& m_store;
    std::string const& m_inputPath;
    Cg3Settings m_settings;
    CLineReader m_file;
    CG3DumpLayout m_layout;
    std::vector<NorvaChannelStruct> m_channels;
    std::vector<Column> m_columns;
    int m_heightChannel = -1;
    int m_timeChannel = -1;
    CNorvaDateTime m_dateTime;
    CColumnFiles m_columnFiles;
    std::vector<std::string_view> m_tokens;
    std::string m_text;
    Column m_height;
    Column m_date;
    std::uint64_t m_heightRow = 0;  ///< number of the data line that waits for its height; 0 for none
    std::optional<CRowReport> m_report;
    std::array<ReportPart, 4> m_parts{
        {{"data rows", 0, 0}, {"heights", 0, 0}, {"empty", 0, 0}, {"neither reading nor height", 0, 0}}};
};

}  // namespace norva
