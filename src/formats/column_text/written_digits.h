#pragma once

#include "formats/column_text/plain_decimal.h"

#include <cmath>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace norva {

/// Whether a stored number, written with as many digits as the number that `text` begins with, is that number.
bool HasWrittenDigits(double stored, std::string_view text);
/// How far a number in single precision is from the decimal that it was read from, in units of the last digit, right to
/// a hundredth: below a half it reads back as written. A half where this cannot be told, and HasWrittenDigits has to.
inline double WrittenDigitsOff(float stored, PlainDecimal const& number) {
    constexpr double kPowers[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13};
    constexpr std::uint64_t kLargest = std::uint64_t{1} << 46;
    if (number.digits >= kLargest || number.decimals >= static_cast<int>(std::size(kPowers))) return 0.5;
    double const scaled = std::fabs(static_cast<double>(stored)) * kPowers[number.decimals];
    return std::fabs(scaled - static_cast<double>(number.digits));
}

/// How many digits the number at the beginning of `text` is written with, leading zeros apart.
int CountWrittenDigits(std::string_view text);

}  // namespace norva
