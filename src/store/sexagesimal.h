#pragma once

#include <cstdint>
#include <string_view>

/// Hours or degrees in text: a whole part, minutes, seconds and a fraction of a second.
namespace norva {

/// More digits of a second than a double of hours or degrees carries.
inline constexpr int kMaxSecondDecimals = 15;

/// Reads "whole", "whole:minutes" and so on with `separator` between the parts and "." before the fraction of the
/// second, at least `minimumParts` of them. False when the text does not fit; `decimals` is then 0.
bool ReadSexagesimal(std::string_view text, char separator, int minimumParts, double& value, int& decimals);

/// A value rounded to parts of its unit.
struct SexagesimalParts {
    bool negative = false;  ///< never for a value that rounds to 0
    std::uint64_t whole = 0;
    std::uint64_t parts = 0;  ///< below `partsPerUnit`
};
/// Rounds with carry to the nearest of `partsPerUnit` parts of the unit. False for what is out of any sane range
/// (10^15 units, infinity, NaN).
bool SplitSexagesimal(double value, std::uint64_t partsPerUnit, SexagesimalParts& result);

/// 10 to the power `digits`, 0 to 15.
std::uint64_t PowerOfTen(int digits);

/// Writes `value` with at least `digits` digits, zeros in front; returns the end.
char* WriteDigits(char* out, std::uint64_t value, int digits);
/// Writes whole, minutes and seconds with `separator` between them and the fraction after "." with `decimals` digits;
/// `parts` counts 3600 * 10^decimals to the unit.
char* WriteSexagesimal(char* out, SexagesimalParts const& value, int wholeDigits, char separator, int decimals);

}  // namespace norva
