#pragma once

#include "norva/column_text.h"
#include "norva/values.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Column labels from a header line of a text file.
namespace norva {

/// Splits a header line into `count` labels: as it stands, else what follows its first ":". Empty when neither gives
/// that many. With `readsHyphens` every "-" counts as a space.
std::vector<std::string> SplitHeaderLine(std::string_view line, std::size_t count, HeaderDelimiters const& delimiters,
                                         bool readsHyphens);

/// How many labels the line holds as it stands.
std::size_t CountHeaderLabels(std::string_view line, HeaderDelimiters const& delimiters, bool readsHyphens);

/// Sets the column's name, and its units when the label has any: "name:units" or "name (units)".
void SplitNameAndUnits(std::string_view label, NorvaChannelStruct& column);

}  // namespace norva
