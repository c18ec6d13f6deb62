#pragma once

#include <cstddef>
#include <cstdint>

namespace norva {

/// Reads an optional sign, digits and at most one ".", as most values of a survey are written, where the double
/// nearest to the text comes out of one division: up to 18 digits, below 2 to the power 53 without the point.
/// Returns where the number ends, or null when it is no such number; what follows it is for the caller to judge.
inline char const* ReadPlainDecimal(char const* next, char const* end, double& value) {
    // Powers of ten up to 10^22 are exact in a double, and so is the integer: their quotient is rounded once.
    static constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8, 1e9,
                                         1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};
    bool negative = false;
    if (next != end && (*next == '-' || *next == '+')) negative = *next++ == '-';

    std::uint64_t digits = 0;
    char const* const first = next;
    unsigned digit = 0;
    while (next != end && (digit = static_cast<unsigned>(*next - '0')) < 10) {
        digits = digits * 10 + digit;
        ++next;
    }
    auto count = next - first;
    std::ptrdiff_t decimals = 0;
    if (next != end && *next == '.') {
        char const* const fraction = ++next;
        while (next != end && (digit = static_cast<unsigned>(*next - '0')) < 10) {
            digits = digits * 10 + digit;
            ++next;
        }
        decimals = next - fraction;
        count += decimals;
    }
    if (count == 0 || count > 18 || digits > (std::uint64_t{1} << 53)) return nullptr;
    double const magnitude = static_cast<double>(digits) / kPowers[decimals];
    value = negative ? -magnitude : magnitude;
    return next;
}

}  // namespace norva
