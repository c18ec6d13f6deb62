#include "platform/line_reader.h"

#include <algorithm>
#include <cstring>

namespace norva {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

CLineReader::CLineReader(std::size_t bufferSize) : m_buffer(std::max<std::size_t>(bufferSize, 4)) {}

bool CLineReader::Open(std::string const& path) {
    m_error = 0;
    if (!m_file.Open(path, CFile::Mode::Read) || !m_file.Size(m_length)) {
        m_error = m_file.Error();
        m_file.Close();
        return false;
    }
    m_begin = m_end = 0;
    m_offset = 0;
    m_atEnd = false;
    return true;
}

void CLineReader::Close() {
    m_file.Close();
}

bool CLineReader::Fill() {
    if (m_atEnd || m_error != 0) return false;
    if (m_begin > 0) {
        std::memmove(m_buffer.data(), m_buffer.data() + m_begin, m_end - m_begin);
        m_end -= m_begin;
        m_begin = 0;
    }
    if (m_end == m_buffer.size()) m_buffer.resize(m_buffer.size() * 2);
    std::size_t got = 0;
    if (!m_file.Read(m_buffer.data() + m_end, m_buffer.size() - m_end, got)) {
        m_error = m_file.Error();
        return false;
    }
    m_atEnd = m_end + got < m_buffer.size();
    m_end += got;
    return got > 0;
}

bool CLineReader::Next(std::string_view& line) {
    if (!m_file.IsOpen()) return false;
    std::size_t searched = 0;  // bytes after m_begin known to hold no line end
    while (true) {
        if (m_offset == 0 && m_begin == 0 && m_end - m_begin < kByteOrderMark.size()) Fill();
        if (m_offset == 0 && std::string_view(m_buffer.data() + m_begin, m_end - m_begin).starts_with(kByteOrderMark)) {
            m_begin += kByteOrderMark.size();
            m_offset += kByteOrderMark.size();
        }
        char const* const start = m_buffer.data() + m_begin;
        std::size_t const size = m_end - m_begin;
        char const* end = static_cast<char const*>(std::memchr(start + searched, '\n', size - searched));
        std::size_t const reach = end == nullptr ? size : static_cast<std::size_t>(end - start);
        char const* const lone = static_cast<char const*>(std::memchr(start + searched, '\r', reach - searched));
        if (lone != nullptr) end = lone;
        if (end != nullptr) {
            std::size_t length = static_cast<std::size_t>(end - start);
            std::size_t taken = length + 1;
            if (*end == '\r') {
                if (length + 1 == size && Fill()) {  // the line feed may stand beyond the buffer
                    searched = length;
                    continue;
                }
                if (length + 1 < m_end - m_begin && m_buffer[m_begin + length + 1] == '\n') ++taken;
            }
            line = std::string_view(m_buffer.data() + m_begin, length);
            m_begin += taken;
            m_offset += taken;
            return true;
        }
        searched = size;
        if (!Fill()) {
            if (m_error != 0 || m_end == m_begin) return false;
            line = std::string_view(m_buffer.data() + m_begin, m_end - m_begin);
            m_offset += line.size();
            m_begin = m_end;
            return true;
        }
    }
}

bool CLineReader::Seek(std::uint64_t offset) {
    // What is in the buffer already is not read again; only the start of the file may hold a byte order mark.
    if (m_error == 0 && m_offset != 0 && offset >= m_offset && offset - m_offset <= m_end - m_begin) {
        m_begin += static_cast<std::size_t>(offset - m_offset);
        m_offset = offset;
        return true;
    }
    m_begin = m_end = 0;
    m_atEnd = false;
    m_error = 0;
    m_offset = offset;
    if (!m_file.Seek(offset)) m_error = m_file.Error();
    return m_error == 0;
}

}  // namespace norva
