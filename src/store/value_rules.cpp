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

char const* DataTypeName(int dataType) {
    switch (dataType) {
        case DataType::kFloat:
            return "float";
        case DataType::kDouble:
            return "double";
        case DataType::kInt:
        case DataType::kLong:
            return "long";
        case DataType::kText:
            return "text";
        case DataType::kShort:
            return "short";
        default:
            return "unknown";
    }
}

char const* DisplayName(int displayFormat) {
    switch (displayFormat) {
        case DisplayFormat::kTime:
            return ", time";
        case DisplayFormat::kDate:
            return ", date";
        case DisplayFormat::kGeographic:
            return ", geographic";
        default:
            return "";
    }
}

}  // namespace

std::string ValueTypeText(NorvaChannelStruct const& channel) {
    std::string text = DataTypeName(channel.dataType);
    text += DisplayName(channel.displayFormat);
    std::string const size = std::to_string(channel.arraySize);
    if (channel.dataType == DataType::kText) return text + " of " + size + " characters";
    return channel.arraySize > 1 ? text + ", array of " + size : text;
}

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
