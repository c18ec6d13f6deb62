#pragma once

#include "norva/import_report.h"

#include <cstddef>
#include <cstdint>
#include <limits>

namespace norva {

/// What a report says of a channel's values, counted in blocks.
struct ValueTally {
    std::uint64_t noData = 0;
    std::uint64_t outOfRange = 0;
    std::uint64_t withFraction = 0;
    double minimum = std::numeric_limits<double>::infinity();  ///< above the maximum when there are no values
    double maximum = -std::numeric_limits<double>::infinity();

    void Fill(ReportChannel& channel) const;
};

/// Counts `count` values that were converted from `in`, each `stride` bytes after the one before, to `out`.
using TallyValues = void (*)(char const* in, std::size_t stride, std::size_t count, char const* out, ValueTally& tally);

/// For a conversion that there is; null for any other.
TallyValues FindTally(int readFormat, int dataType);

}  // namespace norva
