#include "formats/tki/tki_header.h"

#include "formats/tki/tki_types.h"
#include "platform/last_error.h"
#include "platform/numbers.h"
#include "platform/text.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace norva {

namespace {

constexpr std::size_t kBlockSize = 64 * 1024;
/// Longer lines are no header.
constexpr std::size_t kLongestLine = 1024 * 1024;
/// How much of a line a message shows.
constexpr std::size_t kShownLine = 80;

/// Takes the comma-separated fields of a line one after the other.
class CFields {
public:
    explicit CFields(std::string_view line) : m_left(line) {}

    std::string_view Text() {
        m_ended = m_left.find(',') == std::string_view::npos;
        std::string_view const field = m_left.substr(0, m_left.find(','));
        m_left.remove_prefix(m_ended ? m_left.size() : field.size() + 1);
        return field;
    }
    /// 0 for a field that is empty or that no comma ends.
    float Number() {
        std::string_view const field = Text();
        if (m_ended) return 0;
        double const value = ReadNumber(field);
        bool const fits = std::abs(value) <= std::numeric_limits<float>::max();
        return fits ? static_cast<float>(value)
                    : std::copysign(std::numeric_limits<float>::infinity(), static_cast<float>(value > 0 ? 1 : -1));
    }
    std::string_view Rest() const { return m_left; }

private:
    std::string_view m_left;
    bool m_ended = false;
};

/// Cuts the header into lines without zero bytes: LF or CR LF ends a line, the end mark or the end of the file all.
class CHeaderLines {
public:
    explicit CHeaderLines(CFile& file) : m_file(file), m_block(kBlockSize) {}

    bool Next(std::string_view& line) {
        m_line.clear();
        bool isCut = false;
        while (!isCut) {
            if (m_at == m_size && !Fill()) break;
            char const byte = m_block[m_at++];
            if (byte == '\n') {
                isCut = true;
            } else if (byte == kTkiHeaderEnd) {
                m_atEnd = true;
                m_at = m_size;
            } else if (byte != '\0') {
                m_line += byte;
                m_isTooLong = m_line.size() > kLongestLine;
                if (m_isTooLong) return false;
            }
        }
        if (!isCut && m_line.empty()) return false;
        ++m_number;
        if (isCut && m_line.ends_with('\r')) m_line.pop_back();
        line = m_line;
        return true;
    }
    /// Of the line that Next gave last, from 1.
    int Number() const { return m_number; }
    bool IsTooLong() const { return m_isTooLong; }
    bool Failed() const { return m_failed; }

private:
    bool Fill() {
        m_at = m_size = 0;
        if (!m_atEnd) m_failed = !m_file.Read(m_block.data(), m_block.size(), m_size);
        m_atEnd = m_atEnd || m_failed || m_size == 0;
        return m_size > 0;
    }

    CFile& m_file;
    std::vector<char> m_block;
    std::size_t m_at = 0;
    std::size_t m_size = 0;
    std::string m_line;
    int m_number = 0;
    bool m_atEnd = false;
    bool m_isTooLong = false;
    bool m_failed = false;
};

std::string Shown(std::string_view text) {
    std::string shown = "\"" + std::string(text.substr(0, kShownLine));
    return shown + (text.size() > kShownLine ? "...\"" : "\"");
}

}  // namespace

bool ParseTkiDescriptor(std::string_view line, TkiChannelDesc& channel, std::string& why) {
    CFields fields(line);
    channel.name = fields.Text();
    channel.count = ReadInt(fields.Text());
    channel.type = fields.Text();
    channel.scale = fields.Number();
    channel.offset = fields.Number();
    channel.units = fields.Text();
    channel.rest = fields.Rest();
    TkiType const* const type = FindTkiType(channel.type);
    if (type == nullptr) {
        why = "unknown type code " + Shown(channel.type);
    } else if (channel.count < 1 || channel.count > CTkiFileRead::kMostElements) {
        why = "the count is " + std::to_string(channel.count) + ", not 1 to " +
              std::to_string(CTkiFileRead::kMostElements);
    } else {
        channel.elementSize = type->size;
        return true;
    }
    return false;
}

bool ReadTkiDescriptors(std::string const& path, std::vector<TkiChannelDesc>& channels, std::string& problem) {
    channels.clear();
    CFile file;
    if (!file.Open(path, CFile::Mode::Read)) {
        SetLastErrorText("Couldn't open the file : " + path + "\n" + SystemErrorText(file.Error()));
        return false;
    }
    CHeaderLines lines(file);
    auto const reject = [&](int number, std::string_view line, std::string const& why) {
        problem = path + ", line " + std::to_string(number) + ": " + Shown(line) + "\n" + why;
        channels.clear();
        return false;
    };
    bool hasBegun = false;
    std::string_view line;
    while (lines.Next(line) && !Contains(line, "END")) {
        if (!hasBegun) {
            hasBegun = Contains(line, "BEGIN");
            continue;
        }
        if (Trim(line).empty()) continue;
        if (channels.size() == static_cast<std::size_t>(CTkiFileRead::kMostChannels)) {
            return reject(lines.Number(), line, "more than " + std::to_string(channels.size()) + " channels");
        }
        TkiChannelDesc channel;
        channel.line = lines.Number();
        std::string why;
        if (!ParseTkiDescriptor(line, channel, why)) return reject(channel.line, line, why);
        channels.push_back(std::move(channel));
    }
    if (lines.IsTooLong() && hasBegun) return reject(lines.Number() + 1, "", "the line is too long");
    if (lines.Failed()) {
        SetLastErrorText("Couldn't read the file : " + path + "\n" + SystemErrorText(file.Error()));
        channels.clear();
    }
    return !lines.Failed();
}

bool FindTkiHeaderEnd(CFile& file, std::uint64_t& length) {
    std::vector<char> block(kBlockSize);
    length = 0;
    std::size_t got = 0;
    while (file.Read(block.data(), block.size(), got) && got > 0) {
        if (void const* const mark = std::memchr(block.data(), kTkiHeaderEnd, got)) {
            length += static_cast<std::uint64_t>(static_cast<char const*>(mark) - block.data());
            return true;
        }
        length += got;
    }
    return false;
}

}  // namespace norva
