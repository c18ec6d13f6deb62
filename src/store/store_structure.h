#pragma once

#include "norva/values.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// Which locations of a profile are marked deleted. A store may have millions of profiles, hardly any of them with
/// marks, and without any this is one pointer.
class CDeletedMarks {
public:
    CDeletedMarks() = default;
    CDeletedMarks(CDeletedMarks&&) noexcept = default;
    CDeletedMarks& operator=(CDeletedMarks&&) noexcept = default;
    CDeletedMarks(CDeletedMarks const& other) { *this = other; }
    CDeletedMarks& operator=(CDeletedMarks const& other) {
        m_marks = other.m_marks == nullptr ? nullptr : std::make_unique<Marks>(*other.m_marks);
        return *this;
    }
    ~CDeletedMarks() = default;

    /// `bits` holds a bit per location, lowest first, of which `count` are set.
    void Set(std::vector<std::uint8_t> bits, std::int64_t count);
    /// Marks a location, one of `locations`, or takes its mark back.
    void Mark(std::int64_t location, bool isDeleted, std::int64_t locations);

    bool Has(std::int64_t location) const {
        return m_marks != nullptr &&
               (m_marks->bits[static_cast<std::size_t>(location >> 3)] >> (location & 7) & 1) != 0;
    }
    std::int64_t Count() const { return m_marks == nullptr ? 0 : m_marks->count; }
    /// A bit per location; none while nothing is marked.
    std::string_view Bytes() const {
        if (m_marks == nullptr) return {};
        return {reinterpret_cast<char const*>(m_marks->bits.data()), m_marks->bits.size()};
    }

private:
    struct Marks {
        std::vector<std::uint8_t> bits;
        std::int64_t count = 0;
    };
    std::unique_ptr<Marks> m_marks;
};

/// One survey line of a store.
struct StoreProfile {
    std::string name;
    std::int64_t locations = 0;
    std::int64_t first = 0;  ///< locations of the profiles before this one
    CDeletedMarks deleted;
    std::int32_t flag = 0;
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
