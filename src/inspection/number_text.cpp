#include "inspection/number_text.h"

#include "platform/numbers.h"
#include "platform/text.h"

#include <algorithm>

namespace norva {

namespace {

constexpr std::uint32_t kExactDigits = 18;

/// The digits are only looked at to compare values, and the first ones do for that.
std::uint64_t FirstDigits(char const* at) {
    std::uint64_t digits = 0;
    for (std::uint32_t kept = 0; kept < kExactDigits; ++at) {
        if (!IsDigit(*at)) continue;
        digits = digits * 10 + static_cast<unsigned>(*at - '0');
        ++kept;
    }
    return digits;
}

/// Where the number ends: behind the exponent when there is one.
char const* ScanExponent(char const* next, char const* end, NumberText& number) {
    if (*next != 'E' && *next != 'e' && *next != 'D' && *next != 'd') return next;
    char const* at = next + 1;
    bool const isNegative = at != end && *at == '-';
    if (at != end && (*at == '-' || *at == '+')) ++at;
    if (at == end || !IsDigit(*at)) return next;
    int exponent = 0;
    for (; at != end && IsDigit(*at); ++at) exponent = std::min(exponent * 10 + (*at - '0'), 9999);
    number.exponent = isNegative ? -exponent : exponent;
    number.hasExponent = true;
    return at;
}

}  // namespace

std::uint32_t NumberText::SignificantDigits() const {
    std::uint32_t significant = count;
    std::uint64_t rest = digits;
    if (significant > kExactDigits || rest == 0) return significant > kExactDigits ? significant : 0;
    for (; rest % 10 == 0; rest /= 10) --significant;
    return significant;
}

bool ScanNumberText(std::string_view text, DecimalMarks marks, NumberText& number) {
    char const* const begin = text.data();
    char const* const end = begin + text.size();
    char const* next = begin;
    bool isNegative = false;
    if (next != end && (*next == '-' || *next == '+')) isNegative = *next++ == '-';
    char const* const first = next;
    std::uint64_t digits = 0;
    unsigned digit = 0;
    for (; next != end && (digit = static_cast<unsigned>(*next - '0')) < 10; ++next) digits = digits * 10 + digit;
    auto const whole = static_cast<std::uint32_t>(next - first);
    char mark = '\0';
    std::uint32_t decimals = 0;
    if (next != end && ((*next == '.' && (static_cast<int>(marks) & 1) != 0) ||
                        (*next == ',' && (static_cast<int>(marks) & 2) != 0))) {
        mark = *next;
        char const* const fraction = ++next;
        for (; next != end && (digit = static_cast<unsigned>(*next - '0')) < 10; ++next) digits = digits * 10 + digit;
        decimals = static_cast<std::uint32_t>(next - fraction);
    }
    std::uint32_t count = whole + decimals;
    if (count == 0) return false;
    char const* zero = first;
    while (count > 0 && (*zero == '0' || *zero == mark)) count -= *zero++ == '0' ? 1 : 0;
    number.digits = count > kExactDigits ? FirstDigits(zero) : digits;
    number.count = count;
    number.decimals = decimals;
    number.mark = mark;
    number.isNegative = isNegative;
    number.hasLeadingZero = whole > 1 && *first == '0';
    number.exponent = 0;
    number.hasExponent = false;
    number.isLook = false;
    if (next != end) next = ScanExponent(next, end, number);
    number.length = static_cast<std::uint32_t>(next - begin);
    return true;
}

double ValueOf(NumberText const& number, std::string_view text) {
    static constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8, 1e9,
                                         1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};
    // The whole number and the power are exact then, and their quotient is rounded once.
    if (number.digits <= (std::uint64_t{1} << 53) && number.count <= kExactDigits && number.decimals <= kExactDigits &&
        !number.hasExponent) {
        double const magnitude = static_cast<double>(number.digits) / kPowers[number.decimals];
        return number.isNegative ? -magnitude : magnitude;
    }
    std::string plain(text.substr(0, number.length));
    for (char& c : plain) {
        if (c == ',') c = '.';
        if (c == 'D' || c == 'd') c = 'E';
    }
    return ReadNumber(plain);
}

}  // namespace norva
