#include "exchange/value_tally.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

namespace norva {

template <typename Value>
void TallyStored(char const* values, std::size_t count, ValueTally& tally) {
    // Several values in one register: there is one comparison for each of them, but no branch and no detour.
    constexpr std::size_t kLanes = 16 / sizeof(Value);
    using Lanes [[gnu::vector_size(16)]] = Value;
    using Masks = decltype(Lanes{} == Lanes{});
    constexpr std::size_t kMostRounds = 16384;  // what a lane of 16 bits can count
    using Limits = std::numeric_limits<Value>;
    constexpr Value kHighest = Limits::has_infinity ? Limits::infinity() : Limits::max();
    constexpr Value kLowest = Limits::has_infinity ? -Limits::infinity() : Limits::lowest();
    Lanes const mark = Lanes{} + NoDataOf<Value>();
    Lanes low = Lanes{} + kHighest;
    Lanes high = Lanes{} + kLowest;
    std::uint64_t noData = 0;
    std::uint64_t notNumber = 0;
    char const* at = values;
    std::size_t rounds = std::endian::native == std::endian::little ? count / kLanes : 0;
    std::size_t const left = count - rounds * kLanes;
    while (rounds > 0) {
        std::size_t const some = std::min(rounds, kMostRounds);
        Masks marked{};
        Masks unordered{};
        for (std::size_t i = 0; i < some; ++i, at += sizeof(Lanes)) {
            Lanes value;
            std::memcpy(&value, at, sizeof value);
            Masks const isMarked = value == mark;
            marked -= isMarked;
            if constexpr (Limits::has_quiet_NaN) unordered -= value != value;
            low = (~isMarked & (value < low)) ? value : low;
            high = (~isMarked & (value > high)) ? value : high;
        }
        for (std::size_t i = 0; i < kLanes; ++i) {
            noData += static_cast<std::uint64_t>(marked[i]);
            notNumber += static_cast<std::uint64_t>(unordered[i]);
        }
        rounds -= some;
    }
    Value least = kHighest;
    Value most = kLowest;
    for (std::size_t i = 0; i < kLanes; ++i) {
        least = std::min<Value>(least, low[i]);
        most = std::max<Value>(most, high[i]);
    }
    for (std::size_t i = 0; i < left; ++i, at += sizeof(Value)) {
        auto const value = LoadValue<Value>(at);
        noData += IsNoDataValue(value) ? 1U : 0U;
        if (IsNoDataValue(value)) continue;
        notNumber += value != value ? 1U : 0U;
        // In this order NaN leaves them as they are.
        least = std::min(least, value);
        most = std::max(most, value);
    }
    tally.noData += noData;
    tally.notNumber += notNumber;
    if (noData + notNumber == count) return;
    tally.minimum = std::min(tally.minimum, static_cast<double>(least));
    tally.maximum = std::max(tally.maximum, static_cast<double>(most));
}

template void TallyStored<float>(char const*, std::size_t, ValueTally&);
template void TallyStored<double>(char const*, std::size_t, ValueTally&);
template void TallyStored<std::int32_t>(char const*, std::size_t, ValueTally&);
template void TallyStored<std::int16_t>(char const*, std::size_t, ValueTally&);

void ValueTally::Fill(ReportChannel& channel) const {
    channel.noData.count = noData;
    channel.notNumber.count = notNumber;
    channel.altered.count = altered;
    channel.withFraction.count = withFraction;
    channel.unreadable.count = unreadable;
    channel.withRest.count = withRest;
    channel.cut.count = cut;
    channel.hasRange = minimum <= maximum;
    if (!channel.hasRange) return;
    channel.minimum = minimum;
    channel.maximum = maximum;
}

}  // namespace norva
