#pragma once

#include "norva/values.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Column labels from a header line of a text file.
namespace norva {

/// Which characters separate the labels of a header line.
struct HeaderDelimiters {
    bool comma = false;
    bool tab = false;
    bool semicolon = false;
    bool space = false;
    bool other = false;
    std::string otherText = " ";  ///< of the "Other:" box, one character or none

    /// A line feed, then every character of the set.
    std::string Text() const;
};

/// Splits a header line into `count` labels: as it stands, else what follows its first ":". Empty when neither gives
/// that many. With `readsHyphens` every "-" counts as a space.
std::vector<std::string> SplitHeaderLine(std::string_view line, std::size_t count, HeaderDelimiters const& delimiters,
                                         bool readsHyphens);

/// Sets the column's name, and its units when the label has any: "name:units" or "name (units)".
void SplitNameAndUnits(std::string_view label, NorvaChannelStruct& column);

}  // namespace norva
