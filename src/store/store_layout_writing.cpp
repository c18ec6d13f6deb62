#include "platform/numbers.h"
#include "store/store_layout.h"
#include "store/value_rules.h"

#include <algorithm>

namespace norva {

namespace {

constexpr std::size_t kPiece = 64 * 1024;

/// Line breaks and NUL bytes end a line early for some reader.
bool BreaksLine(char character) {
    return character == '\n' || character == '\r' || character == '\0';
}

void AppendHarmless(std::string& out, std::string_view name) {
    for (char const character : name) out.push_back(BreaksLine(character) ? ' ' : character);
}

void AppendLittle32(std::string& out, std::uint32_t value) {
    char bytes[4];
    StoreLittle32(bytes, value);
    out.append(bytes, sizeof bytes);
}

void AppendLittle64(std::string& out, std::uint64_t value) {
    char bytes[8];
    StoreLittle64(bytes, value);
    out.append(bytes, sizeof bytes);
}

void AppendCounted(std::string& out, std::string_view text) {
    AppendLittle32(out, static_cast<std::uint32_t>(text.size()));
    out.append(text);
}

/// Hands the piece on once it is large enough.
bool PassOn(std::string& piece, StoreSink const& sink, std::size_t size = kPiece) {
    if (piece.size() < size || piece.empty()) return true;
    bool const taken = sink(piece);
    piece.clear();
    return taken;
}

}  // namespace

void AppendProfileLine(std::string& out, std::string_view name, std::int64_t locations) {
    AppendHarmless(out, name);
    out.push_back(',');
    AppendInteger(out, locations);
    out.push_back('\n');
}

void AppendChannelLine(std::string& out, NorvaChannelStruct const& channel) {
    AppendHarmless(out, channel.name);
    out.push_back(',');
    AppendHarmless(out, channel.units);
    for (int const number : {channel.recordType, channel.arraySize, channel.dataType, channel.displayFormat,
                             channel.decimalPlaces, channel.templateFormat}) {
        out.push_back(',');
        AppendInteger(out, number);
    }
    out.push_back('\n');
}

bool IsProfileNameKept(std::string_view name) {
    return std::ranges::none_of(name, BreaksLine);
}

bool IsChannelNameKept(std::string_view name) {
    return IsProfileNameKept(name) && name.find(',') == std::string_view::npos;
}

bool WriteTextSections(CStoreStructure const& structure, StoreSink const& sink) {
    std::string piece(kProfilesStartLine);
    for (StoreProfile const& profile : structure.profiles) {
        AppendProfileLine(piece, profile.name, profile.locations);
        if (!PassOn(piece, sink)) return false;
    }
    piece.append(kProfilesEndLine).append(kChannelsStartLine);
    for (StoreChannel const& channel : structure.channels) {
        AppendChannelLine(piece, channel.description);
        if (!PassOn(piece, sink)) return false;
    }
    piece.append(kChannelsEndLine).append(kDataStartLine);
    return PassOn(piece, sink, 1);
}

bool WriteStoreTable(CStoreStructure const& structure, StoreSink const& sink) {
    std::string piece;
    for (StoreProfile const& profile : structure.profiles) {
        AppendCounted(piece, profile.name);
        AppendLittle32(piece, static_cast<std::uint32_t>(profile.flag));
        AppendLittle64(piece, static_cast<std::uint64_t>(profile.deleted.Count()));
        if (profile.deleted.Count() > 0) {
            if (!PassOn(piece, sink, 1) || !sink(profile.deleted.Bytes())) return false;
        }
        if (!PassOn(piece, sink)) return false;
    }
    for (StoreChannel const& channel : structure.channels) {
        AppendCounted(piece, channel.description.name);
        AppendCounted(piece, channel.description.units);
        if (!PassOn(piece, sink)) return false;
    }
    return PassOn(piece, sink, 1);
}

std::string EncodeTrailer(StoreTrailer const& trailer, CStoreChecksum checksum) {
    std::string out;
    AppendLittle64(out, 1);  // version of the section
    AppendLittle64(out, trailer.elementBytes);
    AppendLittle64(out, trailer.tableBytes);
    AppendLittle64(out, trailer.columnChecksum);
    AppendLittle64(out, trailer.elementChecksum);
    checksum.Add(out.data(), out.size());
    AppendLittle64(out, checksum.Value());
    out += kStoreEndLine;
    return out;
}

}  // namespace norva
