#include "formats/gpx/gpx_source.h"

#include "platform/text.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace norva {

namespace {

constexpr std::size_t kRawSize = 64 * 1024;
constexpr std::uint32_t kReplacementCharacter = 0xFFFD;

/// Writes a character as UTF-8 and returns where the next one goes; up to four bytes.
char* PutUtf8(char* out, std::uint32_t code) {
    auto const put = [&out](std::uint32_t byte) { *out++ = static_cast<char>(static_cast<unsigned char>(byte)); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | code >> 6);
        put(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        put(0xE0 | code >> 12);
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    } else {
        put(0xF0 | code >> 18);
        put(0x80 | (code >> 12 & 0x3F));
        put(0x80 | (code >> 6 & 0x3F));
        put(0x80 | (code & 0x3F));
    }
    return out;
}

/// Whether the XML declaration at the start of `text` names ISO-8859-1.
bool DeclaresLatin1(std::string_view text) {
    if (!text.starts_with("<?xml")) return false;
    std::string const declaration = ToUpper(text.substr(0, text.find("?>")));
    std::size_t const key = declaration.find("ENCODING");
    if (key == std::string::npos) return false;
    std::string_view value = Trim(std::string_view(declaration).substr(key + std::strlen("ENCODING")));
    if (!value.starts_with('=')) return false;
    value = Trim(value.substr(1));
    if (value.empty() || (value.front() != '"' && value.front() != '\'')) return false;
    std::string_view const name = value.substr(1, value.find(value.front(), 1) - 1);
    return name == "ISO-8859-1" || name == "LATIN1";
}

}  // namespace

void AppendUtf8(std::string& out, std::uint32_t code) {
    char bytes[4];
    out.append(bytes, PutUtf8(bytes, code));
}

bool CGpxSource::Open(std::string const& path) {
    Close();
    if (!m_file.Open(path, CFile::Mode::Read)) return false;
    m_raw.resize(kRawSize);
    FillRaw();
    if (m_file.Error() != 0) return false;
    DetectEncoding();
    return true;
}

void CGpxSource::Close() {
    m_file = CFile();
    m_begin = m_end = 0;
    m_bytesRead = 0;
}

bool CGpxSource::Rewind() {
    m_begin = m_end = 0;
    m_bytesRead = 0;
    if (!m_file.Seek(0)) return false;
    FillRaw();
    if (m_file.Error() != 0) return false;
    DetectEncoding();
    return true;
}

std::size_t CGpxSource::Read(char* out, std::size_t room) {
    switch (m_encoding) {
        case Encoding::Bytes:
            return TakeBytes(out, room);
        case Encoding::Latin1:
            return TakeLatin1(out, room);
        case Encoding::Utf16Little:
        case Encoding::Utf16Big:
            break;
    }
    return TakeUtf16(out, room);
}

void CGpxSource::DetectEncoding() {
    std::string_view const start(reinterpret_cast<char const*>(m_raw.data()), m_end);
    m_encoding = Encoding::Bytes;
    if (start.starts_with("\xEF\xBB\xBF")) {
        m_begin = 3;
    } else if (start.starts_with("\xFF\xFE")) {
        m_begin = 2;
        m_encoding = Encoding::Utf16Little;
    } else if (start.starts_with("\xFE\xFF")) {
        m_begin = 2;
        m_encoding = Encoding::Utf16Big;
    } else if (DeclaresLatin1(start)) {
        m_encoding = Encoding::Latin1;
    }
}

bool CGpxSource::FillRaw() {
    std::copy(m_raw.begin() + static_cast<std::ptrdiff_t>(m_begin), m_raw.begin() + static_cast<std::ptrdiff_t>(m_end),
              m_raw.begin());
    m_end -= m_begin;
    m_begin = 0;
    std::size_t got = 0;
    if (!m_file.Read(m_raw.data() + m_end, m_raw.size() - m_end, got)) return false;
    m_end += got;
    m_bytesRead += got;
    return got != 0;
}

std::size_t CGpxSource::TakeBytes(char* out, std::size_t room) {
    std::size_t const kept = std::min(room, m_end - m_begin);
    if (kept != 0) {
        std::memcpy(out, m_raw.data() + m_begin, kept);
        m_begin += kept;
        return kept;
    }
    std::size_t got = 0;
    if (!m_file.Read(out, room, got)) return 0;
    m_bytesRead += got;
    return got;
}

std::size_t CGpxSource::TakeLatin1(char* out, std::size_t room) {
    if (m_begin == m_end && !FillRaw()) return 0;
    char* const start = out;
    char* const limit = out + room - 1;  // a character takes up to two bytes
    while (m_begin < m_end && out < limit) out = PutUtf8(out, m_raw[m_begin++]);
    return static_cast<std::size_t>(out - start);
}

std::size_t CGpxSource::TakeUtf16(char* out, std::size_t room) {
    auto const unitAt = [this](std::size_t at) -> std::uint32_t {
        std::uint32_t const first = m_raw[at];
        std::uint32_t const second = m_raw[at + 1];
        return m_encoding == Encoding::Utf16Little ? second << 8 | first : first << 8 | second;
    };
    char* const start = out;
    char* const limit = out + room - 3;  // a character takes up to four bytes
    while (out < limit) {
        // A pair of surrogates may need two units; an odd byte at the end of the file is no character.
        if (m_end - m_begin < 4) {
            bool const more = FillRaw();
            if (m_end - m_begin < 2) break;
            if (!more && m_file.Error() != 0) break;
        }
        std::uint32_t code = unitAt(m_begin);
        m_begin += 2;
        if (code >= 0xD800 && code < 0xE000) {
            std::uint32_t const low = m_end - m_begin >= 2 ? unitAt(m_begin) : 0;
            if (code < 0xDC00 && low >= 0xDC00 && low < 0xE000) {
                code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
                m_begin += 2;
            } else {
                code = kReplacementCharacter;
            }
        }
        out = PutUtf8(out, code);
        if (out - start >= static_cast<std::ptrdiff_t>(kRawSize)) break;
    }
    return static_cast<std::size_t>(out - start);
}

}  // namespace norva
