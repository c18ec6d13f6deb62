#include "store/store_sort.h"

#include "store/store_output.h"
#include "store/store_spool.h"
#include "store/value_rules.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>
#include <string_view>
#include <vector>

namespace norva {

namespace {

using Order = std::vector<std::uint32_t>;

constexpr std::size_t kCopyBuffer = 1024 * 1024;

/// What a number is sorted by; NaN for no-data. Of an integer, no-data is the largest value and comes last by itself.
double NumberKey(int dataType, char const* value) {
    double const number = StoredNumber(dataType, value);
    bool const isNoData = dataType == DataType::kFloat ? IsNoData(static_cast<float>(number)) : IsNoData(number);
    return isNoData ? std::numeric_limits<double>::quiet_NaN() : number;
}

bool IsTextNoData(std::string_view text) {
    return text.front() == '*' && text.find_first_not_of(' ', 1) == std::string_view::npos;
}

template <typename IsData, typename Before>
void SortOrder(Order& order, IsData isData, Before before) {
    auto const dataEnd = std::stable_partition(order.begin(), order.end(), isData);
    if (!std::is_sorted(order.begin(), dataEnd, before)) std::stable_sort(order.begin(), dataEnd, before);
}

/// The order of a profile's locations by the packed values of its column.
Order FindOrder(StoreChannel const& channel, std::vector<char> const& values, std::size_t count) {
    Order order(count);
    std::iota(order.begin(), order.end(), 0U);
    auto const width = static_cast<std::size_t>(channel.columnWidth);
    int const dataType = channel.description.dataType;
    if (dataType == DataType::kText) {
        auto const text = [&](std::uint32_t at) { return std::string_view(values.data() + at * width, width); };
        SortOrder(
            order, [&](std::uint32_t at) { return !IsTextNoData(text(at)); },
            [&](std::uint32_t first, std::uint32_t second) { return text(first) < text(second); });
    } else {
        std::vector<double> keys(count);
        for (std::size_t at = 0; at < count; ++at) keys[at] = NumberKey(dataType, values.data() + at * width);
        SortOrder(
            order, [&](std::uint32_t at) { return !std::isnan(keys[at]); },
            [&](std::uint32_t first, std::uint32_t second) { return keys[first] < keys[second]; });
    }
    return order;
}

/// One writing of a store's contents in a new order.
class CStoreRewriter {
public:
    CStoreRewriter(CStoreReader& reader, std::string& reason)
        : m_reader(reader), m_structure(reader.Structure()), m_reason(reason) {}

    bool Copy(std::string const& path);
    bool Sort(std::size_t channel, std::string const& path);

private:
    using Read = bool (CStoreReader::*)(std::size_t, std::int64_t, std::int64_t, void*);
    using Write = bool (CStoreOutput::*)(void const*, std::size_t);

    bool FailReading();
    bool FailWriting();
    bool CopyBytes(std::uint64_t offset, std::uint64_t size, Write write);
    bool KeepOrders(std::size_t channel);
    bool MoveColumn(std::size_t channel, std::uint64_t width, Read read, Write write);
    void MoveMarks(StoreProfile& profile, Order const& order);

