#pragma once

#include "common/line_quality.h"
#include "map_data.h"

namespace norva {

/// LookAtQuality() of a store file with changes that are not saved, on any thread. No rows when it was stopped, nor
/// when the store cannot be read.
std::vector<QualityRow> LookAtQuality(QString const& path, StoreChanges const& changes, QualityKeys const& keys,
                                      std::function<bool(double)> const& progress);

}  // namespace norva
