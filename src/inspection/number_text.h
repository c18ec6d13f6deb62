#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Numbers as they are written: not only their value, but what of it has to be kept.
namespace norva {

enum class DecimalMarks : unsigned char { None = 0, Point = 1, Comma = 2, Both = 3 };

struct NumberText {
    std::uint64_t digits = 0;    ///< the digits as one whole number; of the first 18 only
    std::uint32_t decimals = 0;  ///< digits behind the mark
    std::uint32_t count = 0;     ///< digits from the first that is not 0
    std::uint32_t length = 0;    ///< characters of the number
    std::int32_t exponent = 0;
    char mark = '\0';  ///< '.', ',' or none
    bool isNegative = false;
    bool hasExponent = false;
    bool hasLeadingZero = false;  ///< more than one digit before the mark, the first of them 0

    bool IsWhole() const { return mark == '\0' && !hasExponent; }
    /// Digits that the value needs: zeros in front and at the end do not count.
    std::uint32_t SignificantDigits() const;
};

/// Reads the longest number that `text` begins with: sign, digits, mark, exponent (E or D). False for none.
bool ScanNumberText(std::string_view text, DecimalMarks marks, NumberText& number);
/// The double nearest to what was scanned from `text`.
double ValueOf(NumberText const& number, std::string_view text);

}  // namespace norva
