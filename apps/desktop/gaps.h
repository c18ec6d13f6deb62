#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace norva {

/// How many usual steps make a gap that is not bridged by a line between its ends.
inline constexpr double kStepsOfGap = 5;

/// The longest step between neighbours that is no gap: several times the median of the steps. `stepAt(i)` is the
/// distance from point i to the next, NaN where there is none. Infinite when too little is known.
template <typename StepAt>
double LongestUsualStep(std::size_t points, StepAt&& stepAt) {
    constexpr std::size_t kSteps = 4096;
    std::vector<double> steps;
    std::size_t const every = points / kSteps + 1;
    for (std::size_t i = 0; i + 1 < points; i += every) {
        double const step = stepAt(i);
        if (std::isfinite(step) && step > 0) steps.push_back(step);
    }
    if (steps.size() < 4) return std::numeric_limits<double>::infinity();
    auto const middle = steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / 2);
    std::nth_element(steps.begin(), middle, steps.end());
    return kStepsOfGap * *middle;
}

}  // namespace norva
