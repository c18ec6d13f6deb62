#include "formats/records/binary_conversion.h"

#include "store/value_conversion.h"

#include <cstdint>
#include <type_traits>

namespace norva {

namespace {

template <typename From, typename To>
void ConvertAll(char const* in, std::size_t stride, std::size_t count, char* out) {
    for (std::size_t i = 0; i < count; ++i, in += stride, out += sizeof(To)) {
        StoreValue(out, ConvertNumber<To>(LoadValue<From>(in)));
    }
}

/// Whether what is stored says all of the source: each value is the same number, but for rounding, and no-data stays.
template <typename From, typename To>
constexpr bool kSaysAll = std::is_same_v<From, To> || (std::is_integral_v<From> && std::is_floating_point_v<To>) ||
                          (std::is_same_v<From, std::int16_t> && std::is_same_v<To, std::int32_t>);

template <typename From, typename To>
void TallyAll(char const* in, std::size_t stride, std::size_t count, char const* out, ValueTally& tally) {
    if constexpr (kSaysAll<From, To>) {
        TallyStored<To>(out, count, tally);
    } else {
        for (std::size_t i = 0; i < count; ++i, in += stride, out += sizeof(To)) {
            auto const value = LoadValue<From>(in);
            // Integers have no value of their own that such files agree on for no-data.
            bool const isMarked = std::is_floating_point_v<From> && IsNoDataValue(value);
            TallyConverted(value, isMarked, LoadValue<To>(out), tally);
        }
    }
}

}  // namespace

ConvertValues FindConversion(RecordChannel::Format readFormat, int dataType) {
    return OfTypes<ConvertValues>(readFormat, dataType,
                                  []<typename From, typename To>() -> ConvertValues { return ConvertAll<From, To>; });
}

TallyValues FindTally(RecordChannel::Format readFormat, int dataType) {
    return OfTypes<TallyValues>(readFormat, dataType,
                                []<typename From, typename To>() -> TallyValues { return TallyAll<From, To>; });
}

}  // namespace norva
