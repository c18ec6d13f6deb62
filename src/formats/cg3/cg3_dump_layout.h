#pragma once

#include "norva/import_report.h"
#include "norva/status.h"
#include "platform/line_reader.h"
#include "platform/tokens.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// Token separators of data lines.
inline constexpr CDelimiters kCG3DataDelimiters{" ,\t\n"};
/// Title of the column that stands for the A-lines.
inline constexpr std::string_view kCG3HeightTitle = "A:";

/// One survey line: a block with at least one data line.
struct CG3LineRecord {
    std::string name;
    long locationCount = 0;
    std::uint64_t dataStart = 0;  ///< offset of the block's column title line
    std::uint64_t titleLine = 0;  ///< the number of that line, from 1
};

/// How a CG3 dump is laid out. A dump is a sequence of blocks: a header between two dash lines, a line of column
/// titles, data lines up to the next dash line, each perhaps followed by an A-line (a height).
struct CG3DumpLayout {
    std::vector<std::string> lineNames;  ///< as the block headers give them
    std::vector<std::string> dates;
    std::vector<CG3LineRecord> profiles;
    /// Column titles in file order, the A-lines' last.
    std::vector<std::string> titles;
    std::size_t valueCount = 0;  ///< values of a data line
    bool hasALines = false;
    std::uint64_t lineCount = 0;
    std::uint64_t byteCount = 0;
    std::vector<ReportPart> parts;  ///< the lines of all kinds but those between a profile's titles and its dash line
};

/// Whether the line bounds a block header.
bool IsCG3DashLine(std::string_view line);

/// Reads the blocks and the column titles of a dump. False only after a read error.
bool ReadCG3DumpLayout(CLineReader& file, CG3DumpLayout& layout);
/// The same of a file that is not open. Fails also when it has no line of column titles.
Status ReadCG3DumpLayout(std::string const& path, CG3DumpLayout& layout);

}  // namespace norva
