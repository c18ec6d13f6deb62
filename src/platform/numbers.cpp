#include "platform/numbers.h"

#include "platform/text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace norva {

namespace {

constexpr unsigned DigitOf(char c) {
    return static_cast<unsigned char>(c) - static_cast<unsigned>('0');
}

/// Powers of ten that a double holds exactly.
constexpr std::array<double, 23> kExactPower = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                                1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::uint64_t kExactMantissa = std::uint64_t{1} << 53;
/// Digits that 64 bits take whatever they are.
constexpr std::ptrdiff_t kSafeDigits = 19;
/// Far beyond any exponent that matters, far from overflow.
constexpr std::int64_t kExponentLimit = 1'000'000'000;

/// Value of the plain decimal text [first, last) without a sign, correctly rounded. `exponent` is what its exponent
/// part says.
double RoundedValue(char const* first, char const* last, std::int64_t exponent) {
    double value = 0;
    std::from_chars_result const result = std::from_chars(first, last, value, std::chars_format::general);
    if (result.ec != std::errc::result_out_of_range) {
        return value;
    }
    // Out of range leaves open which way: the place of the first digit that is not 0 tells.
    std::int64_t place = 0;
    bool seenDigit = false;
    bool seenPoint = false;
    for (char const* at = first; at != last && (*at == '.' || IsDigit(*at)); ++at) {
        if (*at == '.') {
            seenPoint = true;
        } else {
            seenDigit = seenDigit || *at != '0';
            place += (seenDigit && !seenPoint) ? 1 : 0;
            place -= (!seenDigit && seenPoint) ? 1 : 0;
        }
    }
    return seenDigit && place + exponent > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

}  // namespace

NumberRead ScanNumber(std::string_view text) {
    char const* const begin = text.data();
    char const* const end = begin + text.size();
    char const* at = begin;
    while (at != end && IsBlank(*at)) {
        ++at;
    }
    bool negative = false;
    if (at != end && (*at == '-' || *at == '+')) {
        negative = *at == '-';
        ++at;
    }

    char const* const first = at;
    std::uint64_t mantissa = 0;
    while (at != end && IsDigit(*at)) {
        mantissa = mantissa * 10 + DigitOf(*at);
        ++at;
    }
    std::ptrdiff_t digits = at - first;
    std::int64_t exponent = 0;
    if (at != end && *at == '.') {
        char const* const fraction = ++at;
        while (at != end && IsDigit(*at)) {
            mantissa = mantissa * 10 + DigitOf(*at);
            ++at;
        }
        exponent = fraction - at;
        digits -= static_cast<std::ptrdiff_t>(exponent);
    }
    if (digits == 0) {
        return {};
    }

    std::int64_t written = 0;
    if (at != end && (*at == 'e' || *at == 'E')) {
        char const* power = at + 1;
        bool negativePower = false;
        if (power != end && (*power == '-' || *power == '+')) {
            negativePower = *power == '-';
            ++power;
        }
        if (power != end && IsDigit(*power)) {
            for (; power != end && IsDigit(*power); ++power) {
                written = std::min(written * 10 + DigitOf(*power), kExponentLimit);
            }
            written = negativePower ? -written : written;
            exponent += written;
            at = power;
        }
    }

    // Up to 2^53 and 10^22 both operands are exact, so that the one division or multiplication rounds correctly.
    double value = 0;
    if (digits <= kSafeDigits && mantissa <= kExactMantissa && exponent >= -22 && exponent <= 22) {
        value = static_cast<double>(mantissa);
        value = exponent < 0 ? value / kExactPower[static_cast<std::size_t>(-exponent)]
                             : value * kExactPower[static_cast<std::size_t>(exponent)];
    } else {
        value = RoundedValue(first, at, written);
    }
    return {negative ? -value : value, static_cast<std::size_t>(at - begin)};
}

std::int64_t ReadInteger(std::string_view text) {
    constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
    constexpr std::int64_t kMin = std::numeric_limits<std::int64_t>::min();
    char const* at = text.data();
    char const* const end = at + text.size();
    while (at != end && IsBlank(*at)) {
        ++at;
    }
    bool negative = false;
    if (at != end && (*at == '-' || *at == '+')) {
        negative = *at == '-';
        ++at;
    }
    std::int64_t value = 0;
    for (; at != end && IsDigit(*at); ++at) {
        std::int64_t const digit = DigitOf(*at);
        if (negative) {
            if (value < (kMin + digit) / 10) {
                return kMin;
            }
            value = value * 10 - digit;
        } else {
            if (value > (kMax - digit) / 10) {
                return kMax;
            }
            value = value * 10 + digit;
        }
    }
    return value;
}

int ReadInt(std::string_view text) {
    return static_cast<int>(
        std::clamp<std::int64_t>(ReadInteger(text), std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

namespace {

/// Decimals beyond which every digit of every double is 0.
constexpr int kMaxDecimals = 1074;
constexpr int kDefaultDecimals = 6;
/// Digits, point and sign of the longest double at the most decimals.
constexpr std::size_t kLongestNumber = 310 + kMaxDecimals + 8;

void AppendFormatted(std::string& out, double value, std::chars_format format, int decimals) {
    std::array<char, kLongestNumber> buffer;
    int const precision = decimals < 0 ? kDefaultDecimals : std::min(decimals, kMaxDecimals);
    std::to_chars_result const result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format, precision);
    out.append(buffer.data(), result.ptr);
}

__extension__ using Wide = unsigned __int128;

/// Decimals up to which a mantissa of 53 bits times a power of ten surely fits in 128 bits.
constexpr int kMaxExactDecimals = 15;
constexpr std::array<std::uint64_t, kMaxExactDecimals + 1> kIntegerPower = {1,
                                                                            10,
                                                                            100,
                                                                            1'000,
                                                                            10'000,
                                                                            100'000,
                                                                            1'000'000,
                                                                            10'000'000,
                                                                            100'000'000,
                                                                            1'000'000'000,
                                                                            10'000'000'000,
                                                                            100'000'000'000,
                                                                            1'000'000'000'000,
                                                                            10'000'000'000'000,
                                                                            100'000'000'000'000,
                                                                            1'000'000'000'000'000};

/// |value| * 10^decimals rounded to an integer, ties to even, as printf rounds. It is computed in integers throughout
/// (the value is an integer times a power of two), so that nothing is rounded twice. False when 64 bits do not hold it.
bool RoundToInteger(double value, int decimals, std::uint64_t& result) {
    constexpr int kMantissaBits = 52;
    constexpr int kBias = 1023 + kMantissaBits;
    std::uint64_t const bits = std::bit_cast<std::uint64_t>(value);
    std::uint64_t const fraction = bits & ((std::uint64_t{1} << kMantissaBits) - 1);
    int const biased = static_cast<int>((bits >> kMantissaBits) & 0x7FF);
    if (biased > kBias + 10) {
        return false;
    }
    std::uint64_t const mantissa = biased == 0 ? fraction : fraction | (std::uint64_t{1} << kMantissaBits);
    int const shift = kBias - std::max(biased, 1);
    Wide const product = static_cast<Wide>(mantissa) * kIntegerPower[static_cast<std::size_t>(decimals)];
    if (shift <= 0) {
        Wide const scaled = product << -shift;
        result = static_cast<std::uint64_t>(scaled);
        return scaled >> 64 == 0;
    }
    // The product has 53 + 50 bits at most: shifted further than that it is below a half.
    if (shift > 104) {
        result = 0;
        return true;
    }
    Wide const whole = product >> shift;
    Wide const rest = product - (whole << shift);
    Wide const half = static_cast<Wide>(1) << (shift - 1);
    bool const up = rest > half || (rest == half && (whole & 1U) != 0);
    Wide const rounded = whole + (up ? 1U : 0U);
    result = static_cast<std::uint64_t>(rounded);
    return rounded >> 64 == 0;
}

constexpr std::array<char, 200> MakeDigitPairs() {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}
constexpr std::array<char, 200> kDigitPairs = MakeDigitPairs();

/// Puts the last two digits of `value` in front of `end` and takes them off it.
void TakePair(char*& end, std::uint64_t& value) {
    end -= 2;
    std::memcpy(end, kDigitPairs.data() + 2 * (value % 100), 2);
    value /= 100;
}

void TakeDigit(char*& end, std::uint64_t& value) {
    *--end = static_cast<char>('0' + value % 10);
    value /= 10;
}

/// Appends a number of `places` decimals, given as the integer that it is without its point.
void AppendScaled(std::string& out, bool negative, std::uint64_t scaled, int places) {
    std::array<char, 40> buffer;
    char* const end = buffer.data() + buffer.size();
    char* begin = end;
    if (places > 0) {
        for (int left = places; left >= 2; left -= 2) {
            TakePair(begin, scaled);
        }
        if (places % 2 != 0) {
            TakeDigit(begin, scaled);
        }
        *--begin = '.';
    }
    while (scaled >= 10) {
        TakePair(begin, scaled);
    }
    // A pair may have ended in front of the last digit; a number has one before its point.
    if (scaled != 0 || begin == end || *begin == '.') {
        TakeDigit(begin, scaled);
    }
    if (negative) {
        *--begin = '-';
    }
    out.append(begin, end);
}

template <typename T>
void AppendPlain(std::string& out, T value) {
    std::array<char, 64> buffer;
    std::to_chars_result const result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    out.append(buffer.data(), result.ptr);
}

}  // namespace

void AppendFixed(std::string& out, double value, int decimals) {
    int const places = decimals < 0 ? kDefaultDecimals : decimals;
    std::uint64_t scaled = 0;
    if (places <= kMaxExactDecimals && RoundToInteger(value, places, scaled)) {
        AppendScaled(out, std::signbit(value), scaled, places);
        return;
    }
    AppendFormatted(out, value, std::chars_format::fixed, decimals);
}

void AppendExponent(std::string& out, double value, int decimals) {
    AppendFormatted(out, value, std::chars_format::scientific, decimals);
}

void AppendShortest(std::string& out, double value) {
    AppendPlain(out, value);
}

void AppendShortest(std::string& out, float value) {
    AppendPlain(out, value);
}

void AppendInteger(std::string& out, std::int64_t value) {
    AppendPlain(out, value);
}

}  // namespace norva
