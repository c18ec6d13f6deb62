#include "inspection/file_reading.h"

#include <algorithm>

namespace norva {

double FileReading::Worth() const {
    auto const typed =
        std::count_if(looks.begin(), looks.end(), [](ColumnLook const& look) { return IsTyped(KindOf(look.kind)); });
    auto const others = static_cast<std::ptrdiff_t>(looks.size()) - typed;
    return static_cast<double>(pass->counts.rows - pass->counts.mended) *
           (static_cast<double>(typed) + 0.1 * static_cast<double>(others));
}

bool FileReading::SuitsBadly() const {
    std::uint64_t const odd = pass->OddLines();
    return odd > 2 && odd * 5 > pass->counts.rows + odd;
}

}  // namespace norva
