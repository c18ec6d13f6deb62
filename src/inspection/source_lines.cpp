#include "inspection/source_lines.h"

#include "platform/last_error.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace norva {

namespace {

constexpr std::size_t kWideBlock = 256 * 1024;
constexpr char kControlZ = '\x1A';

void AppendUtf8(std::string& out, std::uint32_t code) {
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | code >> 6);
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        out += static_cast<char>(0xE0 | code >> 12);
        out += static_cast<char>(0x80 | (code >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | code >> 18);
        out += static_cast<char>(0x80 | (code >> 12 & 0x3F));
        out += static_cast<char>(0x80 | (code >> 6 & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

/// What Windows has at 80 to 9F; 0 where it has nothing.
std::uint32_t WindowsCode(unsigned char byte) {
    static constexpr std::uint16_t kCodes[] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                               0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                               0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                               0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};
    if (byte < 0x80 || byte > 0x9F) return byte;
    std::uint32_t const code = kCodes[byte - 0x80];
    return code != 0 ? code : byte;
}

}  // namespace

Status CSourceLines::Open(std::string const& path) {
    m_lines.LimitLines(kLongestLine);
    if (!m_lines.Open(path)) return Status::FileFailure("open", path, m_lines.Error());
    if (!m_wide.Open(path, CFile::Mode::Read)) return Status::FileFailure("open", path, m_wide.Error());
    unsigned char head[4] = {};
    std::size_t got = 0;
    if (!m_wide.ReadAt(0, head, sizeof head, got)) return Status::FileFailure("read", path, m_wide.Error());
    auto const begins = [&](std::string_view mark) {
        return got >= mark.size() && std::memcmp(head, mark.data(), mark.size()) == 0;
    };
    if (begins("\x1F\x8B") || begins("PK\x03\x04")) {
        return Status::Failure(
            "Couldn't read the file", path,
            std::string("It is packed (") + (head[0] == 'P' ? "zip" : "gzip") + "); unpack it first.");
    }
    m_hasMark = begins("\xEF\xBB\xBF");
    if (begins("\xFF\xFE")) m_encoding = TextReading::Encoding::Utf16Little;
    if (begins("\xFE\xFF")) m_encoding = TextReading::Encoding::Utf16Big;
    if (m_encoding != TextReading::Encoding::Utf8) {
        m_hasMark = true;
        m_bytes.resize(kWideBlock);
    }
    return Rewind() ? Status() : Result(path);
}

bool CSourceLines::Rewind() {
    m_number = 0;
    if (m_encoding == TextReading::Encoding::Utf8) return m_lines.Rewind();
    m_wideRead = 2;
    m_text.clear();
    m_begin = 0;
    m_half = 0;
    m_wideEnd = false;
    m_isTooLong = false;
    return m_wide.Seek(2);
}

int CSourceLines::Error() const {
    if (m_isTooLong) return EMSGSIZE;
    return m_encoding == TextReading::Encoding::Utf8 ? m_lines.Error() : m_wide.Error();
}

Status CSourceLines::Result(std::string const& path) const {
    int const error = Error();
    if (error == 0) return {};
    if (error != EMSGSIZE) return Status::FileFailure("read", path, error);
    return Status::Failure("Couldn't read the file", path,
                           "It has a line of more than " + std::to_string(kLongestLine >> 20) + " MB: it is no table.");
}

std::uint64_t CSourceLines::Offset() const {
    return m_encoding == TextReading::Encoding::Utf8 ? m_lines.Offset() : m_wideRead;
}

bool CSourceLines::Next(std::string_view& line) {
    bool const isLine = m_encoding == TextReading::Encoding::Utf8 ? m_lines.Next(line) : NextWide(line);
    if (!isLine) return false;
    if (line.ends_with(kControlZ) && Offset() == Length()) {
        line.remove_suffix(1);
        if (line.empty()) return false;
    }
    ++m_number;
    return true;
}

bool CSourceLines::SeekLineAfter(std::uint64_t offset) {
    std::string_view rest;
    return m_lines.Seek(offset) && m_lines.Next(rest);
}

/// Reads on behind what is kept; false when nothing came.
bool CSourceLines::FillWide() {
    if (m_wideEnd) return false;
    m_text.erase(0, m_begin);
    m_begin = 0;
    std::size_t got = 0;
    if (!m_wide.Read(m_bytes.data(), m_bytes.size(), got)) return false;
    m_wideEnd = got < m_bytes.size();
    m_wideRead += got;
    bool const isLittle = m_encoding == TextReading::Encoding::Utf16Little;
    for (std::size_t i = 0; i + 1 < got; i += 2) {
        std::uint32_t const low = m_bytes[isLittle ? i : i + 1];
        std::uint32_t const high = m_bytes[isLittle ? i + 1 : i];
        std::uint32_t const unit = high << 8U | low;
        bool const isLowHalf = unit >= 0xDC00 && unit < 0xE000;
        if (m_half != 0 && isLowHalf) {
            AppendUtf8(m_text, 0x10000 + ((m_half - 0xD800) << 10) + (unit - 0xDC00));
            m_half = 0;
            continue;
        }
        if (m_half != 0) AppendUtf8(m_text, 0xFFFD);
        m_half = unit >= 0xD800 && unit < 0xDC00 ? unit : 0;
        if (m_half == 0) AppendUtf8(m_text, isLowHalf ? 0xFFFD : unit);
    }
    return got > 1;
}

bool CSourceLines::NextWide(std::string_view& line) {
    std::size_t scanned = 0;
    std::size_t end = std::string::npos;
    while (true) {
        end = m_text.find_first_of("\r\n", m_begin + scanned);
        // A CR at the end of what was read may be the first half of a CR LF.
        if (end != std::string::npos && (m_text[end] == '\n' || end + 1 < m_text.size())) break;
        scanned = m_text.size() - m_begin - (end == std::string::npos ? 0 : 1);
        m_isTooLong = scanned > kLongestLine;
        if (m_isTooLong) return false;
        if (!FillWide()) break;
    }
    if (end == std::string::npos) {
        if (m_begin == m_text.size()) return false;
        line = std::string_view(m_text).substr(m_begin);
        m_begin = m_text.size();
        return true;
    }
    line = std::string_view(m_text).substr(m_begin, end - m_begin);
    m_begin = end + (m_text[end] == '\r' && end + 1 < m_text.size() && m_text[end + 1] == '\n' ? 2 : 1);
    return true;
}

bool IsPlainAscii(std::string_view text) {
    char const* next = text.data();
    char const* const end = next + text.size();
#if defined(__SSE2__)
    if (text.size() >= 16) {
        // Zero and what is negative are below one; the last block may overlap the one before.
        __m128i const one = _mm_set1_epi8(1);
        __m128i found = _mm_setzero_si128();
        auto const look = [&](char const* at) {
            __m128i const bytes = _mm_loadu_si128(reinterpret_cast<__m128i const*>(at));
            found = _mm_or_si128(found, _mm_cmplt_epi8(bytes, one));
        };
        for (; end - next > 16; next += 16) look(next);
        look(end - 16);
        return _mm_movemask_epi8(found) == 0;
    }
#endif
    return std::all_of(next, end, [](char c) { return static_cast<signed char>(c) > 0; });
}

std::size_t FindNoUtf8(std::string_view text) {
    auto const* const data = reinterpret_cast<unsigned char const*>(text.data());
    std::size_t const size = text.size();
    std::size_t at = 0;
    while (true) {
        for (std::uint64_t eight = 0; at + 8 <= size; at += 8) {
            std::memcpy(&eight, data + at, 8);
            if ((eight & 0x8080808080808080U) != 0) break;
        }
        while (at < size && data[at] < 0x80) {
            ++at;
            if (at % 8 == 0) break;
        }
        if (at == size) return std::string_view::npos;
        if (data[at] < 0x80) continue;
        unsigned char const first = data[at];
        std::size_t const length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
        if (first < 0xC2 || first > 0xF4 || at + length > size) return at;
        for (std::size_t i = 1; i < length; ++i) {
            if ((data[at + i] & 0xC0) != 0x80) return at;
        }
        bool const isTooShort = (first == 0xE0 && data[at + 1] < 0xA0) || (first == 0xF0 && data[at + 1] < 0x90);
        bool const isNone = (first == 0xED && data[at + 1] > 0x9F) || (first == 0xF4 && data[at + 1] > 0x8F);
        if (isTooShort || isNone) return at;
        at += length;
    }
}

void AppendLatin1AsUtf8(std::string& out, std::string_view text) {
    for (char const c : text) AppendUtf8(out, WindowsCode(static_cast<unsigned char>(c)));
}

std::size_t Utf8LengthOfLatin1(std::string_view text) {
    std::size_t length = text.size();
    for (char const c : text) {
        std::uint32_t const code = WindowsCode(static_cast<unsigned char>(c));
        length += code < 0x80 ? 0 : code < 0x800 ? 1 : 2;
    }
    return length;
}

}  // namespace norva
