#pragma once

#include "norva/api.h"

#include <cstddef>
#include <cstdint>
#include <string>

/// Value kinds of a store, their no-data values, and the description record of a channel.
namespace norva {

/// Kind of the values of a channel. The numbers stand in files and are never changed.
namespace DataType {
inline constexpr int kSkipped = -1;  ///< column settings only: no channel is made
inline constexpr int kFloat = 0;     ///< 4 bytes, IEEE 754 single
inline constexpr int kDouble = 1;    ///< 8 bytes, IEEE 754 double; also dates, times, geographic coordinates
inline constexpr int kInt = 2;       ///< 4 bytes, signed
inline constexpr int kLong = 3;      ///< 4 bytes, signed
inline constexpr int kText = 4;      ///< array-size bytes, padded with spaces, no terminator
inline constexpr int kShort = 5;     ///< 2 bytes, signed
}  // namespace DataType

/// How a channel's values are shown. The numbers stand in files and are never changed.
namespace DisplayFormat {
inline constexpr int kUnset = -1;
inline constexpr int kFixed = 0;
inline constexpr int kExponent = 1;
inline constexpr int kTime = 2;        ///< value in hours; template is a time code of CNorvaDateTime
inline constexpr int kDate = 3;        ///< value in decimal years; template is a date code of CNorvaDateTime
inline constexpr int kGeographic = 4;  ///< value in decimal degrees; template is a code of CNorvaGeographic
}  // namespace DisplayFormat

inline constexpr float kNoDataFloat = 1.0e30F;
inline constexpr double kNoDataDouble = 1.0e30;
inline constexpr std::int32_t kNoDataLong = 2147483647;
inline constexpr std::int16_t kNoDataShort = 32767;

/// Description of one channel, in the order in which importers hand it to the store.
struct NorvaChannelStruct {
    std::string name;
    std::string units;
    int dataType = DataType::kFloat;
    int recordType = 0;  ///< 1 for text and array channels, else 0
    int reserved1 = 0;
    int arraySize = 1;  ///< characters of a text, elements of an array
    int displayFormat = DisplayFormat::kFixed;
    int decimalPlaces = 2;
    int templateFormat = -1;
    int reserved2 = 0;

    bool operator==(NorvaChannelStruct const&) const = default;
};

/// "double, date", "text of 8 characters", "short, array of 4": the type, its special display, the size.
NORVA_API std::string ValueTypeText(NorvaChannelStruct const& channel);

}  // namespace norva
