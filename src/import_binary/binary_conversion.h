#pragma once

#include <cstddef>

namespace norva {

/// Converts `count` values, the first at `in` and each `stride` bytes after the one before, to packed values of a
/// store at `out`. Both sides are little-endian.
///
/// Integers keep their low bits in a narrower one. A float becomes the integer below it in amount; what does not fit
/// in 32 bits, NaN included, becomes -2147483648, and so 0 in 16 bits.
using ConvertValues = void (*)(char const* in, std::size_t stride, std::size_t count, char* out);

/// The conversion from a read format to a data type of the store; null when there is none.
ConvertValues FindConversion(int readFormat, int dataType);

}  // namespace norva
