#include "formats/column_text/written_digits.h"

#include "platform/numbers.h"
#include "platform/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

namespace norva {

namespace {

/// A number as text gives it: its digits without leading zeros, and the power of ten of the first.
struct Digits {
    std::string digits;
    long exponent = 0;
};

Digits DigitsOf(std::string_view text) {
    Digits found;
    bool behindPoint = false;
    long places = 0;  // of the first digit, before the exponent
    std::size_t at = text.find_first_of("0123456789.");
    for (; at < text.size() && (IsDigit(text[at]) || (text[at] == '.' && !behindPoint)); ++at) {
        if (text[at] == '.') {
            behindPoint = true;
        } else if (!found.digits.empty() || text[at] != '0') {
            found.digits += text[at];
            if (!behindPoint) ++places;
        } else if (behindPoint) {
            --places;
        }
    }
    if (at < text.size() && (text[at] == 'e' || text[at] == 'E')) {
        std::string_view power = text.substr(at + 1);
        if (power.starts_with('+')) power.remove_prefix(1);
        std::from_chars(power.data(), power.data() + power.size(), found.exponent);
    }
    found.exponent += places;
    return found;
}

}  // namespace

int CountWrittenDigits(std::string_view text) {
    return static_cast<int>(DigitsOf(text).digits.size());
}

bool HasWrittenDigits(double stored, std::string_view text) {
    constexpr std::size_t most = 1100;  // a double has no more
    Digits const source = DigitsOf(text);
    if (source.digits.empty() || stored == 0) return source.digits.empty() && stored == 0;
    std::string written;
    AppendExponent(written, std::fabs(stored), static_cast<int>(std::min(source.digits.size(), most)) - 1);
    Digits const back = DigitsOf(written);
    return back.digits == source.digits && back.exponent == source.exponent;
}

}  // namespace norva
