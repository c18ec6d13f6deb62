#include "store/value_rules.h"

#include <bit>
#include <cmath>

namespace norva {

namespace {

constexpr double kFloatLimit = 1.0e30;
constexpr double kLongLimit = 2147483647.0;
constexpr double kShortLimit = 32767.0;

template <typename Unsigned>
void StoreLittle(char* out, Unsigned value) {
    for (std::size_t i = 0; i < sizeof value; ++i) out[i] = static_cast<char>((value >> (8 * i)) & 0xFFU);
}

template <typename Unsigned>
Unsigned LoadLittle(char const* in) {
    Unsigned value = 0;
    for (std::size_t i = 0; i < sizeof value; ++i) {
        value = static_cast<Unsigned>(value | (static_cast<Unsigned>(static_cast<unsigned char>(in[i])) << (8 * i)));
    }
    return value;
}

/// NaN is in no range.
bool InRange(double value, double limit) {
    return value >= -limit && value <= limit;
}

}  // namespace

std::size_t ValueWidth(int dataType) {
    switch (dataType) {
        case DataType::kFloat:
        case DataType::kInt:
        case DataType::kLong:
            return 4;
        case DataType::kDouble:
            return 8;
        case DataType::kText:
            return 1;
        case DataType::kShort:
            return 2;
        default:
            return 0;
    }
}

float FloatInRange(double value) {
    return InRange(value, kFloatLimit) ? static_cast<float>(value) : kNoDataFloat;
}

double DoubleInRange(double value) {
    return InRange(value, kFloatLimit) ? value : kNoDataDouble;
}

std::int32_t LongInRange(double value) {
    return InRange(value, kLongLimit) ? static_cast<std::int32_t>(value) : kNoDataLong;
}

std::int16_t ShortInRange(double value) {
    return InRange(value, kShortLimit) ? static_cast<std::int16_t>(value) : kNoDataShort;
}

std::int32_t TruncateToInt32(double value) {
    // The open limits let -2147483648.9 through, whose truncated value still fits.
    return value > -2147483649.0 && value < 2147483648.0 ? static_cast<std::int32_t>(value) : INT32_MIN;
}

void StoreLittle16(char* out, std::uint16_t value) {
    StoreLittle(out, value);
}

void StoreLittle32(char* out, std::uint32_t value) {
    StoreLittle(out, value);
}

void StoreLittle64(char* out, std::uint64_t value) {
    StoreLittle(out, value);
}

std::uint16_t LoadLittle16(char const* in) {
    return LoadLittle<std::uint16_t>(in);
}

std::uint32_t LoadLittle32(char const* in) {
    return LoadLittle<std::uint32_t>(in);
}

std::uint64_t LoadLittle64(char const* in) {
    return LoadLittle<std::uint64_t>(in);
}

void StoreFloat(char* out, float value) {
    StoreLittle(out, std::bit_cast<std::uint32_t>(value));
}

void StoreDouble(char* out, double value) {
    StoreLittle(out, std::bit_cast<std::uint64_t>(value));
}

float LoadFloat(char const* in) {
    return std::bit_cast<float>(LoadLittle<std::uint32_t>(in));
}

double LoadDouble(char const* in) {
    return std::bit_cast<double>(LoadLittle<std::uint64_t>(in));
}

}  // namespace norva
