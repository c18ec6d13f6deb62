#include "store/value_rules.h"

#include <bit>
#include <cmath>
#include <limits>

namespace norva {

namespace {

constexpr double kFloatLimit = 1.0e30;
constexpr double kLongLimit = 2147483647.0;
constexpr double kShortLimit = 32767.0;

/// Written so that NaN is outside.
bool IsWithin(double value, double limit) {
    return value >= -limit && value <= limit;
}

template <typename Bits>
void StoreLittle(char* out, Bits value) {
    for (std::size_t i = 0; i < sizeof(Bits); ++i) {
        out[i] = static_cast<char>(static_cast<unsigned char>(value >> (8 * i)));
    }
}

template <typename Bits>
Bits LoadLittle(char const* in) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < sizeof(Bits); ++i) {
        value |= static_cast<std::uint64_t>(static_cast<unsigned char>(in[i])) << (8 * i);
    }
    return static_cast<Bits>(value);
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
    return IsWithin(value, kFloatLimit) ? static_cast<float>(value) : kNoDataFloat;
}

double DoubleInRange(double value) {
    return IsWithin(value, kFloatLimit) ? value : kNoDataDouble;
}

std::int32_t LongInRange(double value) {
    return IsWithin(value, kLongLimit) ? static_cast<std::int32_t>(value) : kNoDataLong;
}

std::int16_t ShortInRange(double value) {
    return IsWithin(value, kShortLimit) ? static_cast<std::int16_t>(value) : kNoDataShort;
}

std::int32_t TruncateToInt32(double value) {
    return value > -2147483649.0 && value < 2147483648.0 ? static_cast<std::int32_t>(value)
                                                         : std::numeric_limits<std::int32_t>::min();
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
    return std::bit_cast<float>(LoadLittle32(in));
}

double LoadDouble(char const* in) {
    return std::bit_cast<double>(LoadLittle64(in));
}

}  // namespace norva
