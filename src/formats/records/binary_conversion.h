#pragma once

#include "exchange/value_tally.h"
#include "formats/records/binary_record.h"
#include "norva/values.h"

#include <cstddef>
#include <cstdint>

namespace norva {

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
/// See ConvertNumber.
using ConvertValues = void (*)(char const* in, std::size_t stride, std::size_t count, char* out);

/// The conversion from a read format to a data type of the store; null when there is none.
ConvertValues FindConversion(RecordChannel::Format readFormat, int dataType);

/// Counts `count` values that were converted from `in`, each `stride` bytes after the one before, to `out`.
using TallyValues = void (*)(char const* in, std::size_t stride, std::size_t count, char const* out, ValueTally& tally);

/// For a conversion that there is; null for any other.
TallyValues FindTally(RecordChannel::Format readFormat, int dataType);

}  // namespace norva
