#pragma once

#include "platform/files.h"
#include "store/store_checksum.h"
#include "store/store_structure.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

/// The parts of a store file besides its values, "docs/store-format.md":
///
///     text sections | columns | "DATA END" line | "STORE START" line | elements of arrays | table | trailer
///
/// A file may end after the "DATA END" line. The constants and every encoding stand here, for reader and writers.
namespace norva {

inline constexpr std::string_view kProfilesStartLine = "PROFILES START\n";
inline constexpr std::string_view kProfilesEndLine = "PROFILES END\n";
inline constexpr std::string_view kChannelsStartLine = "CHANNELS START\n";
inline constexpr std::string_view kChannelsEndLine = "CHANNELS END\n";
inline constexpr std::string_view kDataStartLine = "DATA START\n";
inline constexpr std::string_view kDataEndLine = "DATA END\n";
inline constexpr std::string_view kStoreStartLine = "STORE START\n";
inline constexpr std::string_view kStoreEndLine = "STORE END\n";

/// What the end of the store's own section holds.
struct StoreTrailer {
    std::uint64_t elementBytes = 0;
    std::uint64_t tableBytes = 0;
    std::uint64_t columnChecksum = 0;
    std::uint64_t elementChecksum = 0;
    std::uint64_t structureChecksum = 0;  ///< of the text sections, the table and the trailer's fields before it
};
inline constexpr std::size_t kStoreTrailerSize = 58;

/// The lines of the text sections. What would break a line, or end it early for some reader, stands in it as a blank.
void AppendProfileLine(std::string& out, std::string_view name, std::int64_t locations);
void AppendChannelLine(std::string& out, NorvaChannelStruct const& channel);
/// Whether a reader of such a line gets the name back: a comma ends the name of a channel, and what breaks lines is
/// lost in any name.
bool IsProfileNameKept(std::string_view name);
bool IsChannelNameKept(std::string_view name);

/// Takes the pieces of a section as they are made; false ends the writing.
using StoreSink = std::function<bool(std::string_view piece)>;

/// The text sections, up to and with the "DATA START" line.
bool WriteTextSections(CStoreStructure const& structure, StoreSink const& sink);
/// Exact names, flags and deleted marks.
bool WriteStoreTable(CStoreStructure const& structure, StoreSink const& sink);
/// `checksum` has taken in the text sections and the table.
std::string EncodeTrailer(StoreTrailer const& trailer, CStoreChecksum checksum);

/// What a store file says of itself, checked against its length.
struct StoreLayout {
    CStoreStructure structure;
    std::uint64_t columns = 0;   ///< offset of the values in the file
    std::uint64_t elements = 0;  ///< offset of the elements of arrays
    std::uint64_t end = 0;       ///< length of the file
    bool hasOwnSection = false;  ///< and with it the checksums
    StoreTrailer trailer;
};

/// Reads everything but the values. False with the reason when the file is no store, is cut short, disagrees with its
/// own counts or fails its checksum.
bool ReadStoreLayout(CFile& file, StoreLayout& layout, std::string& reason);

}  // namespace norva
