#include "common/line_quality.h"

#include "common/store_column.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace norva {

namespace {

constexpr double kSpikeFactor = 10;  ///< times the usual distance from the median of the neighbours

/// Distance of a value from the median of itself and two values on either side; 0 at the ends, which have no two.
double OffNeighbours(std::vector<double> const& values, std::size_t i) {
    if (i < 2 || i + 2 >= values.size()) return 0;
    std::size_t const first = i - 2;
    std::array<double, 5> around{};
    std::copy_n(values.begin() + static_cast<std::ptrdiff_t>(first), 5, around.begin());
    std::nth_element(around.begin(), around.begin() + 2, around.end());
    return std::abs(values[i] - around[2]);
}

void CountSpikes(std::vector<double> const& values, std::vector<long> const& places, QualityRow& row, long& first) {
    if (values.size() < 7) return;
    std::vector<double> off(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) off[i] = OffNeighbours(values, i);
    std::vector<double> sorted;
    // Half of the values are their own median: what is usual is read from those that are not.
    std::copy_if(off.begin(), off.end(), std::back_inserter(sorted), [](double one) { return one > 0; });
    if (sorted.empty()) return;
    double usual = 0;
    if (sorted.size() >= values.size() / 8) {
        auto const middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
        std::nth_element(sorted.begin(), middle, sorted.end());
        usual = *middle;
    }
    for (std::size_t i = 0; i < off.size(); ++i) {
        if (!(off[i] > kSpikeFactor * usual)) continue;
        ++row.spikes;
        if (first < 0 || places[i] < first) first = places[i];
    }
}

/// Counts the locations at the same place as the one before.
void CountStandstills(std::vector<double> const& xs, std::vector<double> const& ys, std::vector<bool> const& deleted,
                      QualityRow& row) {
    row.duplicates = 0;
    std::size_t last = xs.size();
    for (std::size_t i = 0; i < xs.size(); ++i) {
        if ((!deleted.empty() && deleted[i]) || !std::isfinite(xs[i]) || !std::isfinite(ys[i])) continue;
        if (last < xs.size() && xs[i] == xs[last] && ys[i] == ys[last]) {
            ++row.duplicates;
            if (row.spikes + row.gaps == 0 && row.duplicates == 1) row.place = static_cast<long>(i);
        }
        last = i;
    }
}

}  // namespace

QualityRow LookAtValues(std::vector<double> const& values, std::vector<bool> const& deleted, bool isNumber,
                        bool isTime) {
    QualityRow row;
    row.count = static_cast<long>(values.size());
    if (isTime) row.duplicates = row.reversals = 0;
    std::vector<double> kept;
    std::vector<long> places;
    long first = -1;  // place of the first thing that is odd
    long lowest = -1;
    bool isMissing = false;
    double squares = 0;
    auto const note = [&first](long place) {
        if (first < 0) first = place;
    };
    for (std::size_t i = 0; i < values.size(); ++i) {
        long const place = static_cast<long>(i);
        if (!deleted.empty() && deleted[i]) {
            ++row.deleted;
            continue;
        }
        double const value = values[i];
        if (std::isnan(value)) {
            ++row.noData;
            isMissing = !kept.empty();
            continue;
        }
        if (isMissing) {
            ++row.gaps;
            note(place - 1);
        }
        isMissing = false;
        if (isTime && !kept.empty()) {
            row.duplicates += value == kept.back() ? 1 : 0;
            row.reversals += value < kept.back() ? 1 : 0;
            if (value <= kept.back()) note(place);
        }
        kept.push_back(value);
        places.push_back(place);
        auto const used = static_cast<double>(kept.size());
        if (kept.size() == 1 || value < row.minimum) {
            row.minimum = value;
            lowest = place;
        }
        row.maximum = kept.size() == 1 ? value : std::max(row.maximum, value);
        double const delta = value - row.mean;
        row.mean += delta / used;
        squares += delta * (value - row.mean);
    }
    if (!kept.empty()) row.deviation = std::sqrt(squares / static_cast<double>(kept.size()));
    if (isNumber && !isTime) CountSpikes(kept, places, row, first);
    row.place = first >= 0 ? first : lowest;
    return row;
}

bool LookAtQuality(CNorvaFileUtil& store, DeletionMarks const& changed, QualityKeys const& keys,
                   std::function<bool(double)> const& progress, std::vector<QualityRow>& rows) {
    rows.clear();
    double all = 0;
    double done = 0;
    for (int line = 0; line < store.ProfileCount; ++line) {
        all += static_cast<double>(store.GetProfileLocationNum(line, 0)) * store.ChannelCount;
    }
    CColumnReader reader(store);
    for (int line = 0; line < store.ProfileCount; ++line) {
        long const count = store.GetProfileLocationNum(line, 0);
        auto const size = static_cast<std::size_t>(count);
        std::vector<bool> deleted;
        if (std::vector<bool> const* const marks = changed(line)) {
            deleted = *marks;
        } else if (store.GetProfileLocationNum(line, 1) != count) {
            deleted.resize(size);
            for (long i = 0; i < count; ++i) {
                deleted[static_cast<std::size_t>(i)] = store.IsLocMarkedToDelete(line, i) != 0;
            }
        }
        std::vector<double> values(size), xs, ys;
        for (int n = 0; n < store.ChannelCount; ++n) {
            if (!progress(all > 0 ? done / all : 0)) return false;
            done += static_cast<double>(count);
            int const channel = store.GetFileChanIndex(n);
            if (store.GetChannelDataType(channel) == DataType::kText) continue;
            if (!reader.Read(channel, line, 0, count, values.data())) return false;
            int const format = store.GetChannelDisplayFormat(channel);
            bool const isTime = format == DisplayFormat::kTime;
            QualityRow row = LookAtValues(values, deleted, format != DisplayFormat::kDate, isTime);
            bool const isPosition = channel == keys.x || channel == keys.y;
            if (isPosition && keys.x >= 0 && keys.y >= 0) {
                if (xs.empty()) {
                    xs.resize(size);
                    ys.resize(size);
                    if (!reader.Read(keys.x, line, 0, count, xs.data()) ||
                        !reader.Read(keys.y, line, 0, count, ys.data())) {
                        return false;
                    }
                }
                CountStandstills(xs, ys, deleted, row);
            }
            row.line = line;
            row.channel = channel;
            rows.push_back(row);
        }
    }
    return true;
}

}  // namespace norva
