#pragma once

#include "norva/values.h"

#include <cstdint>
#include <string>
#include <vector>

namespace norva {

/// One survey line of a store.
struct StoreProfile {
    std::string name;
    std::int64_t locations = 0;
    std::int64_t first = 0;  ///< locations of the profiles before this one
    std::int64_t deletedCount = 0;
    std::vector<std::uint8_t> deleted;  ///< a bit a location, lowest first; empty while none is marked
    std::int32_t flag = 0;

    bool IsDeleted(std::int64_t location) const {
        return !deleted.empty() && (deleted[static_cast<std::size_t>(location >> 3)] >> (location & 7) & 1) != 0;
    }
    void Mark(std::int64_t location, bool isDeleted);
};

/// One channel of a store with its place in the file. A column holds the channel's values of all profiles, packed.
struct StoreChannel {
    NorvaChannelStruct description;
    std::uint64_t elementWidth = 0;   ///< bytes of one element; of a text, one character
    std::uint64_t columnWidth = 0;    ///< bytes of a location in the channel's column: the text, or the first element
    std::uint64_t valueWidth = 0;     ///< bytes of a location with all elements
    std::uint64_t columnStart = 0;    ///< from the start of the values
    std::uint64_t elementsStart = 0;  ///< from the start of the elements; for arrays alone

    bool IsArray() const { return valueWidth != columnWidth; }
};

/// A number as it stands in a store, widened; of a text, its first character's code.
double StoredNumber(int dataType, char const* bytes);

/// Longest name or unit that a store takes, so that reading a damaged file cannot ask for more.
inline constexpr std::size_t kLongestStoreName = 1024 * 1024;

/// Profiles and channels of a store and the sizes that follow from them.
class CStoreStructure {
public:
    std::vector<StoreProfile> profiles;
    std::vector<StoreChannel> channels;

    /// The calls give false, with `reason` set, for what no store can hold.
    bool AddProfile(std::string name, std::int64_t locations, std::string& reason);
    bool AddChannel(NorvaChannelStruct description, std::string& reason);
    /// Finds every column's place once all profiles and channels are there.
    bool Arrange(std::string& reason);

    /// Makes every array channel one of its first elements alone: a file without the others does not hold more.
    void KeepFirstElements();

    std::int64_t Locations() const { return m_locations; }
    /// Bytes of all columns.
    std::uint64_t ColumnBytes() const { return m_columnBytes; }
    /// Bytes of all elements of all array channels.
    std::uint64_t ElementBytes() const { return m_elementBytes; }
    /// Bytes that are handed over when the store is written.
    std::uint64_t ValueBytes() const { return m_valueBytes; }

private:
    std::int64_t m_locations = 0;
    std::uint64_t m_columnBytes = 0;
    std::uint64_t m_elementBytes = 0;
    std::uint64_t m_valueBytes = 0;
};

}  // namespace norva
