#include "exchange/value_tally.h"

#include "formats/records/binary_conversion.h"
#include "formats/records/binary_record.h"
#include "norva/values.h"
#include "store/value_rules.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <type_traits>

namespace norva {

namespace {

template <typename Value>
constexpr Value Mark() {
    if constexpr (std::is_same_v<Value, float>) {
        return kNoDataFloat;
    } else if constexpr (std::is_same_v<Value, double>) {
        return kNoDataDouble;
    } else {
        return static_cast<Value>(sizeof(Value) == sizeof kNoDataLong ? kNoDataLong : kNoDataShort);
    }
}

/// Around 1e30 numbers stand so far apart that equality is all there is to ask.
template <typename Value>
bool IsMarked(Value value) {
    return value == Mark<Value>();
}

/// Whether every value reaches the store, but for rounding.
template <typename From, typename To>
constexpr bool kAlwaysFits = std::is_floating_point_v<To> ? !(std::is_same_v<From, double> && std::is_same_v<To, float>)
                                                          : std::is_integral_v<From> && sizeof(From) <= sizeof(To);

template <typename From, typename To>
void TallyAll(char const* in, std::size_t stride, std::size_t count, char const* out, ValueTally& tally) {
    TallyStored<To>(out, count, tally);
    if constexpr (!kAlwaysFits<From, To>) {
        for (std::size_t i = 0; i < count; ++i, in += stride, out += sizeof(To)) {
            To const stored = LoadValue<To>(out);
            bool const isOut = TallyLoss(static_cast<double>(LoadValue<From>(in)), stored, tally);
            // What is no-data only because it did not fit was not marked.
            tally.noData -= isOut && IsMarked(stored) ? 1U : 0U;
        }
    }
}

}  // namespace

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
    Lanes const mark = Lanes{} + Mark<Value>();
    Lanes low = Lanes{} + kHighest;
    Lanes high = Lanes{} + kLowest;
    std::uint64_t noData = 0;
    char const* at = values;
    std::size_t rounds = std::endian::native == std::endian::little ? count / kLanes : 0;
    std::size_t const left = count - rounds * kLanes;
    while (rounds > 0) {
        std::size_t const some = std::min(rounds, kMostRounds);
        Masks marked{};
        for (std::size_t i = 0; i < some; ++i, at += sizeof(Lanes)) {
            Lanes value;
            std::memcpy(&value, at, sizeof value);
            Masks const isMarked = value == mark;
            marked -= isMarked;
            low = (~isMarked & (value < low)) ? value : low;
            high = (~isMarked & (value > high)) ? value : high;
        }
        for (std::size_t i = 0; i < kLanes; ++i) noData += static_cast<std::uint64_t>(marked[i]);
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
        noData += IsMarked(value) ? 1U : 0U;
        if (IsMarked(value)) continue;
        least = std::min(value, least);
        most = std::max(value, most);
    }
    tally.noData += noData;
    if (noData == count) return;
    tally.minimum = std::min(tally.minimum, static_cast<double>(least));
    tally.maximum = std::max(tally.maximum, static_cast<double>(most));
}

template void TallyStored<float>(char const*, std::size_t, ValueTally&);
template void TallyStored<double>(char const*, std::size_t, ValueTally&);
template void TallyStored<std::int32_t>(char const*, std::size_t, ValueTally&);
template void TallyStored<std::int16_t>(char const*, std::size_t, ValueTally&);

void ValueTally::Fill(ReportChannel& channel) const {
    channel.noData.count = noData;
    channel.outOfRange.count = outOfRange;
    channel.withFraction.count = withFraction;
    channel.unreadable.count = unreadable;
    channel.withRest.count = withRest;
    channel.cut.count = cut;
    channel.hasRange = minimum <= maximum;
    if (!channel.hasRange) return;
    channel.minimum = minimum;
    channel.maximum = maximum;
}

TallyValues FindTally(RecordChannel::Format readFormat, int dataType) {
    return OfTypes<TallyValues>(readFormat, dataType,
                                []<typename From, typename To>() -> TallyValues { return TallyAll<From, To>; });
}

}  // namespace norva
