#include "quality.h"

namespace norva {

std::vector<QualityRow> LookAtQuality(QString const& path, StoreChanges const& changes, QualityKeys const& keys,
                                      std::function<bool(double)> const& progress) {
    CNorvaFileUtil store;
    if (store.SetFileName(path.toStdString(), kReopenStore, nullptr) == 0) return {};
    std::vector<QualityRow> rows;
    auto const marks = [&changes](int line) { return changes.MarksOf(line); };
    return LookAtQuality(store, marks, keys, progress, rows) ? rows : std::vector<QualityRow>();
}

}  // namespace norva
