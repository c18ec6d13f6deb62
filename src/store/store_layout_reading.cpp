#include "platform/last_error.h"
#include "store/store_layout.h"
#include "store/value_rules.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <utility>
#include <vector>

namespace norva {

namespace {

constexpr std::size_t kBufferSize = 64 * 1024;
/// A name, units and eight numbers at most.
constexpr std::size_t kLongestLine = 2 * kLongestStoreName + 256;

/// Reads a file forward through a buffer and keeps the checksum of what was taken.
class CStoreScanner {
public:
    CStoreScanner(CFile& file, std::uint64_t offset, std::uint64_t end)
        : m_file(file), m_offset(offset), m_end(end), m_buffer(kBufferSize) {}

    CStoreChecksum checksum;

    std::uint64_t Offset() const { return m_offset - (m_filled - m_next); }
    std::uint64_t Left() const { return m_end - Offset(); }

    /// A line without its line feed; false at the end, on failure and for a line longer than any of a store.
    bool Line(std::string& line) {
        line.clear();
        while (line.size() <= kLongestLine) {
            if (m_next == m_filled && !Fill()) return false;
            char const* const from = m_buffer.data() + m_next;
            char const* const to = m_buffer.data() + m_filled;
            char const* const found = std::find(from, to, '\n');
            line.append(from, found);
            std::size_t const taken = static_cast<std::size_t>(found - from) + (found == to ? 0 : 1);
            checksum.Add(from, taken);
            m_next += taken;
            if (found != to) return line.size() <= kLongestLine;
        }
        return false;
    }

    bool Bytes(void* out, std::size_t size) {
        if (size > Left()) return false;
        char* to = static_cast<char*>(out);
        while (size > 0) {
            if (m_next == m_filled && !Fill()) return false;
            std::size_t const taken = std::min(size, m_filled - m_next);
            std::copy_n(m_buffer.data() + m_next, taken, to);
            checksum.Add(to, taken);
            m_next += taken;
            to += taken;
            size -= taken;
        }
        return true;
    }

    bool Little32(std::uint32_t& value) {
        char bytes[4];
        if (!Bytes(bytes, sizeof bytes)) return false;
        value = LoadLittle32(bytes);
        return true;
    }

    bool Little64(std::uint64_t& value) {
        char bytes[8];
        if (!Bytes(bytes, sizeof bytes)) return false;
        value = LoadLittle64(bytes);
        return true;
    }

    bool Counted(std::string& text) {
        std::uint32_t size = 0;
        if (!Little32(size) || size > kLongestStoreName || size > Left()) return false;
        text.resize(size);
        return Bytes(text.data(), size);
    }

    /// The system's reason when reading failed, else `otherwise`.
    std::string Reason(std::string const& otherwise) const {
        return m_failed ? SystemErrorText(m_file.Error()) : otherwise;
    }

private:
    bool Fill() {
        std::uint64_t const left = m_end - m_offset;
        std::size_t const wanted = left < kBufferSize ? static_cast<std::size_t>(left) : kBufferSize;
        m_next = m_filled = 0;
        if (wanted == 0) return false;
        m_failed = !m_file.ReadAt(m_offset, m_buffer.data(), wanted, m_filled);
        if (m_failed) m_filled = 0;
        m_offset += m_filled;
        return m_filled > 0;
    }