    CStoreReader& m_reader;
    CStoreStructure& m_structure;
    CStoreStructure m_sorted;
    std::string& m_reason;
    CStoreOutput m_output;
    CStoreSpool m_orders;
    std::vector<char> m_values;
    std::vector<char> m_moved;
};

bool CStoreRewriter::FailReading() {
    m_reason = m_reader.Reason();
    return false;
}

bool CStoreRewriter::FailWriting() {
    m_reason = m_output.Reason();
    return false;
}

bool CStoreRewriter::CopyBytes(std::uint64_t offset, std::uint64_t size, Write write) {
    m_values.resize(std::min<std::uint64_t>(size, kCopyBuffer));
    while (size > 0) {
        auto const step = static_cast<std::size_t>(std::min<std::uint64_t>(size, kCopyBuffer));
        if (!m_reader.ReadBytes(offset, m_values.data(), step)) return FailReading();
        if (!(m_output.*write)(m_values.data(), step)) return FailWriting();
        offset += step;
        size -= step;
    }
    return true;
}

bool CStoreRewriter::Copy(std::string const& path) {
    StoreLayout const& layout = m_reader.Layout();
    if (!m_output.Open(path) || !m_output.Begin(m_structure)) return FailWriting();
    if (!CopyBytes(layout.columns, m_structure.ColumnBytes(), &CStoreOutput::WriteColumns) ||
        !CopyBytes(layout.elements, m_structure.ElementBytes(), &CStoreOutput::WriteElements)) {
        return false;
    }
    // With their old checksums, values that were damaged on the disk still show as such.
    return m_output.Finish(m_structure, layout.hasOwnSection ? &layout.trailer : nullptr) || FailWriting();
}

void CStoreRewriter::MoveMarks(StoreProfile& profile, Order const& order) {
    CDeletedMarks const before = profile.deleted;
    if (before.Count() == 0) return;
    for (std::size_t at = 0; at < order.size(); ++at) {
        profile.deleted.Mark(static_cast<std::int64_t>(at), before.Has(order[at]), profile.locations);
    }
}

/// Finds every profile's order and puts it aside.
bool CStoreRewriter::KeepOrders(std::size_t channel) {
    StoreChannel const& by = m_structure.channels[channel];
    for (StoreProfile& profile : m_sorted.profiles) {
        if (profile.locations > std::numeric_limits<std::uint32_t>::max()) {
            m_reason = "profile \"" + profile.name.substr(0, 80) + "\" has too many locations to be sorted";
            return false;
        }
        auto const count = static_cast<std::size_t>(profile.locations);
        m_values.resize(count * static_cast<std::size_t>(by.columnWidth));
        if (!m_reader.ReadColumn(channel, profile.first, profile.locations, m_values.data())) return FailReading();
        Order const order = FindOrder(by, m_values, count);
        MoveMarks(profile, order);
        if (!m_orders.Append(order.data(), order.size() * sizeof(order[0]))) {
            m_reason = m_orders.Reason();
            return false;
        }
    }
    return true;
}

bool CStoreRewriter::MoveColumn(std::size_t channel, std::uint64_t width, Read read, Write write) {
    auto const size = static_cast<std::size_t>(width);
    Order order;
    for (StoreProfile const& profile : m_structure.profiles) {
        auto const count = static_cast<std::size_t>(profile.locations);
        order.resize(count);
        m_values.resize(count * size);
        if (!m_orders.Read(static_cast<std::uint64_t>(profile.first) * sizeof(order[0]), order.data(),
                           count * sizeof(order[0]))) {
            m_reason = m_orders.Reason();
            return false;
        }
        if (!(m_reader.*read)(channel, profile.first, profile.locations, m_values.data())) return FailReading();
        std::size_t const perStep = std::max<std::size_t>(kCopyBuffer / size, 1);
        for (std::size_t first = 0; first < count; first += perStep) {
            std::size_t const step = std::min(perStep, count - first);
            m_moved.resize(step * size);
            for (std::size_t at = 0; at < step; ++at) {
                std::memcpy(m_moved.data() + at * size, m_values.data() + order[first + at] * size, size);
            }
            if (!(m_output.*write)(m_moved.data(), m_moved.size())) return FailWriting();
        }
    }
    return true;
}

bool CStoreRewriter::Sort(std::size_t channel, std::string const& path) {
    m_sorted = m_structure;
    if (!m_output.Open(path)) return FailWriting();
    if (!m_orders.Open(m_output.SiblingPath(".order"))) {
        m_reason = m_orders.Reason();
        return false;
    }
    if (!KeepOrders(channel)) return false;
    if (!m_output.Begin(m_sorted)) return FailWriting();
    std::vector<StoreChannel> const& channels = m_structure.channels;
    for (std::size_t at = 0; at < channels.size(); ++at) {
        if (!MoveColumn(at, channels[at].columnWidth, &CStoreReader::ReadColumn, &CStoreOutput::WriteColumns)) {
            return false;
        }
    }
    for (std::size_t at = 0; at < channels.size(); ++at) {
        if (channels[at].IsArray() &&
            !MoveColumn(at, channels[at].valueWidth, &CStoreReader::ReadWhole, &CStoreOutput::WriteElements)) {
            return false;
        }
    }
    return m_output.Finish(m_sorted) || FailWriting();
}

}  // namespace

bool WriteSortedStore(CStoreReader& reader, std::size_t channel, std::string const& path, std::string& reason) {
    return CStoreRewriter(reader, reason).Sort(channel, path);
}

bool WriteStoreAnew(CStoreReader& reader, std::string const& path, std::string& reason) {
    return CStoreRewriter(reader, reason).Copy(path);
}

}  // namespace norva
