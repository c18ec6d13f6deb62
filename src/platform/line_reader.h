#pragma once

#include "platform/files.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// Reads a text file line by line through one buffer. LF, CR LF and CR end a line; a last line needs no end; lines
/// of any length; a UTF-8 byte order mark at the start is skipped.
class CLineReader {
public:
    /// `bufferSize` is where reading starts from; it grows with the longest line.
    explicit CLineReader(std::size_t bufferSize = 256 * 1024);

    /// False with Error() set. A folder cannot be opened.
    bool Open(std::string const& path);
    void Close();
    bool IsOpen() const { return m_file.IsOpen(); }
    int Error() const { return m_error; }

    /// The next line without its end; false at the end of the file or after a read error (Error() is then not 0).
    /// The view lasts until the next call.
    bool Next(std::string_view& line);
    /// Offset just after the line (with its end) that Next gave last, or that Seek went to.
    std::uint64_t Offset() const { return m_offset; }
    /// A line that is longer ends the reading with EMSGSIZE as its error, before much more of it is in memory.
    void LimitLines(std::size_t bytes) { m_longestLine = bytes; }
    /// Length of the file when it was opened.
    std::uint64_t Length() const { return m_length; }
    bool Seek(std::uint64_t offset);
    bool Rewind() { return Seek(0); }
    /// Whether the file begins with the byte order mark of UTF-16 (or of little-endian UTF-32), which is no text to
    /// this reader.
    bool StartsWithUtf16Mark();

private:
    void Forget(std::uint64_t offset);
    bool Fill();
    std::size_t FindEnd(std::size_t scanned);

    static constexpr std::size_t kUnknown = static_cast<std::size_t>(-1);

    CFile m_file;
    std::vector<char> m_buffer;
    std::size_t m_bufferSize;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    std::size_t m_lineFeed = kUnknown;  ///< next line feed from m_begin on, m_end for none
    std::uint64_t m_offset = 0;
    std::uint64_t m_length = 0;
    std::size_t m_longestLine = kUnknown;
    int m_error = 0;
    bool m_atEnd = false;
};

}  // namespace norva
