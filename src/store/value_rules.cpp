#include "store/value_rules.h"

namespace norva {

namespace {

constexpr double kFloatLimit = 1.0e30;
constexpr double kLongLimit = 2147483647.0;
constexpr double kShortLimit = 32767.0;

/// Written so that NaN is outside.
bool IsWithin(double value, double limit) {
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

}  // namespace norva
