#pragma once

#include "norva/values.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

/// No-data values, accepted ranges and conversions between value types, once for importers and exporters.
namespace norva {

/// Bytes of one element of the type (one character for text); 0 for a type that stores nothing.
std::size_t ValueWidth(int dataType);

inline bool IsNoData(float value) {
    float const difference = value - kNoDataFloat;
    return (difference < 0 ? -difference : difference) < 0.0001F;
}
inline bool IsNoData(double value) {
    double const difference = value - kNoDataDouble;
    return (difference < 0 ? -difference : difference) < 0.0001;
}
inline bool IsNoDataLong(std::int64_t value) {
    return value == kNoDataLong;
}
inline bool IsNoDataShort(std::int64_t value) {
    return value == kNoDataShort;
}

/// A number from text in the type's range, else the type's no-data value. Ranges are symmetric.
float FloatInRange(double value);
double DoubleInRange(double value);
std::int32_t LongInRange(double value);
std::int16_t ShortInRange(double value);

/// Truncated toward zero; -2147483648 for what does not fit in 32 bits, NaN included.
inline std::int32_t TruncateToInt32(double value) {
    return value > -2147483649.0 && value < 2147483648.0 ? static_cast<std::int32_t>(value)
                                                         : std::numeric_limits<std::int32_t>::min();
}
/// Low 16 bits of a 32-bit integer.
inline std::int16_t LowShort(std::int32_t value) {
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(static_cast<std::uint32_t>(value) & 0xFFFFU));
}

// Little-endian encoding, whatever the machine. In the header, since it is done once for every value.
template <typename Bits>
void StoreLittle(char* out, Bits value) {
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(out, &value, sizeof value);
    } else {
        for (std::size_t i = 0; i < sizeof(Bits); ++i) {
            out[i] = static_cast<char>(static_cast<unsigned char>(value >> (8 * i)));
        }
    }
}
template <typename Bits>
Bits LoadLittle(char const* in) {
    Bits value = 0;
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(&value, in, sizeof value);
    } else {
        for (std::size_t i = 0; i < sizeof(Bits); ++i) {
            value = static_cast<Bits>(value | std::uint64_t(static_cast<unsigned char>(in[i])) << (8 * i));
        }
    }
    return value;
}
inline void StoreLittle16(char* out, std::uint16_t value) {
    StoreLittle(out, value);
}
inline void StoreLittle32(char* out, std::uint32_t value) {
    StoreLittle(out, value);
}
inline void StoreLittle64(char* out, std::uint64_t value) {
    StoreLittle(out, value);
}
inline std::uint16_t LoadLittle16(char const* in) {
    return LoadLittle<std::uint16_t>(in);
}
inline std::uint32_t LoadLittle32(char const* in) {
    return LoadLittle<std::uint32_t>(in);
}
inline std::uint64_t LoadLittle64(char const* in) {
    return LoadLittle<std::uint64_t>(in);
}
inline void StoreFloat(char* out, float value) {
    StoreLittle(out, std::bit_cast<std::uint32_t>(value));
}
inline void StoreDouble(char* out, double value) {
    StoreLittle(out, std::bit_cast<std::uint64_t>(value));
}
inline float LoadFloat(char const* in) {
    return std::bit_cast<float>(LoadLittle32(in));
}
inline double LoadDouble(char const* in) {
    return std::bit_cast<double>(LoadLittle64(in));
}

}  // namespace norva
