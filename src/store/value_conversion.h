#pragma once

#include "store/value_rules.h"

#include <cstdint>
#include <limits>
#include <type_traits>

/// Conversions between the number types of a store, and packed values, little-endian.
namespace norva {

/// A float, double, 32-bit or 16-bit integer.
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

inline void StoreValue(char* out, float value) {
    StoreFloat(out, value);
}
inline void StoreValue(char* out, double value) {
    StoreDouble(out, value);
}
inline void StoreValue(char* out, std::int32_t value) {
    StoreLittle32(out, static_cast<std::uint32_t>(value));
}
inline void StoreValue(char* out, std::int16_t value) {
    StoreLittle16(out, static_cast<std::uint16_t>(value));
}

/// The no-data value of a type.
template <typename Value>
constexpr Value NoDataOf() {
    if constexpr (std::is_same_v<Value, float>) {
        return kNoDataFloat;
    } else if constexpr (std::is_same_v<Value, double>) {
        return kNoDataDouble;
    } else if constexpr (std::is_same_v<Value, std::int32_t>) {
        return kNoDataLong;
    } else {
        return kNoDataShort;
    }
}

/// Whether a value is the no-data value of its type. Around 1e30 numbers stand so far apart that equality is all there
/// is to ask.
template <typename Value>
constexpr bool IsNoDataValue(Value value) {
    return value == NoDataOf<Value>();
}

static_assert(std::numeric_limits<float>::is_iec559, "a double too large for a float becomes infinite");

/// Integers keep their low bits in a narrower one. A float is truncated towards zero; what does not fit in 32 bits, NaN
/// included, becomes -2147483648, and so 0 in 16 bits.
template <typename To, typename From>
To ConvertNumber(From value) {
    if constexpr (std::is_floating_point_v<To>) {
        return static_cast<To>(value);
    } else {
        std::int32_t whole = 0;
        if constexpr (std::is_floating_point_v<From>) {
            whole = TruncateToInt32(value);
        } else {
            whole = value;
        }
        if constexpr (std::is_same_v<To, std::int16_t>) {
            return LowShort(whole);
        } else {
            return whole;
        }
    }
}

}  // namespace norva
