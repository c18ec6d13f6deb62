#pragma once

#include "store/store_reader.h"

#include <cstddef>
#include <string>

namespace norva {

/// Writes the store that `reader` reads anew to `path`, with the locations of every profile in ascending order of a
/// channel (of an array, of its first elements): stable, no-data and what is no number last; text compares by bytes,
/// and "*" is its no-data. Memory holds one profile's order and one column's values of that profile at a time.
bool WriteSortedStore(CStoreReader& reader, std::size_t channel, std::string const& path, std::string& reason);

/// The same without changing an order, for marks and flags that changed.
bool WriteStoreAnew(CStoreReader& reader, std::string const& path, std::string& reason);

}  // namespace norva
