#pragma once

#include "formats/column_text/plain_decimal.h"

#include <string_view>

namespace norva {

/// Whether a stored number, written with as many digits as the number that `text` begins with, is that number.
bool HasWrittenDigits(double stored, std::string_view text);
/// The same for a number in single precision, of which the plain decimal is known; costs one multiplication, as a rule.
bool HasWrittenDigits(float stored, PlainDecimal const& number, std::string_view text);

/// How many digits the number at the beginning of `text` is written with, leading zeros apart.
int CountWrittenDigits(std::string_view text);

}  // namespace norva
