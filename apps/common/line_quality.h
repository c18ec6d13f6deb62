#pragma once

#include "norva/file_util.h"

#include <functional>
#include <vector>

namespace norva {

/// What the values of one channel along one line are like. Deleted locations count as deleted alone.
struct QualityRow {
    int line = 0;
    int channel = 0;  ///< index
    long count = 0;
    long noData = 0;
    long deleted = 0;
    double minimum = 0;  ///< these four only where there are values
    double maximum = 0;
    double mean = 0;
    double deviation = 0;
    long spikes = 0;       ///< values far off the median of their neighbours, measured by how far values usually are
    long gaps = 0;         ///< stretches of no-data between values
    long duplicates = -1;  ///< positions or times as at the location before; -1 for other channels
    long reversals = -1;   ///< times before that of the location before; -1 for other channels
    long place = -1;       ///< the first location with any of these four, else that of the lowest value
};

/// The channels of the positions, by index; -1 for none.
struct QualityKeys {
    int x = -1;
    int y = -1;
};

/// Marks of deletion that stand for those of the store; null for a line whose own marks hold.
using DeletionMarks = std::function<std::vector<bool> const*(int line)>;

/// Looks at all numbers of an open store, a row per line and channel of numbers. `progress` is told how much of 1 is
/// done and stops the work with false. False then, and when the store cannot be read; `rows` says nothing.
bool LookAtQuality(CNorvaFileUtil& store, DeletionMarks const& changed, QualityKeys const& keys,
                   std::function<bool(double)> const& progress, std::vector<QualityRow>& rows);

/// What the values of one line are like, NaN for no-data; `deleted` may be empty. Without line and channel, and without
/// the duplicates of positions.
QualityRow LookAtValues(std::vector<double> const& values, std::vector<bool> const& deleted, bool isNumber,
                        bool isTime);

}  // namespace norva
