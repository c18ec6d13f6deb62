#include "platform/numbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <limits>

namespace norva {

namespace {

/// Powers of ten that a double holds exactly.
constexpr std::array<double, 23> kPowersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                                 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::uint64_t kExactIntegers = 1ULL << 53;  ///< up to here every integer is a double
constexpr int kMantissaDigits = 18;                   ///< digits that surely fit in 64 bits
constexpr int kMostDecimals = 300;                    ///< more say nothing of a double
constexpr int kDefaultDecimals = 6;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// Start and end of a number in a text, and what its short form comes to.
struct Shape {
    char const* begin = nullptr;  ///< after the sign
    char const* end = nullptr;    ///< null when there is no number
    std::uint64_t mantissa = 0;
    int digits = 0;     ///< significant digits taken into the mantissa
    int exponent = 0;   ///< of ten, for the mantissa
    bool exact = true;  ///< the mantissa holds all digits
};

int ReadExponent(char const*& at, char const* end) {
    char const* p = at + 1;
    bool const negative = p != end && *p == '-';
    if (p != end && (*p == '+' || *p == '-')) ++p;
    if (p == end || !IsDigit(*p)) return 0;
    int exponent = 0;
    for (; p != end && IsDigit(*p); ++p) exponent = std::min(exponent * 10 + (*p - '0'), 100000);
    at = p;
    return negative ? -exponent : exponent;
}

Shape ScanShape(char const* p, char const* end) {
    Shape shape;
    shape.begin = p;
    bool any = false;
    auto const take = [&shape](char c) {
        if (shape.digits < kMantissaDigits) {
            shape.mantissa = shape.mantissa * 10 + static_cast<std::uint64_t>(c - '0');
            if (shape.mantissa != 0) ++shape.digits;
            return true;
        }
        if (c != '0') shape.exact = false;
        return false;
    };
    for (; p != end && IsDigit(*p); ++p) {
        any = true;
        if (!take(*p)) ++shape.exponent;
    }
    if (p != end && *p == '.') {
        char const* const point = p;
        for (++p; p != end && IsDigit(*p); ++p) {
            any = true;
            if (take(*p)) --shape.exponent;
        }
        if (!any) p = point;
    }
    if (!any) return shape;
    if (p != end && (*p == 'e' || *p == 'E')) shape.exponent += ReadExponent(p, end);
    shape.end = p;
    return shape;
}

/// The value by the standard library, for what the short way cannot round exactly.
double ExactValue(Shape const& shape) {
    double value = 0;
    auto const [end, error] = std::from_chars(shape.begin, shape.end, value);
    if (error == std::errc::result_out_of_range) {
        bool const large = shape.mantissa != 0 && shape.digits + shape.exponent > 0;
        return large ? std::numeric_limits<double>::infinity() : 0.0;
    }
    return value;
}

template <typename Format>
void AppendChars(std::string& out, double value, Format format, int decimals) {
    std::size_t const places =
        static_cast<std::size_t>(decimals < 0 ? kDefaultDecimals : std::min(decimals, kMostDecimals));
    std::array<char, 320 + kMostDecimals> text;
    auto const [end, error] =
        std::to_chars(text.data(), text.data() + text.size(), value, format, static_cast<int>(places));
    if (error == std::errc()) out.append(text.data(), end);
}

template <typename Value>
void AppendPlain(std::string& out, Value value) {
    std::array<char, 64> text;
    auto const [end, error] = std::to_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc()) out.append(text.data(), end);
}

}  // namespace

NumberRead ScanNumber(std::string_view text) {
    char const* const begin = text.data();
    char const* const end = begin + text.size();
    char const* p = begin;
    while (p != end && IsBlank(*p)) ++p;
    bool const negative = p != end && *p == '-';
    if (p != end && (*p == '+' || *p == '-')) ++p;
    Shape const shape = ScanShape(p, end);
    if (shape.end == nullptr) return {};

    double value = 0;
    // One operation on two exact numbers rounds correctly (Clinger, "How to Read Floating Point Numbers Accurately").
    if (shape.exact && shape.mantissa <= kExactIntegers && shape.exponent >= -22 && shape.exponent <= 22) {
        auto const mantissa = static_cast<double>(shape.mantissa);
        value = shape.exponent < 0 ? mantissa / kPowersOfTen[static_cast<std::size_t>(-shape.exponent)]
                                   : mantissa * kPowersOfTen[static_cast<std::size_t>(shape.exponent)];
    } else {
        value = ExactValue(shape);
    }
    return {negative ? -value : value, static_cast<std::size_t>(shape.end - begin)};
}

std::int64_t ReadInteger(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size() && IsBlank(text[i])) ++i;
    if (i < text.size() && text[i] == '+') ++i;
    bool const negative = i < text.size() && text[i] == '-' && (i == 0 || text[i - 1] != '+');
    std::int64_t value = 0;
    auto const [end, error] = std::from_chars(text.data() + i, text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range) return negative ? INT64_MIN : INT64_MAX;
    return error == std::errc() && !(i > 0 && text[i - 1] == '+' && text[i] == '-') ? value : 0;
}

int ReadInt(std::string_view text) {
    return static_cast<int>(std::clamp<std::int64_t>(ReadInteger(text), INT_MIN, INT_MAX));
}

void AppendFixed(std::string& out, double value, int decimals) {
    AppendChars(out, value, std::chars_format::fixed, decimals);
}

void AppendExponent(std::string& out, double value, int decimals) {
    AppendChars(out, value, std::chars_format::scientific, decimals);
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
