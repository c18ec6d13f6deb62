#include "reduce.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace norva {

namespace {

/// Points of one pixel column that follow each other.
struct Run {
    std::size_t first = 0;
    std::size_t last = 0;
    std::size_t lowest = 0;
    std::size_t highest = 0;
};

}  // namespace

ReducedLine ReduceForPixels(std::vector<double> const& x, std::vector<double> const& y, double lower, double upper,
                            int pixels, double longestStep) {
    ReducedLine line;
    std::size_t const count = x.empty() ? y.size() : std::min(x.size(), y.size());
    if (count == 0 || pixels < 1 || !(upper > lower)) return line;
    double const perUnit = pixels / (upper - lower);
    auto const at = [&x](std::size_t i) { return x.empty() ? static_cast<double>(i) : x[i]; };
    auto const take = [&](std::size_t i) {
        line.x.push_back(at(i));
        line.y.push_back(y[i]);
    };
    auto const gap = [&line] {
        if (!line.y.empty() && !std::isnan(line.y.back())) {
            line.x.push_back(line.x.back());
            line.y.push_back(std::numeric_limits<double>::quiet_NaN());
        }
    };
    auto const flush = [&](Run const& run) {
        std::size_t points[] = {run.first, run.lowest, run.highest, run.last};
        std::sort(std::begin(points), std::end(points));
        take(points[0]);
        for (int i = 1; i < 4; ++i) {
            if (points[i] != points[i - 1]) take(points[i]);
        }
    };

    std::size_t begin = 0;
    std::size_t end = count;
    if (x.empty()) {  // only the visible locations and one on either side
        begin = static_cast<std::size_t>(std::clamp(std::floor(lower) - 1, 0.0, static_cast<double>(count)));
        end = static_cast<std::size_t>(std::clamp(std::ceil(upper) + 2, 0.0, static_cast<double>(count)));
    }
    // Points outside the axis fall into the two columns next to it.
    auto const columnOf = [&](std::size_t i) {
        return static_cast<long>(std::clamp(std::floor((at(i) - lower) * perUnit), -1.0, static_cast<double>(pixels)));
    };
    bool open = false;
    long column = 0;
    Run run;
    for (std::size_t i = begin; i < end; ++i) {
        if (std::isnan(y[i]) || std::isnan(at(i))) {
            if (open) flush(run);
            open = false;
            gap();
            continue;
        }
        if (open && std::abs(at(i) - at(i - 1)) > longestStep) {
            flush(run);
            open = false;
            gap();
        }
        long const here = columnOf(i);
        if (!open || here != column) {
            if (open) flush(run);
            run = {i, i, i, i};
            column = here;
            open = true;
            continue;
        }
        run.last = i;
        if (y[i] < y[run.lowest]) run.lowest = i;
        if (y[i] > y[run.highest]) run.highest = i;
    }
    if (open) flush(run);
    return line;
}

}  // namespace norva
