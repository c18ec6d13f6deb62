#include "import_binary/value_tally.h"

#include "import_binary/binary_conversion.h"
#include "import_binary/binary_record.h"
#include "norva/values.h"
#include "store/value_rules.h"

#include <array>
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

template <typename From>
TallyValues FindFrom(int dataType) {
    switch (dataType) {
        case DataType::kFloat:
            return TallyAll<From, float>;
        case DataType::kDouble:
            return TallyAll<From, double>;
        case DataType::kInt:
        case DataType::kLong:
            return TallyAll<From, std::int32_t>;
        case DataType::kShort:
            return TallyAll<From, std::int16_t>;
        default:
            return nullptr;
    }
}

}  // namespace

template <typename Value>
void TallyStored(char const* values, std::size_t count, ValueTally& tally) {
    using Limits = std::numeric_limits<Value>;
    // Lanes that do not depend on each other become vector instructions.
    constexpr std::size_t kLanes = 32;
    using Count = std::conditional_t<sizeof(Value) == 8, std::uint64_t, std::uint32_t>;
    std::array<Value, kLanes> low;
    std::array<Value, kLanes> high;
    std::array<Count, kLanes> marked{};
    low.fill(Limits::has_infinity ? Limits::infinity() : Limits::max());
    high.fill(Limits::has_infinity ? -Limits::infinity() : Limits::lowest());
    std::array<Value, kLanes> batch;
    for (std::size_t done = 0; done < count; done += kLanes) {
        std::size_t const taken = std::min(kLanes, count - done);
        // Values that are marked already fill the last batch up; they are taken off again.
        for (std::size_t i = taken; i < kLanes; ++i) batch[i] = Mark<Value>();
        for (std::size_t i = 0; i < taken; ++i) batch[i] = LoadValue<Value>(values + (done + i) * sizeof(Value));
        for (std::size_t i = 0; i < kLanes; ++i) {
            Value const value = batch[i];
            Value const least = low[i];
            Value const most = high[i];
            bool const isMarked = IsMarked(value);
            marked[i] += isMarked ? Count{1} : Count{0};
            low[i] = (!isMarked & (value < least)) ? value : least;
            high[i] = (!isMarked & (value > most)) ? value : most;
        }
    }
    std::uint64_t noData = 0;
    for (Count const n : marked) noData += n;
    noData -= (kLanes - count % kLanes) % kLanes;
    tally.noData += noData;
    if (noData == count) return;
    tally.minimum = std::min(tally.minimum, static_cast<double>(*std::ranges::min_element(low)));
    tally.maximum = std::max(tally.maximum, static_cast<double>(*std::ranges::max_element(high)));
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

TallyValues FindTally(int readFormat, int dataType) {
    switch (readFormat) {
        case ReadFormat::kInt32:
            return FindFrom<std::int32_t>(dataType);
        case ReadFormat::kFloat:
            return FindFrom<float>(dataType);
        case ReadFormat::kDouble:
            return FindFrom<double>(dataType);
        case ReadFormat::kInt16:
            return FindFrom<std::int16_t>(dataType);
        default:
            return nullptr;
    }
}

}  // namespace norva
