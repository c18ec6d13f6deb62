#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Numbers in text, the same under every locale.
namespace norva {

/// What reading a number found.
struct NumberRead {
    double value = 0;          ///< 0 when there is no number; plus or minus infinity when too large for a double
    std::size_t consumed = 0;  ///< characters taken, leading blanks included; 0 when there is no number
};

/// The longest leading decimal number, after leading blanks, with an optional sign: no "inf", "nan" or hex.
NumberRead ScanNumber(std::string_view text);
inline double ReadNumber(std::string_view text) {
    return ScanNumber(text).value;
}
/// Leading blanks, an optional sign, digits; 0 for none. Saturates at the limits of 64 bits.
std::int64_t ReadInteger(std::string_view text);
/// The same, as a 32-bit integer (saturating).
int ReadInt(std::string_view text);

/// As printf's "%.*f" and "%.*e" would print it (-1 decimals: 6).
void AppendFixed(std::string& out, double value, int decimals);
void AppendExponent(std::string& out, double value, int decimals);
/// The shortest text that reads back as the same value.
void AppendShortest(std::string& out, double value);
void AppendShortest(std::string& out, float value);
void AppendInteger(std::string& out, std::int64_t value);

}  // namespace norva
