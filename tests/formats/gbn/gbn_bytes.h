#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>

namespace norva::test {

/// Builds a GBN file byte by byte, apart from the library's codec. Starts with the signature and an empty header.
class CGbnBytes {
public:
    template <typename Number>
    CGbnBytes& Add(Number number) {
        static_assert(std::is_arithmetic_v<Number>);
        bytes.append(reinterpret_cast<char const*>(&number), sizeof number);
        return *this;
    }
    CGbnBytes& Text(std::string_view text, std::size_t width) {
        bytes += text;
        bytes.append(width - text.size(), '\0');
        return *this;
    }
    CGbnBytes& Channel(std::string_view name, std::int32_t valueType, std::int32_t displayFormat = 0,
                       std::int32_t decimals = 2, std::int32_t width = 10) {
        return Record('\1').Text(name, 64).Add(valueType).Add(displayFormat).Add(width).Add(decimals);
    }
    CGbnBytes& SecondChannel(std::string_view name) {
        Record('\4').Text(name, 64);
        for (std::int32_t number = 1; number <= 5; ++number) Add(number);
        return *this;
    }
    CGbnBytes& Line(std::int32_t number, std::int32_t dotSuffix = 0, std::int32_t colonSuffix = 0) {
        Record('\2');
        for (std::int32_t const field : {number, dotSuffix, 0, colonSuffix, year, month, day}) Add(field);
        return *this;
    }
    CGbnBytes& Block(std::int32_t channel, std::int32_t valueType, std::int32_t count, double start = 1.0,
                     double increment = 1.0) {
        return Record('\3').Add(channel).Add(valueType).Add(start).Add(increment).Add(count);
    }
    /// A block of the values given.
    template <typename Number, typename... Others>
    CGbnBytes& Values(std::int32_t channel, std::int32_t valueType, Number first, Others... others) {
        Block(channel, valueType, static_cast<std::int32_t>(1 + sizeof...(others))).Add(first);
        (Add(static_cast<Number>(others)), ...);
        return *this;
    }
    CGbnBytes& Opaque() { return Record('\5').Text("", 192); }
    CGbnBytes& End() { return Record('\0'); }

    std::string bytes = "OASIS BINARY DATA\r\n\x1A";
    std::int32_t year = 2001, month = 2, day = 3;  ///< of line records
    std::set<std::size_t> records;                 ///< offsets at which a record begins

private:
    CGbnBytes& Record(char code) {
        records.insert(bytes.size());
        bytes += code;
        return *this;
    }
};

}  // namespace norva::test
