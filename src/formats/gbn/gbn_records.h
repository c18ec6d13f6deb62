#pragma once

#include "norva/values.h"
#include "store/value_rules.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

/// Layout of a GBN file ("OASIS BINARY DATA"), for reading and writing alike.
///
/// | offset     | size | content                                                                       |
/// |------------|------|-------------------------------------------------------------------------------|
/// | 0          | 17   | signature                                                                     |
/// | 17         | any  | free text, ended by one byte 0x1A; written as CR LF 0x1A                      |
/// | after 0x1A | any  | records: a code of one byte, then the payload that the code's struct lays out |
///
/// Integers are little-endian two's complement, floats IEEE 754 little-endian, nothing is padded.
namespace norva {

inline constexpr std::string_view kGbnSignature = "OASIS BINARY DATA";
inline constexpr char kGbnHeaderEnd = '\x1A';
inline constexpr std::size_t kGbnNameSize = 64;  ///< at most 63 characters, then zero bytes

/// Codes of the records; a byte that is none of them stands for itself alone. Fixed by the format.
enum class GbnCode : unsigned char {
    kEnd = 0,
    kChannel = 1,
    kLine = 2,
    kBlock = 3,
    kSecondChannel = 4,
    kOpaque = 5,
};

/// Describes a channel. Channel records of both kinds are numbered 0, 1, 2, ... as they stand in the file.
struct GbnChannelRecord {
    static constexpr GbnCode kCode = GbnCode::kChannel;
    static constexpr std::size_t kPayload = 80;

    std::string name;
    std::int32_t valueType = 0;
    std::int32_t displayFormat = 0;  ///< a DisplayFormat, 0 to 4
    std::int32_t width = 6;          ///< characters of a printed value
    std::int32_t decimals = 1;

    template <class Record, class Coder>
    static void Layout(Record& record, Coder& coder) {
        coder.Name(record.name);
        coder.Int32(record.valueType);
        coder.Int32(record.displayFormat);
        coder.Int32(record.width);
        coder.Int32(record.decimals);
    }
};

/// Opens a line; the data blocks up to the next line record hold its values.
struct GbnLineRecord {
    static constexpr GbnCode kCode = GbnCode::kLine;
    static constexpr std::size_t kPayload = 28;

    std::int32_t number = 0;
    std::int32_t dotSuffix = 0;
    std::int32_t reserved = 0;
    std::int32_t colonSuffix = 0;
    std::int32_t year = 0;
    std::int32_t month = 0;  ///< 1 to 12
    std::int32_t day = 0;    ///< 1 to 31

    template <class Record, class Coder>
    static void Layout(Record& record, Coder& coder) {
        coder.Int32(record.number);
        coder.Int32(record.dotSuffix);
        coder.Int32(record.reserved);
        coder.Int32(record.colonSuffix);
        coder.Int32(record.year);
        coder.Int32(record.month);
        coder.Int32(record.day);
    }
};

/// Head of a data block: `valueCount` values of `valueType` follow it.
struct GbnBlockRecord {
    static constexpr GbnCode kCode = GbnCode::kBlock;
    static constexpr std::size_t kPayload = 28;

    std::int32_t channelNumber = 0;
    std::int32_t valueType = 0;
    double fiducialStart = 1.0;      ///< sample index or time of the first value
    double fiducialIncrement = 1.0;  ///< from one value to the next
    std::int32_t valueCount = 0;

    template <class Record, class Coder>
    static void Layout(Record& record, Coder& coder) {
        coder.Int32(record.channelNumber);
        coder.Int32(record.valueType);
        coder.Double(record.fiducialStart);
        coder.Double(record.fiducialIncrement);
        coder.Int32(record.valueCount);
    }
};

/// Another kind of channel record. It takes a channel number and has no values of use here.
struct GbnSecondChannelRecord {
    static constexpr GbnCode kCode = GbnCode::kSecondChannel;
    static constexpr std::size_t kPayload = 84;

    std::string name;
    std::array<std::int32_t, 5> numbers{};

    template <class Record, class Coder>
    static void Layout(Record& record, Coder& coder) {
        coder.Name(record.name);
        for (auto& number : record.numbers) coder.Int32(number);
    }
};

/// A record of unknown meaning.
struct GbnOpaqueRecord {
    static constexpr GbnCode kCode = GbnCode::kOpaque;
    static constexpr std::size_t kPayload = 192;

    std::array<char, 64> first{};
    std::array<char, 128> second{};