    CFile& m_file;
    std::uint64_t m_offset;
    std::uint64_t m_end;
    std::vector<char> m_buffer;
    std::size_t m_next = 0;
    std::size_t m_filled = 0;
    bool m_failed = false;
};

/// Cuts the number after the last comma off `line`; false when no decimal number of that width stands there.
template <typename Number>
bool CutNumber(std::string_view& line, Number& number) {
    std::size_t const comma = line.rfind(',');
    if (comma == std::string_view::npos) return false;
    char const* const end = line.data() + line.size();
    auto const [stopped, error] = std::from_chars(line.data() + comma + 1, end, number);
    line = line.substr(0, comma);
    return error == std::errc{} && stopped == end;
}

/// Whether a line read without its line feed is that line.
bool IsLine(std::string_view line, std::string_view fixed) {
    return line == fixed.substr(0, fixed.size() - 1);
}

std::string Quoted(std::string_view line) {
    return "\"" + std::string(line.substr(0, 80)) + "\"";
}

bool ReadProfiles(CStoreScanner& scanner, CStoreStructure& structure, std::string& reason) {
    std::string line;
    while (scanner.Line(line)) {
        if (IsLine(line, kProfilesEndLine)) return true;
        std::string_view name = line;
        std::int64_t locations = 0;
        if (!CutNumber(name, locations)) {
            reason = "the profile line " + Quoted(line) + " has no number of locations";
            return false;
        }
        if (!structure.AddProfile(std::string(name), locations, reason)) return false;
    }
    reason = scanner.Reason("its list of profiles does not end");
    return false;
}

bool ReadChannel(std::string_view line, CStoreStructure& structure, std::string& reason) {
    NorvaChannelStruct channel;
    std::string_view rest = line;
    if (!CutNumber(rest, channel.templateFormat) || !CutNumber(rest, channel.decimalPlaces) ||
        !CutNumber(rest, channel.displayFormat) || !CutNumber(rest, channel.dataType) ||
        !CutNumber(rest, channel.arraySize) || !CutNumber(rest, channel.recordType)) {
        reason = "the channel line " + Quoted(line) + " does not end with six numbers";
        return false;
    }
    std::size_t const comma = rest.find(',');
    if (comma == std::string_view::npos) {
        reason = "the channel line " + Quoted(line) + " has no units field";
        return false;
    }
    channel.name = rest.substr(0, comma);
    channel.units = rest.substr(comma + 1);
    return structure.AddChannel(std::move(channel), reason);
}

bool ReadChannels(CStoreScanner& scanner, CStoreStructure& structure, std::string& reason) {
    std::string line;
    bool ended = false;  // some writers leave the "CHANNELS END" line out
    while (scanner.Line(line)) {
        if (IsLine(line, kDataStartLine)) return true;
        if (ended) {
            reason = "the line " + Quoted(line) + " stands where the values should start";
            return false;
        }
        if (IsLine(line, kChannelsEndLine)) {
            ended = true;
        } else if (!ReadChannel(line, structure, reason)) {
            return false;
        }
    }
    reason = scanner.Reason("its list of channels does not end");
    return false;
}

bool ReadMarks(CStoreScanner& scanner, StoreProfile& profile, std::uint64_t count) {
    if (count == 0) return true;
    auto const locations = static_cast<std::uint64_t>(profile.locations);
    std::uint64_t const size = (locations + 7) / 8;
    if (count > locations || size > scanner.Left()) return false;
    std::vector<std::uint8_t> bits(static_cast<std::size_t>(size));
    if (!scanner.Bytes(bits.data(), bits.size())) return false;
    std::uint64_t marked = 0;
    for (std::uint8_t byte : bits) marked += static_cast<std::uint64_t>(std::popcount(byte));
    bool const tidyEnd = locations % 8 == 0 || bits.back() >> (locations % 8) == 0;
    profile.deleted.Set(std::move(bits), static_cast<std::int64_t>(count));
    return marked == count && tidyEnd;
}

bool ReadTable(CStoreScanner& scanner, CStoreStructure& structure) {
    for (StoreProfile& profile : structure.profiles) {
        std::uint32_t flag = 0;
        std::uint64_t deleted = 0;
        if (!scanner.Counted(profile.name) || !scanner.Little32(flag) || !scanner.Little64(deleted)) return false;
        profile.flag = static_cast<std::int32_t>(flag);
        if (!ReadMarks(scanner, profile, deleted)) return false;
    }
    for (StoreChannel& channel : structure.channels) {
        if (!scanner.Counted(channel.description.name) || !scanner.Counted(channel.description.units)) return false;
    }
    return scanner.Left() == 0;
}

/// The store's own section, which fills the file from `start` on. `checksum` has taken in the text sections.
bool ReadOwnSection(CFile& file, std::uint64_t start, CStoreChecksum const& checksum, StoreLayout& layout,
                    std::string& reason) {
    std::uint64_t const size = layout.end - start;
    CStoreScanner opening(file, start, layout.end);
    std::string line(std::min<std::uint64_t>(size, kStoreStartLine.size()), '\0');
    bool const isOpened = opening.Bytes(line.data(), line.size()) && line == kStoreStartLine;
    std::uint64_t const smallest = kStoreStartLine.size() + kStoreTrailerSize;
    if (!isOpened || size < smallest) {
        reason = opening.Reason("what follows its values is cut short or damaged");
        return false;
    }

    char bytes[kStoreTrailerSize];
    CStoreScanner closing(file, layout.end - kStoreTrailerSize, layout.end);
    std::string_view const last(bytes + 48, kStoreTrailerSize - 48);
    if (!closing.Bytes(bytes, sizeof bytes) || last != kStoreEndLine) {
        reason = closing.Reason("its end is missing");
        return false;
    }
    if (LoadLittle64(bytes) != 1) {
        reason = "it was written by a newer version";
        return false;
    }
    StoreTrailer& trailer = layout.trailer;
    trailer = {LoadLittle64(bytes + 8), LoadLittle64(bytes + 16), LoadLittle64(bytes + 24), LoadLittle64(bytes + 32),
               LoadLittle64(bytes + 40)};
    bool const hasElements = trailer.elementBytes != 0;
    if (trailer.elementBytes > size - smallest || trailer.tableBytes != size - smallest - trailer.elementBytes ||
        (hasElements && trailer.elementBytes != layout.structure.ElementBytes())) {
        reason = "the sizes at its end disagree with its length";
        return false;
    }

    layout.elements = start + kStoreStartLine.size();
    layout.hasOwnSection = true;
    CStoreScanner table(file, layout.elements + trailer.elementBytes, layout.end - kStoreTrailerSize);
    table.checksum = checksum;
    bool const isRead = ReadTable(table, layout.structure);
    table.checksum.Add(bytes, 40);
    if (!isRead || table.checksum.Value() != trailer.structureChecksum) {
        reason = table.Reason("its checksum does not fit: it was damaged or changed by hand");
        return false;
    }
    return true;
}

}  // namespace

bool ReadStoreLayout(CFile& file, StoreLayout& layout, std::string& reason) {
    if (!file.Size(layout.end)) {
        reason = SystemErrorText(file.Error());
        return false;
    }
    CStoreScanner scanner(file, 0, layout.end);
    std::string line(kProfilesStartLine.size(), '\0');
    if (!scanner.Bytes(line.data(), line.size()) || line != kProfilesStartLine) {
        reason = scanner.Reason("it is not a store");
        return false;
    }
    CStoreStructure& structure = layout.structure;
    if (!ReadProfiles(scanner, structure, reason)) return false;
    if (!scanner.Line(line) || !IsLine(line, kChannelsStartLine)) {
        reason = scanner.Reason("its list of channels is missing");
        return false;
    }
    if (!ReadChannels(scanner, structure, reason) || !structure.Arrange(reason)) return false;

    layout.columns = scanner.Offset();
    std::uint64_t const left = scanner.Left();
    if (left < kDataEndLine.size() || structure.ColumnBytes() > left - kDataEndLine.size()) {
        reason = "it is cut short: its profiles and channels need " + std::to_string(structure.ColumnBytes()) +
                 " bytes of values, and " + std::to_string(left) + " bytes are left";
        return false;
    }
    std::uint64_t const dataEnd = layout.columns + structure.ColumnBytes();
    CStoreScanner ending(file, dataEnd, layout.end);
    line.resize(kDataEndLine.size());
    if (!ending.Bytes(line.data(), line.size()) || line != kDataEndLine) {
        reason = ending.Reason("its values do not end where its profiles and channels say");
        return false;
    }
    std::uint64_t const ownStart = dataEnd + kDataEndLine.size();
    if (ownStart < layout.end && !ReadOwnSection(file, ownStart, scanner.checksum, layout, reason)) return false;
    if (layout.trailer.elementBytes == 0) structure.KeepFirstElements();
    return true;
}

}  // namespace norva
