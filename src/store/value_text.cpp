#include "norva/value_text.h"

#include "platform/numbers.h"
#include "store/sexagesimal.h"
#include "store/store_structure.h"
#include "store/value_rules.h"

#include <array>
#include <charconv>
#include <cmath>

namespace norva {

namespace {

constexpr int kUsualDecimals = 6;  ///< of printf

enum class Answer { No, Yes, Unknown };

/// Whether a value written with so many decimals reads back the same, by arithmetic alone. With n, the number without
/// its point, below 2^50, n / 10^decimals is rounded as the text would be when it is read.
Answer KeepsFixed(double value, bool isSingle, int decimals) {
    constexpr std::array<double, 16> kPowers = {1.0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    constexpr double kLargest = 0x1p50;
    constexpr double kRounder = 0x1.8p52;
    if (decimals < 0 || static_cast<std::size_t>(decimals) >= kPowers.size()) return Answer::Unknown;
    double const power = kPowers[static_cast<std::size_t>(decimals)];
    double const scaled = value * power;
    if (!(std::fabs(scaled) < kLargest)) return Answer::Unknown;
    double const whole = (scaled + kRounder) - kRounder;
    double const read = whole / power;
    if (!isSingle) return read == value ? Answer::Yes : Answer::No;
    // Near a half the text may be that of the other neighbour, and near the middle of two single-precision values
    // rounding twice is not rounding once.
    constexpr double kNearHalf = 0.499;
    constexpr double kNearMiddle = 0x1p-50;
    if (std::fabs(scaled - whole) > kNearHalf) return Answer::Unknown;
    auto const single = static_cast<float>(read);
    float const further = std::nextafter(single, read > static_cast<double>(single) ? INFINITY : -INFINITY);
    double const middle = (static_cast<double>(single) + static_cast<double>(further)) / 2;
    if (std::fabs(read - middle) <= std::fabs(read) * kNearMiddle) return Answer::Unknown;
    return single == static_cast<float>(value) ? Answer::Yes : Answer::No;
}

/// Reads as the library's text import does: no "inf", no "nan".
bool ReadsAs(std::string_view text, StoreValue const& value) {
    if (!std::isfinite(value.Floating())) return false;
    if (value.dataType == DataType::kDouble) return ReadNumber(text) == value.number;
    float read = 0;
    auto const [end, error] = std::from_chars(text.data(), text.data() + text.size(), read);
    return error == std::errc() && end == text.data() + text.size() && read == value.single;
}

/// Differences that come from computing a date or a time in another order of steps are none.
bool IsSameReading(double read, StoreValue const& value) {
    if (value.dataType == DataType::kFloat) return static_cast<float>(read) == value.single;
    return std::fabs(read - value.number) <= 4 * std::numeric_limits<double>::epsilon() * std::fabs(value.number);
}

int DecimalsOf(ValueFormat const& format) {
    return format.displayFormat == DisplayFormat::kFixed ? format.decimals : -1;
}

}  // namespace

bool StoreValue::IsMissing() const {
    switch (dataType) {
        case DataType::kFloat:
            return IsNoData(single);
        case DataType::kDouble:
            return IsNoData(number);
        case DataType::kInt:
        case DataType::kLong:
            return IsNoDataLong(Whole());
        case DataType::kShort:
            return IsNoDataShort(integer);
        default:
            return false;
    }
}

double PackedNumber(int dataType, char const* bytes) {
    double const number = StoredNumber(dataType, bytes);
    bool isMissing = false;
    switch (dataType) {
        case DataType::kFloat:
            isMissing = IsNoData(static_cast<float>(number));
            break;
        case DataType::kDouble:
            isMissing = IsNoData(number);
            break;
        case DataType::kText:
            isMissing = true;
            break;
        case DataType::kShort:
            isMissing = number == kNoDataShort;
            break;
        default:
            isMissing = number == kNoDataLong;
    }
    return isMissing ? std::numeric_limits<double>::quiet_NaN() : number;
}

ValueFormat ValueFormat::Of(CNorvaFileUtil& store, int index) {
    return {store.GetChannelDisplayFormat(index), store.GetChannelTemplateFormat(index),
            store.GetChannelNumDecPlaces(index)};
}

void AppendCsvCell(std::string& out, std::string_view text) {
    bool const isPlain = text.find_first_of(",\"\r\n") == std::string_view::npos &&
                         (text.empty() || (text.front() != ' ' && text.back() != ' '));
    if (isPlain) {
        out += text;
        return;
    }
    out += '"';
    for (char const c : text) {
        if (c == '"') out += '"';
        out += c;
    }
    out += '"';
}

void CValueText::AppendTextForm(std::string& out, ValueFormat const& format, double value) {
    switch (format.displayFormat) {
        case DisplayFormat::kDate:
            m_dateTime.GetStringDate(value, format.templateFormat, m_text);
            break;
        case DisplayFormat::kTime:
            m_dateTime.GetStringTime(value, format.templateFormat, format.decimals, m_text);
            break;
        default:
            m_geographic.GetString(value, format.templateFormat, format.decimals, m_text);
            break;
    }
    out += m_text;
}

bool CValueText::Write(std::string& out, ValueFormat const& format, StoreValue const& value, bool isChecked) {
    if (value.dataType == DataType::kText) {
        out += value.text;
        return true;
    }
    if (value.IsMissing()) {
        out += '*';
        return true;
    }
    if (!value.IsFloating()) {
        AppendInteger(out, value.Whole());
        return true;
    }
    std::size_t const begin = out.size();
    if (format.HasTextForm()) {
        AppendTextForm(out, format, value.Floating());
    } else if (format.displayFormat == DisplayFormat::kExponent) {
        AppendExponent(out, value.Floating(), format.decimals);
    } else {
        AppendFixed(out, value.Floating(), DecimalsOf(format));
    }
    bool const isFull = m_digits == ValueDigits::Full;
    if (!isChecked && !isFull) return true;
    if (!format.HasTextForm() && format.displayFormat != DisplayFormat::kExponent) {
        int const decimals = DecimalsOf(format) < 0 ? kUsualDecimals : format.decimals;
        Answer const answer = KeepsFixed(value.Floating(), value.dataType == DataType::kFloat, decimals);
        if (answer == Answer::Yes) return true;
        if (answer == Answer::No) return isFull && AppendFullDigits(out, begin, format, value);
    }
    return ReadsBack(out, begin, format, value) || (isFull && AppendFullDigits(out, begin, format, value));
}

bool CValueText::ReadsBack(std::string const& out, std::size_t begin, ValueFormat const& format,
                           StoreValue const& value) {
    std::string_view const text = std::string_view(out).substr(begin);
    double read = 0;
    int decimals = 0;
    switch (format.displayFormat) {
        case DisplayFormat::kDate:
            m_dateTime.GetDoubleDate(text, format.templateFormat, read);
            return IsSameReading(read, value);
        case DisplayFormat::kTime:
            m_dateTime.GetDoubleTime(text, format.templateFormat, format.decimals, read);
            return IsSameReading(read, value);
        case DisplayFormat::kGeographic:
            m_geographic.GetDoubleData(text, format.templateFormat, read, decimals);
            return IsSameReading(read, value);
        default:
            return ReadsAs(text, value);
    }
}

bool CValueText::AppendFullDigits(std::string& out, std::size_t begin, ValueFormat const& format,
                                  StoreValue const& value) {
    if (format.HasTextForm()) {
        ValueFormat longer = format;
        while (longer.decimals < kMaxSecondDecimals) {
            ++longer.decimals;
            out.resize(begin);
            AppendTextForm(out, longer, value.Floating());
            if (ReadsBack(out, begin, longer, value)) return true;
        }
        return false;
    }
    // Within these limits a number is no longer without an exponent than with one, or not much.
    double const size = std::fabs(value.Floating());
    bool const isPlain =
        format.displayFormat != DisplayFormat::kExponent && (size == 0 || (size > 1e-7 && size < 1e17));
    std::chars_format const form = isPlain ? std::chars_format::fixed : std::chars_format::scientific;
    std::array<char, 64> digits;
    char* const first = digits.data();
    char* const last = first + digits.size();
    std::to_chars_result const written = value.dataType == DataType::kFloat
                                             ? std::to_chars(first, last, value.single, form)
                                             : std::to_chars(first, last, value.number, form);
    out.resize(begin);
    out.append(first, written.ptr);
    return true;
}

}  // namespace norva
