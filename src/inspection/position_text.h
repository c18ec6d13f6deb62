#pragma once

#include <string_view>

/// Geographic positions as they are written.
namespace norva {

struct PositionText {
    double degrees = 0;
    char letter = '\0';     ///< 'N', 'S', 'E', 'W' or none
    bool isPacked = false;  ///< ddmm.mmmm
    int decimals = 0;       ///< digits of the fraction of the last part
};

/// Degrees, or degrees and minutes, or all three, in any of these ways: signs (° ' " and primes), "15.27.08.20", blanks
/// between the parts (where `readsBlanks`), a letter before or after, which carries the sign; ddmm.mmmm with a letter.
/// A number alone is none. Marks of the decimals are "." and ",".
bool ReadPositionText(std::string_view text, bool readsBlanks, PositionText& position);
/// Degrees of a number that is written as ddmm.mmmm; false when it has 60 minutes or more.
bool UnpackMinutes(double packed, double& degrees);

}  // namespace norva
