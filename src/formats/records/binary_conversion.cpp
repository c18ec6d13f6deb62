#include "formats/records/binary_conversion.h"

#include "formats/records/binary_record.h"
#include "norva/values.h"
#include "store/value_rules.h"

#include <cstdint>
#include <limits>
#include <type_traits>

namespace norva {

namespace {

static_assert(std::numeric_limits<float>::is_iec559, "a double too large for a float becomes infinite");

inline void Store(char* out, float value) {
    StoreFloat(out, value);
}
inline void Store(char* out, double value) {
    StoreDouble(out, value);
}
inline void Store(char* out, std::int32_t value) {
    StoreLittle32(out, static_cast<std::uint32_t>(value));
}
inline void Store(char* out, std::int16_t value) {
    StoreLittle16(out, static_cast<std::uint16_t>(value));
}

template <typename To, typename From>
To Convert(From value) {
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

template <typename From, typename To>
void ConvertAll(char const* in, std::size_t stride, std::size_t count, char* out) {
    for (std::size_t i = 0; i < count; ++i, in += stride, out += sizeof(To))
        Store(out, Convert<To>(LoadValue<From>(in)));
}

}  // namespace

ConvertValues FindConversion(RecordChannel::Format readFormat, int dataType) {
    return OfTypes<ConvertValues>(readFormat, dataType,
                                  []<typename From, typename To>() -> ConvertValues { return ConvertAll<From, To>; });
}

}  // namespace norva
