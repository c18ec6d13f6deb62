#include "platform/numbers.h"
#include "store/store_layout.h"
#include "store/value_rules.h"

#include <algorithm>

namespace norva {

namespace {

constexpr std::size_t kPiece = 64 * 1024;

/// Line breaks and NUL bytes would end a line early for some reader.
void AppendHarmless(std::string& out, std::string_view name) {
    for (char character : name) {
        bool const breaks = character == '\n' || character == '\r' || character == '\0';
        out.push_back(breaks ? ' ' : character);
    }
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

bool WriteTextSections(CStoreStructure const& structure, StoreSink const& sink) {
    std::string piece = "PROFILES START\n";
    for (StoreProfile const& profile : structure.profiles) {
        AppendHarmless(piece, profile.name);
        piece.push_back(',');
        AppendInteger(piece, profile.locations);
        piece.push_back('\n');
        if (!PassOn(piece, sink)) return false;
    }
    piece += "PROFILES END\nCHANNELS START\n";
    for (StoreChannel const& channel : structure.channels) {
        NorvaChannelStruct const& description = channel.description;
        AppendHarmless(piece, description.name);
        piece.push_back(',');
        AppendHarmless(piece, description.units);
        for (int number : {description.recordType, description.arraySize, description.dataType,
                           description.displayFormat, description.decimalPlaces, description.templateFormat}) {
            piece.push_back(',');
            AppendInteger(piece, number);
        }
        piece.push_back('\n');
        if (!PassOn(piece, sink)) return false;
    }
    piece += "CHANNELS END\nDATA START\n";
    return PassOn(piece, sink, 1);
}

bool WriteStoreTable(CStoreStructure const& structure, StoreSink const& sink) {
    std::string piece;
    for (StoreProfile const& profile : structure.profiles) {
        AppendCounted(piece, profile.name);
        AppendLittle32(piece, static_cast<std::uint32_t>(profile.flag));
        AppendLittle64(piece, static_cast<std::uint64_t>(profile.deletedCount));
        if (profile.deletedCount > 0) {
            auto const* marks = reinterpret_cast<char const*>(profile.deleted.data());
            if (!PassOn(piece, sink, 1) || !sink({marks, profile.deleted.size()})) return false;
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
    out += "STORE END\n";
    return out;
}

}  // namespace norva
