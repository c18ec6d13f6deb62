#include "store/store_structure.h"

#include "store/value_rules.h"

#include <limits>
#include <utility>

namespace norva {

namespace {

/// Larger files than this no system takes, so that sums of two sizes below it never overflow.
constexpr std::uint64_t kLargestSize = std::uint64_t{1} << 62;
/// No value stands behind the locations of a store without channels, so their number has a limit of its own.
constexpr std::int64_t kMostBareLocations = std::numeric_limits<std::int32_t>::max();

/// Adds `count` * `width` to `sum`; false when that is more than a file can hold.
bool AddBytes(std::uint64_t& sum, std::uint64_t count, std::uint64_t width) {
    std::uint64_t bytes = 0;
    if (__builtin_mul_overflow(count, width, &bytes) || bytes > kLargestSize - sum) return false;
    sum += bytes;
    return true;
}

}  // namespace

double StoredNumber(int dataType, char const* bytes) {
    switch (dataType) {
        case DataType::kFloat:
            return LoadFloat(bytes);
        case DataType::kDouble:
            return LoadDouble(bytes);
        case DataType::kText:
            return static_cast<unsigned char>(*bytes);
        case DataType::kShort:
            return static_cast<std::int16_t>(LoadLittle16(bytes));
        default:
            return static_cast<std::int32_t>(LoadLittle32(bytes));
    }
}

void CDeletedMarks::Set(std::vector<std::uint8_t> bits, std::int64_t count) {
    m_marks = count == 0 ? nullptr : std::make_unique<Marks>(Marks{std::move(bits), count});
}

void CDeletedMarks::Mark(std::int64_t location, bool isDeleted, std::int64_t locations) {
    if (Has(location) == isDeleted) return;
    if (m_marks == nullptr) {
        auto const size = static_cast<std::size_t>((locations + 7) / 8);
        m_marks = std::make_unique<Marks>(Marks{std::vector<std::uint8_t>(size), 0});
    }
    m_marks->bits[static_cast<std::size_t>(location >> 3)] ^= static_cast<std::uint8_t>(1U << (location & 7));
    m_marks->count += isDeleted ? 1 : -1;
    if (m_marks->count == 0) m_marks.reset();
}

bool CStoreStructure::AddProfile(std::string name, std::int64_t locations, std::string& reason) {
    if (locations < 0) {
        reason = "profile \"" + name.substr(0, 80) + "\" has " + std::to_string(locations) + " locations";
    } else if (name.size() > kLongestStoreName) {
        reason = "the name of profile " + std::to_string(profiles.size() + 1) + " has more than 1 MB";
    } else if (profiles.size() >= std::numeric_limits<int>::max()) {
        reason = "there are more profiles than a store can hold";
    } else if (__builtin_add_overflow(m_locations, locations, &m_locations)) {
        reason = "the profiles have more locations than a store can hold";
    } else {
        StoreProfile& profile = profiles.emplace_back();
        profile.name = std::move(name);
        profile.locations = locations;
        profile.first = m_locations - locations;
        return true;
    }
    return false;
}

bool CStoreStructure::AddChannel(NorvaChannelStruct description, std::string& reason) {
    std::size_t const width = ValueWidth(description.dataType);
    auto const title = [&] { return "channel \"" + description.name.substr(0, 80) + "\""; };
    if (description.name.size() > kLongestStoreName || description.units.size() > kLongestStoreName) {
        reason = "the name or the units of channel " + std::to_string(channels.size() + 1) + " have more than 1 MB";
    } else if (width == 0) {
        reason = title() + " has the unknown data type " + std::to_string(description.dataType);
    } else if (description.arraySize < 1) {
        reason = title() + " has the array size " + std::to_string(description.arraySize);
    } else if (channels.size() >= std::numeric_limits<int>::max()) {
        reason = "there are more channels than a store can hold";
    } else {
        StoreChannel& channel = channels.emplace_back();
        auto const elements = static_cast<std::uint64_t>(description.arraySize);
        bool const isText = description.dataType == DataType::kText;
        channel.elementWidth = width;
        channel.columnWidth = isText ? elements : width;
        channel.valueWidth = isText || description.recordType != 1 ? channel.columnWidth : width * elements;
        channel.description = std::move(description);
        return true;
    }
    return false;
}

bool CStoreStructure::Arrange(std::string& reason) {
    auto const locations = static_cast<std::uint64_t>(m_locations);
    m_columnBytes = m_elementBytes = m_valueBytes = 0;
    bool fits = !channels.empty() || m_locations <= kMostBareLocations;
    for (StoreChannel& channel : channels) {
        channel.columnStart = m_columnBytes;
        channel.elementsStart = m_elementBytes;
        fits = fits && AddBytes(m_columnBytes, locations, channel.columnWidth) &&
               AddBytes(m_valueBytes, locations, channel.valueWidth) &&
               (!channel.IsArray() || AddBytes(m_elementBytes, locations, channel.valueWidth));
    }
    if (!fits) reason = "the profiles and channels need more bytes than a file can hold";
    return fits;
}

void CStoreStructure::KeepFirstElements() {
    for (StoreChannel& channel : channels) channel.valueWidth = channel.columnWidth;
    m_elementBytes = 0;
    m_valueBytes = m_columnBytes;
}

}  // namespace norva
