#pragma once

#include "norva/import_report.h"
#include "store/value_conversion.h"

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
    std::uint64_t notNumber = 0;
    std::uint64_t altered = 0;
    std::uint64_t withFraction = 0;
    std::uint64_t unreadable = 0;                              ///< texts without a number
    std::uint64_t withRest = 0;                                ///< texts with something behind the number
    std::uint64_t cut = 0;                                     ///< texts
    double minimum = std::numeric_limits<double>::infinity();  ///< above the maximum when there are no values
    double maximum = -std::numeric_limits<double>::infinity();

    void Fill(ReportChannel& channel) const;
};

/// Counts no-data and NaN among `count` packed values, and takes in the range of the others. For the types of a store.
template <typename Value>
void TallyStored(char const* values, std::size_t count, ValueTally& tally);

/// Takes in one stored value that is not no-data.
template <typename Value>
void TallyRange(Value stored, ValueTally& tally) {
    tally.minimum = std::min(tally.minimum, static_cast<double>(stored));
    tally.maximum = std::max(tally.maximum, static_cast<double>(stored));
}

/// Counts what a number lost when it became a stored whole number: true when it is another one.
template <typename Value>
bool TallyTruncation(double value, Value stored, ValueTally& tally) {
    double const rest = std::fabs(value - stored);
    bool const isOther = !(rest < 1);
    tally.altered += isOther ? 1U : 0U;
    tally.withFraction += !isOther && rest > 0 ? 1U : 0U;
    return isOther;
}

/// Counts what became of one number that was converted to `stored`. One that the source marks as no-data is told as
/// such only where the store has it as no-data too.
template <typename From, typename To>
void TallyConverted(From value, bool isMarked, To stored, ValueTally& tally) {
    bool const isNoData = IsNoDataValue(stored);
    if (isMarked) {
        ++(isNoData ? tally.noData : tally.altered);
        return;
    }
    if constexpr (std::is_floating_point_v<To>) {
        auto const number = static_cast<double>(value);
        if (number != number) {
            ++tally.notNumber;
            return;
        }
        if (std::isinf(stored) && !std::isinf(number)) {
            ++tally.altered;
            return;
        }
    } else if (TallyTruncation(static_cast<double>(value), stored, tally)) {
        return;
    }
    if (isNoData) {
        ++tally.noData;
    } else {
        TallyRange(stored, tally);
    }
}

}  // namespace norva
