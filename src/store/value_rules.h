#pragma once

#include "norva/values.h"

#include <cstddef>
#include <cstdint>
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
std::int32_t TruncateToInt32(double value);
/// Low 16 bits of a 32-bit integer.
inline std::int16_t LowShort(std::int32_t value) {
    return static_cast<std::int16_t>(static_cast<std::uint16_t>(static_cast<std::uint32_t>(value) & 0xFFFFU));
}

// Little-endian encoding, whatever the machine.
void StoreLittle16(char* out, std::uint16_t value);
void StoreLittle32(char* out, std::uint32_t value);
void StoreLittle64(char* out, std::uint64_t value);
std::uint16_t LoadLittle16(char const* in);
std::uint32_t LoadLittle32(char const* in);
std::uint64_t LoadLittle64(char const* in);
void StoreFloat(char* out, float value);
void StoreDouble(char* out, double value);
float LoadFloat(char const* in);
double LoadDouble(char const* in);

}  // namespace norva
