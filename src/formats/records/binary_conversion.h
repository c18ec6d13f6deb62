#pragma once

#include "formats/records/binary_record.h"
#include "norva/values.h"
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

/// What `of` gives for the type `From` and that of a data type, of.operator()<From, To>(); null for other types.
template <typename Function, typename From, typename Of>
Function OfStoredType(int dataType, Of of) {
    switch (dataType) {
        case DataType::kFloat:
            return of.template operator()<From, float>();
        case DataType::kDouble:
            return of.template operator()<From, double>();
        case DataType::kInt:
        case DataType::kLong:
            return of.template operator()<From, std::int32_t>();
        case DataType::kShort:
            return of.template operator()<From, std::int16_t>();
        default:
            return nullptr;
    }
}

/// The same for the types of a read format and a data type.
template <typename Function, typename Of>
Function OfTypes(RecordChannel::Format readFormat, int dataType, Of of) {
    switch (readFormat) {
        case RecordChannel::Format::Int32:
            return OfStoredType<Function, std::int32_t>(dataType, of);
        case RecordChannel::Format::Float:
            return OfStoredType<Function, float>(dataType, of);
        case RecordChannel::Format::Double:
            return OfStoredType<Function, double>(dataType, of);
        case RecordChannel::Format::Int16:
            return OfStoredType<Function, std::int16_t>(dataType, of);
        default:
            return nullptr;
    }
}

/// Converts `count` values, the first at `in` and each `stride` bytes after the one before, to packed values of a
/// store at `out`. Both sides are little-endian.
///
/// Integers keep their low bits in a narrower one. A float becomes the integer below it in amount; what does not fit
/// in 32 bits, NaN included, becomes -2147483648, and so 0 in 16 bits.
using ConvertValues = void (*)(char const* in, std::size_t stride, std::size_t count, char* out);

/// The conversion from a read format to a data type of the store; null when there is none.
ConvertValues FindConversion(RecordChannel::Format readFormat, int dataType);

}  // namespace norva
