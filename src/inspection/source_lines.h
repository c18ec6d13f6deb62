#pragma once

#include "norva/settings.h"
#include "norva/status.h"
#include "platform/files.h"
#include "platform/line_reader.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// Lines of a text file in any of the encodings that are read. UTF-16 comes as UTF-8, other bytes come as they are; a
/// last control-Z is taken off.
class CSourceLines {
public:
    /// The mark at the start of the file tells UTF-16; other files count as UTF-8.
    Status Open(std::string const& path);
    TextReading::Encoding Encoding() const { return m_encoding; }
    bool HasMark() const { return m_hasMark; }
    std::uint64_t Length() const { return m_lines.Length(); }

    /// The next line without its end. The view lasts until the next call.
    bool Next(std::string_view& line);
    /// Number of the line that Next gave last, from 1; not known after Seek.
    std::uint64_t Number() const { return m_number; }
    /// Offset behind that line; for UTF-16 how far the file was read.
    std::uint64_t Offset() const;
    bool CanSeek() const { return m_encoding == TextReading::Encoding::Utf8; }
    /// Goes to the start of the first line that begins after `offset`. Only where CanSeek.
    bool SeekLineAfter(std::uint64_t offset);
    bool Rewind();
    /// Lines are at most so long: what has none that end is no table, and is not to fill the memory.
    static constexpr std::size_t kLongestLine = 4 * 1024 * 1024;
    bool HasFailed() const { return Error() != 0; }
    /// Why reading ended before the end of the file at `path`; success when it did not.
    Status Result(std::string const& path) const;

private:
    int Error() const;
    bool NextWide(std::string_view& line);
    bool FillWide();

    CLineReader m_lines;
    TextReading::Encoding m_encoding = TextReading::Encoding::Utf8;
    bool m_hasMark = false;
    std::uint64_t m_number = 0;

    // UTF-16 alone.
    CFile m_wide;
    std::uint64_t m_wideRead = 0;
    std::string m_text;
    std::size_t m_begin = 0;
    std::vector<unsigned char> m_bytes;
    std::uint32_t m_half = 0;
    bool m_wideEnd = false;
    bool m_isTooLong = false;
};

/// Whether the text is ASCII without a NUL byte.
bool IsPlainAscii(std::string_view text);
/// Offset of the first byte in the text that is not part of well-formed UTF-8; npos for none.
std::size_t FindNoUtf8(std::string_view text);
/// Latin-1, with the characters that Windows has from 80 to 9F, as UTF-8.
void AppendLatin1AsUtf8(std::string& out, std::string_view text);
/// Bytes that the text has then.
std::size_t Utf8LengthOfLatin1(std::string_view text);

}  // namespace norva
