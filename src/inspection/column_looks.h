#pragma once

#include "inspection/cell_kind.h"
#include "inspection/line_split.h"
#include "norva/settings.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace norva {

/// What the cells of each column look like in most of the lines that have `width` parts; the lower half of the lines is
/// looked at, since a table's head stands at its top. Also says whether nearly every row quotes (`quotesEveryRow`).
std::vector<ColumnLook> FindColumnLooks(std::vector<std::string_view> const& lines, SplitRule const& rule,
                                        CellRules const& cells, std::size_t width, bool& quotesEveryRow);

}  // namespace norva
