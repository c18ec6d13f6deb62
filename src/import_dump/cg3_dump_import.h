#pragma once

#include "import_dump/cg3_dump_layout.h"
#include "norva/converters.h"
#include "norva/file_util.h"
#include "platform/line_reader.h"
#include "store/column_files.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// Imports the text dump of a CG3 gravity meter: a profile for every survey line, a channel for every column that the
/// user chooses, "Height" from the A-lines, "Date" from the block headers.
class CCG3DumpImport {
public:
    CCG3DumpImport() = default;

    void SetInputPath(std::string path) { m_inputPath = std::move(path); }
    /// Imports into the store, which is open for writing. 1: written and closed; 0: cancelled or failed.
    int Import(CNorvaFileUtil* store);

private:
    /// What becomes of the values at one position of a data line.
    struct Column {
        enum class Kind { Number, Time, Text, Short };

        std::size_t position = 0;
        int channel = 0;
        Kind kind = Kind::Number;
        std::size_t width = 0;  ///< characters of a text
    };

    void SelectDefaultColumns();
    void DescribeChannels();
    /// The channel of a column; `column` receives what becomes of its values.
    NorvaChannelStruct DescribeColumn(Column& column) const;
    /// Gives every text channel the largest length, and at least 8, of its texts; false after a read error.
    bool MeasureTexts();
    bool ParseData();
    void ParseProfile(CG3LineRecord& profile);
    void WriteValue(Column const& column, std::string_view token);
    void WriteDouble(int channel, double value);
    void WriteText(Column const& column, std::string_view token);
    /// Gives the last data line its height, if it still waits for one.
    void WriteHeight(double value);
    void WriteDates(std::size_t profile);
    bool WriteStore();
    /// Shows why the dump cannot be read; 0.
    int FailReading() const;
    /// Goes to the first data line of a profile, an error before forgotten.
    bool SeekData(CG3LineRecord const& profile);
    /// The next line of a profile's data, trimmed and not empty; false at the next dash line or the end of the file.
    bool NextDataLine(std::string_view& line);

    CNorvaFileUtil* m_store = nullptr;
    std::string m_inputPath;
    CLineReader m_file;
    CG3DumpLayout m_layout;
    std::vector<int> m_importFlags;  ///< one a title
    std::vector<NorvaChannelStruct> m_channels;
    std::vector<Column> m_columns;
    int m_heightChannel = -1;
    int m_timeChannel = -1;
    int m_dateFormat = -1;
    int m_timeFormat = -1;
    CNorvaDateTime m_dateTime;
    CColumnFiles m_columnFiles;
    std::vector<std::string_view> m_tokens;
    std::string m_text;
    bool m_awaitsHeight = false;
};

}  // namespace norva
