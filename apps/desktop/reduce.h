#pragma once

#include <limits>
#include <vector>

namespace norva {

/// A line of points that draws the same as the full one: per pixel column of the x axis the first, lowest, highest
/// and last value of every run of points that falls into it, so that no spike is lost however many points there are.
/// NaN in `x` or `y` makes a gap (one NaN point), and so does a step in `x` longer than `longestStep`. An empty `x`
/// stands for 0, 1, 2, ...; points outside [lower, upper] are left out but for the nearest on either side.
struct ReducedLine {
    std::vector<double> x;
    std::vector<double> y;
};

ReducedLine ReduceForPixels(std::vector<double> const& x, std::vector<double> const& y, double lower, double upper,
                            int pixels, double longestStep = std::numeric_limits<double>::infinity());

}  // namespace norva
