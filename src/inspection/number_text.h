#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// Numbers as they are written: not only their value, but what of it has to be kept.
namespace norva {

enum class DecimalMarks : unsigned char { None = 0, Point = 1, Comma = 2, Both = 3 };

struct NumberText {
    std::uint64_t digits = 0;    ///< the digits as one whole number; of the first 18 only
    std::uint32_t decimals = 0;  ///< digits behind the mark
    std::uint32_t count = 0;     ///< digits from the first that is not 0
    std::uint32_t length = 0;    ///< characters of the number
    std::int32_t exponent = 0;
    char mark = '\0';  ///< '.', ',' or none
    bool isNegative = false;
    bool hasExponent = false;
    bool hasLeadingZero = false;  ///< more than one digit before the mark, the first of them 0
    bool isLook = false;          ///< `digits` and `count` are not known yet, the two below are
    std::uint32_t whole = 0;      ///< digits before the mark
    std::uint64_t lead = 0;       ///< eight characters behind the sign, which compare as numbers of one look do

    bool IsWhole() const { return mark == '\0' && !hasExponent; }
    /// Digits that the value needs: zeros in front and at the end do not count.
    std::uint32_t SignificantDigits() const;
};

/// Reads the longest number that `text` begins with: sign, digits, mark, exponent (E or D). False for none.
bool ScanNumberText(std::string_view text, DecimalMarks marks, NumberText& number);
/// The same for a plain number of few digits, fast: where it ends in the text from `begin` to `end`, or null when it
/// has to be scanned closely. What follows the number is for the caller to judge.
inline char const* ScanPlainNumber(char const* begin, char const* end, DecimalMarks marks, NumberText& number);
/// The same again, with the look of the number alone: `isLook`, `lead`, `whole` and all that the digits do not say.
inline char const* ScanPlainLook(char const* begin, char const* end, DecimalMarks marks, NumberText& number);
/// Characters from `begin` to `end`, at least so many, that the two above need for the fast road.
inline constexpr std::ptrdiff_t kPlainNumberRoom = 20;
/// The double nearest to what was scanned from `text`.
double ValueOf(NumberText const& number, std::string_view text);

#if defined(__SSE2__)

namespace detail {

/// The first `count` (at most 8) of 8 digits as a number.
inline std::uint64_t DigitsAt(char const* text, unsigned count) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, text, 8);
    eight = count == 0 ? 0 : (eight - 0x3030303030303030U) << (64 - 8 * count);
    eight = eight * 10 + (eight >> 8);
    return ((eight & 0x000000FF000000FFU) * 0x000F424000000064U +
            ((eight >> 16) & 0x000000FF000000FFU) * 0x0000271000000001U) >>
           32;
}

}  // namespace detail

inline char const* ScanPlainLook(char const* begin, char const* end, DecimalMarks marks, NumberText& number) {
    if (end - begin < kPlainNumberRoom) return nullptr;
    bool const isNegative = *begin == '-';
    char const* const first = begin + (isNegative || *begin == '+' ? 1 : 0);
    __m128i const text = _mm_loadu_si128(reinterpret_cast<__m128i const*>(first));
    __m128i const values = _mm_sub_epi8(text, _mm_set1_epi8('0'));
    __m128i const isDigit = _mm_cmpeq_epi8(_mm_min_epu8(values, _mm_set1_epi8(9)), values);
    auto const others = ~static_cast<unsigned>(_mm_movemask_epi8(isDigit));
    auto const whole = static_cast<unsigned>(std::countr_zero(others));
    if (whole > 8) return nullptr;
    char const mark = first[whole];
    unsigned decimals = 0;
    char const* next = first + whole;
    bool const hasMark =
        (mark == '.' && (static_cast<int>(marks) & 1) != 0) || (mark == ',' && (static_cast<int>(marks) & 2) != 0);
    if (hasMark) {
        decimals = static_cast<unsigned>(std::countr_zero(others >> (whole + 1)));
        if (decimals > 8 || whole + 1 + decimals > 15) return nullptr;
        next += 1 + decimals;
    }
    if (whole + decimals == 0) return nullptr;
    number.decimals = decimals;
    number.length = static_cast<std::uint32_t>(next - begin);
    number.exponent = 0;
    number.mark = hasMark ? mark : '\0';
    number.isNegative = isNegative;
    number.hasExponent = false;
    number.hasLeadingZero = whole > 1 && *first == '0';
    number.isLook = true;
    number.whole = whole;
    number.lead = __builtin_bswap64(static_cast<std::uint64_t>(_mm_cvtsi128_si64(text)));
    return next;
}

inline char const* ScanPlainNumber(char const* begin, char const* end, DecimalMarks marks, NumberText& number) {
    static constexpr std::array<std::uint64_t, 17> kTens = [] {
        std::array<std::uint64_t, 17> tens{1};
        for (std::size_t i = 1; i < tens.size(); ++i) tens[i] = tens[i - 1] * 10;
        return tens;
    }();
    char const* const next = ScanPlainLook(begin, end, marks, number);
    if (next == nullptr) return nullptr;
    char const* const fraction = next - number.decimals;
    char const* const first = fraction - number.whole - (number.mark != '\0' ? 1 : 0);
    std::uint64_t digits = detail::DigitsAt(first, number.whole);
    if (number.decimals > 0) digits = digits * kTens[number.decimals] + detail::DigitsAt(fraction, number.decimals);
    // Digits of the whole number, by its bits.
    auto const tens = static_cast<unsigned>(std::bit_width(digits)) * 1233 >> 12;
    number.digits = digits;
    number.count = tens + (digits >= kTens[tens] ? 1 : 0);
    number.isLook = false;
    return next;
}

#else

inline char const* ScanPlainNumber(char const* begin, char const* end, DecimalMarks marks, NumberText& number) {
    if (!ScanNumberText({begin, static_cast<std::size_t>(end - begin)}, marks, number)) return nullptr;
    return begin + number.length;
}

inline char const* ScanPlainLook(char const* begin, char const* end, DecimalMarks marks, NumberText& number) {
    return ScanPlainNumber(begin, end, marks, number);
}

#endif

}  // namespace norva
