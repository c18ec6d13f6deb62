#pragma once

#include "norva/import_report.h"
#include "norva/settings.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace norva {

/// What a report says of a channel's values, counted in blocks.
struct ValueTally {
    std::uint64_t noData = 0;
    std::uint64_t outOfRange = 0;
    std::uint64_t withFraction = 0;
    std::uint64_t unreadable = 0;                              ///< texts without a number
    std::uint64_t withRest = 0;                                ///< texts with something behind the number
    std::uint64_t cut = 0;                                     ///< texts
    double minimum = std::numeric_limits<double>::infinity();  ///< above the maximum when there are no values
    double maximum = -std::numeric_limits<double>::infinity();

    void Fill(ReportChannel& channel) const;
};

/// Counts no-data among `count` packed values, and takes in the range of the others. For the types of a store.
template <typename Value>
void TallyStored(char const* values, std::size_t count, ValueTally& tally);

/// Takes in one stored value that is not no-data.
template <typename Value>
void TallyRange(Value stored, ValueTally& tally) {
    tally.minimum = std::min(tally.minimum, static_cast<double>(stored));
    tally.maximum = std::max(tally.maximum, static_cast<double>(stored));
}

/// Counts what a number, which is not no-data, lost when it became `stored`: true when it did not fit.
template <typename Value>
bool TallyLoss(double value, Value stored, ValueTally& tally) {
    bool isOut = false;
    if constexpr (std::is_floating_point_v<Value>) {
        isOut = std::isinf(stored) && !std::isinf(value);
    } else {
        double const rest = std::fabs(value - stored);
        isOut = !(rest < 1);
        tally.withFraction += !isOut && rest > 0 ? 1U : 0U;
    }
    tally.outOfRange += isOut ? 1U : 0U;
    return isOut;
}

/// Counts `count` values that were converted from `in`, each `stride` bytes after the one before, to `out`.
using TallyValues = void (*)(char const* in, std::size_t stride, std::size_t count, char const* out, ValueTally& tally);

/// For a conversion that there is; null for any other.
TallyValues FindTally(RecordChannel::Format readFormat, int dataType);

}  // namespace norva
