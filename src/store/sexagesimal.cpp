#include "store/sexagesimal.h"

#include "platform/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace norva {

namespace {

constexpr std::size_t kMaxWholeDigits = 15;
constexpr double kLimit = 1.0e15;
constexpr std::size_t kKeptDecimals = 15;
constexpr std::uint64_t kExactInteger = std::uint64_t{1} << 53;

/// Takes the digits at the front of `text`; false when there are more than `maximum`.
bool TakeDigits(std::string_view& text, std::size_t maximum, std::uint64_t& value, std::size_t& count) {
    value = 0;
    count = 0;
    while (count < text.size() && IsDigit(text[count])) {
        if (count == maximum) {
            return false;
        }
        value = value * 10 + static_cast<std::uint64_t>(text[count] - '0');
        ++count;
    }
    text.remove_prefix(count);
    return true;
}

bool TakeCharacter(std::string_view& text, char c) {
    bool const found = !text.empty() && text.front() == c;
    text.remove_prefix(found ? 1 : 0);
    return found;
}

}  // namespace

std::uint64_t PowerOfTen(int digits) {
    std::uint64_t power = 1;
    for (int i = 0; i < digits; ++i) {
        power *= 10;
    }
    return power;
}

bool ReadSexagesimal(std::string_view text, char separator, int minimumParts, double& value, int& decimals) {
    decimals = 0;
    text = Trim(text);
    bool const negative = TakeCharacter(text, '-');
    if (!negative) {
        TakeCharacter(text, '+');
    }
    std::array<std::uint64_t, 3> part{};
    std::size_t count = 0;
    if (!TakeDigits(text, kMaxWholeDigits, part[0], count) || count == 0) {
        return false;
    }
    int parts = 1;
    while (parts < 3 && TakeCharacter(text, separator)) {
        std::uint64_t& next = part[static_cast<std::size_t>(parts)];
        if (!TakeDigits(text, 2, next, count) || count == 0 || next >= 60) {
            return false;
        }
        ++parts;
    }
    std::uint64_t fraction = 0;
    std::size_t kept = 0;
    std::size_t dropped = 0;
    if (parts == 3 && TakeCharacter(text, '.')) {
        std::size_t digits = 0;
        while (digits < text.size() && IsDigit(text[digits])) {
            ++digits;
        }
        std::string_view used = text.substr(0, std::min(digits, kKeptDecimals));
        TakeDigits(used, kKeptDecimals, fraction, kept);
        dropped = digits - kept;
        text.remove_prefix(digits);
    }
    if (parts < minimumParts || !text.empty()) {
        return false;
    }

    int const keptDigits = static_cast<int>(kept);
    std::uint64_t const scale = PowerOfTen(keptDigits);
    std::uint64_t const seconds = part[0] * 3600 + part[1] * 60 + part[2];
    if (seconds < kExactInteger / scale) {
        // Both exact, so that the one division rounds correctly.
        value = static_cast<double>(seconds * scale + fraction) / static_cast<double>(3600 * scale);
    } else {
        double const rest =
            static_cast<double>(part[1] * 60 + part[2]) + static_cast<double>(fraction) / static_cast<double>(scale);
        value = static_cast<double>(part[0]) + rest / 3600.0;
    }
    value = negative ? -value : value;
    decimals = static_cast<int>(std::min<std::size_t>(kept + dropped, 1'000'000));
    return true;
}

bool SplitSexagesimal(double value, std::uint64_t partsPerUnit, SexagesimalParts& result) {
    double const magnitude = std::fabs(value);
    if (!(magnitude < kLimit)) {
        return false;
    }
    result.whole = static_cast<std::uint64_t>(magnitude);
    // Exact: what is left of a double without its whole part is a double.
    double const rest = magnitude - static_cast<double>(result.whole);
    result.parts = static_cast<std::uint64_t>(rest * static_cast<double>(partsPerUnit) + 0.5);
    if (result.parts >= partsPerUnit) {
        ++result.whole;
        result.parts = 0;
    }
    result.negative = value < 0 && (result.whole != 0 || result.parts != 0);
    return true;
}

char* WriteDigits(char* out, std::uint64_t value, int digits) {
    int needed = 1;
    for (std::uint64_t rest = value; rest >= 10; rest /= 10) {
        ++needed;
    }
    char* const end = out + std::max(needed, digits);
    for (char* at = end; at != out; value /= 10) {
        *--at = static_cast<char>('0' + value % 10);
    }
    return end;
}

char* WriteSexagesimal(char* out, SexagesimalParts const& value, int wholeDigits, char separator, int decimals) {
    std::uint64_t const scale = PowerOfTen(decimals);
    std::uint64_t const seconds = value.parts / scale;
    if (value.negative) {
        *out++ = '-';
    }
    out = WriteDigits(out, value.whole, wholeDigits);
    *out++ = separator;
    out = WriteDigits(out, seconds / 60, 2);
    *out++ = separator;
    out = WriteDigits(out, seconds % 60, 2);
    if (decimals > 0) {
        *out++ = '.';
        out = WriteDigits(out, value.parts % scale, decimals);
    }
    return out;
}

}  // namespace norva
