#include "platform/line_reader.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>

namespace norva {

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

}  // namespace

CLineReader::CLineReader(std::size_t bufferSize) : m_bufferSize(std::max<std::size_t>(bufferSize, 16)) {}

bool CLineReader::Open(std::string const& path) {
    Close();
    if (!m_file.Open(path, CFile::Mode::Read) || !m_file.Size(m_length)) {
        m_error = m_file.Error();
        m_file.Close();
        return false;
    }
    ::posix_fadvise(m_file.Descriptor(), 0, 0, POSIX_FADV_SEQUENTIAL);
    m_buffer.resize(m_bufferSize);
    return true;
}

void CLineReader::Close() {
    m_file.Close();
    m_error = 0;
    m_length = 0;
    Forget(0);
}

void CLineReader::Forget(std::uint64_t offset) {
    m_offset = offset;
    m_begin = 0;
    m_end = 0;
    m_lineFeed = kUnknown;
    m_atEnd = false;
}

bool CLineReader::Seek(std::uint64_t offset) {
    // What the buffer holds is not read again: a file of many small blocks seeks once a block. The start of the file is
    // left out, because a byte order mark may stand there.
    if (m_error == 0 && m_offset != 0 && offset >= m_offset && offset - m_offset <= m_end - m_begin) {
        m_begin += static_cast<std::size_t>(offset - m_offset);
        m_offset = offset;
        return true;
    }
    Forget(offset);
    m_error = 0;
    if (!m_file.Seek(offset)) {
        m_error = m_file.Error();
        return false;
    }
    return true;
}

bool CLineReader::StartsWithUtf16Mark() {
    unsigned char mark[2] = {};
    std::size_t got = 0;
    return m_file.ReadAt(0, mark, sizeof mark, got) && got == sizeof mark &&
           ((mark[0] == 0xFF && mark[1] == 0xFE) || (mark[0] == 0xFE && mark[1] == 0xFF));
}

/// Reads on behind what is kept from m_begin on; false when nothing came.
bool CLineReader::Fill() {
    if (m_atEnd || m_error != 0) {
        return false;
    }
    m_lineFeed = kUnknown;
    if (m_begin > 0) {
        std::memmove(m_buffer.data(), m_buffer.data() + m_begin, m_end - m_begin);
        m_end -= m_begin;
        m_begin = 0;
    }
    if (m_end >= m_longestLine) {
        m_error = EMSGSIZE;
        return false;
    }
    if (m_end == m_buffer.size()) {
        m_buffer.resize(m_buffer.size() * 2);
    }
    std::size_t const room = m_buffer.size() - m_end;
    std::size_t got = 0;
    if (!m_file.Read(m_buffer.data() + m_end, room, got)) {
        m_error = m_file.Error();
        return false;
    }
    m_atEnd = got < room;
    m_end += got;
    return got > 0;
}

/// Finds where the line that starts at m_begin ends, from `scanned` bytes after it on; its end stands at m_end when
/// the buffer holds none.
std::size_t CLineReader::FindEnd(std::size_t scanned) {
    char const* const data = m_buffer.data();
    std::size_t const from = m_begin + scanned;
    if (m_lineFeed == kUnknown || m_lineFeed < from) {
        // Kept from line to line, so that text with CR alone is not searched for LF again with every line.
        void const* const found = std::memchr(data + from, '\n', m_end - from);
        m_lineFeed = found != nullptr ? static_cast<std::size_t>(static_cast<char const*>(found) - data) : m_end;
    }
    void const* const found = std::memchr(data + from, '\r', m_lineFeed - from);
    return found != nullptr ? static_cast<std::size_t>(static_cast<char const*>(found) - data) : m_lineFeed;
}

bool CLineReader::Next(std::string_view& line) {
    if (m_offset == 0 && m_begin == m_end) {
        if (!Fill()) {
            return false;
        }
        if (std::string_view(m_buffer.data(), m_end).starts_with(kUtf8Mark)) {
            m_begin = kUtf8Mark.size();
            m_offset = kUtf8Mark.size();
        }
    }
    std::size_t end = FindEnd(0);
    // A CR that is the last byte of the buffer may be the first half of a CR LF.
    while (end == m_end || (m_buffer[end] == '\r' && end + 1 == m_end)) {
        std::size_t const scanned = end - m_begin;
        if (!Fill()) {
            if (m_error != 0) {
                return false;
            }
            end = m_begin + scanned;
            break;
        }
        end = FindEnd(scanned);
    }
    std::size_t next = end;
    if (end < m_end) {
        next += m_buffer[end] == '\r' && end + 1 < m_end && m_buffer[end + 1] == '\n' ? 2 : 1;
    } else if (end == m_begin) {
        return false;
    }
    line = std::string_view(m_buffer.data() + m_begin, end - m_begin);
    m_offset += next - m_begin;
    m_begin = next;
    return true;
}

}  // namespace norva