    template <class Record, class Coder>
    static void Layout(Record& record, Coder& coder) {
        coder.Bytes(record.first.data(), record.first.size());
        coder.Bytes(record.second.data(), record.second.size());
    }
};

/// Value types of channel records and data blocks; -n is a text of n bytes. Fixed by the format.
namespace GbnValueType {
inline constexpr std::int32_t kInt8 = 0;
inline constexpr std::int32_t kUInt16 = 1;
inline constexpr std::int32_t kInt16 = 2;
inline constexpr std::int32_t kInt32 = 3;
inline constexpr std::int32_t kFloat = 4;
inline constexpr std::int32_t kDouble = 5;
}  // namespace GbnValueType

inline constexpr std::int32_t kGbnNoDataUInt16 = 65535;
inline constexpr std::int32_t kGbnNoDataInt32 = -2147483647;
inline constexpr double kGbnNoDataFloat = -1.0e32;  ///< in the precision of the value

/// Bytes of one value in the file; 0 for a type that the format does not have.
inline std::size_t GbnValueWidth(std::int32_t valueType) {
    static constexpr std::array<std::size_t, 6> kWidths{1, 2, 2, 4, 4, 8};
    if (valueType < 0) return static_cast<std::size_t>(-static_cast<std::int64_t>(valueType));
    return valueType <= GbnValueType::kDouble ? kWidths[static_cast<std::size_t>(valueType)] : 0;
}

/// Store data type that the values of a value type of the format are held in.
inline int GbnStoreType(std::int32_t valueType) {
    static constexpr std::array<int, 6> kTypes{DataType::kShort, DataType::kLong,  DataType::kShort,
                                               DataType::kLong,  DataType::kFloat, DataType::kDouble};
    return valueType < 0 ? DataType::kText : kTypes[static_cast<std::size_t>(valueType)];
}

/// Value type that a store channel is written with.
inline std::int32_t GbnValueTypeOf(int dataType, int arraySize) {
    switch (dataType) {
        case DataType::kFloat:
            return GbnValueType::kFloat;
        case DataType::kInt:
        case DataType::kLong:
            return GbnValueType::kInt32;
        case DataType::kText:
            return -arraySize - 1;
        case DataType::kShort:
            return GbnValueType::kInt16;
        default:
            return GbnValueType::kDouble;
    }
}

/// Decodes one value of a numeric type to what the store holds, no-data included.
template <std::int32_t type>
struct GbnValue;

template <>
struct GbnValue<GbnValueType::kInt8> {
    using Stored = std::int16_t;
    static constexpr std::size_t kWidth = 1;
    static Stored Decode(char const* bytes) { return static_cast<signed char>(*bytes); }
};

template <>
struct GbnValue<GbnValueType::kUInt16> {
    using Stored = std::int32_t;
    static constexpr std::size_t kWidth = 2;
    static Stored Decode(char const* bytes) {
        Stored const value = LoadLittle16(bytes);
        return value == kGbnNoDataUInt16 ? kNoDataLong : value;
    }
};

template <>
struct GbnValue<GbnValueType::kInt16> {
    using Stored = std::int16_t;
    static constexpr std::size_t kWidth = 2;
    static Stored Decode(char const* bytes) { return static_cast<Stored>(LoadLittle16(bytes)); }
};

template <>
struct GbnValue<GbnValueType::kInt32> {
    using Stored = std::int32_t;
    static constexpr std::size_t kWidth = 4;
    static Stored Decode(char const* bytes) {
        auto const value = static_cast<Stored>(LoadLittle32(bytes));
        return value == kGbnNoDataInt32 ? kNoDataLong : value;
    }
};

template <>
struct GbnValue<GbnValueType::kFloat> {
    using Stored = float;
    static constexpr std::size_t kWidth = 4;
    static Stored Decode(char const* bytes) {
        Stored const value = LoadFloat(bytes);
        return value != value || value == static_cast<Stored>(kGbnNoDataFloat) ? kNoDataFloat : value;
    }
};

template <>
struct GbnValue<GbnValueType::kDouble> {
    using Stored = double;
    static constexpr std::size_t kWidth = 8;
    static Stored Decode(char const* bytes) {
        Stored const value = LoadDouble(bytes);
        return value != value || value == kGbnNoDataFloat ? kNoDataDouble : value;
    }
};

/// The characters of a text value or name of `width` bytes: those before its first zero byte, which is the last byte
/// at the latest.
inline std::string_view DecodeGbnText(char const* bytes, std::size_t width) {
    std::size_t const longest = width - 1;
    void const* const end = std::memchr(bytes, 0, longest);
    return {bytes, end == nullptr ? longest : static_cast<std::size_t>(static_cast<char const*>(end) - bytes)};
}

}  // namespace norva
