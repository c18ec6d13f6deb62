#pragma once

#include "store/value_rules.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace norva {

/// A float, double, 32-bit or 16-bit integer, little-endian.
template <typename Value>
Value LoadValue(char const* in) {
    if constexpr (std::is_same_v<Value, float>) {
        return LoadFloat(in);
    } else if constexpr (std::is_same_v<Value, double>) {
        return LoadDouble(in);
    } else if constexpr (std::is_same_v<Value, std::int32_t>) {
        return static_cast<std::int32_t>(LoadLittle32(in));
    } else {
        return static_cast<std::int16_t>(LoadLittle16(in));
    }
}

/// Converts `count` values, the first at `in` and each `stride` bytes after the one before, to packed values of a
/// store at `out`. Both sides are little-endian.
///
/// Integers keep their low bits in a narrower one. A float becomes the integer below it in amount; what does not fit
/// in 32 bits, NaN included, becomes -2147483648, and so 0 in 16 bits.
using ConvertValues = void (*)(char const* in, std::size_t stride, std::size_t count, char* out);

/// The conversion from a read format to a data type of the store; null when there is none.
ConvertValues FindConversion(int readFormat, int dataType);

}  // namespace norva
