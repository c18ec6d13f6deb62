#include "column_values.h"

#include "norva/converters.h"
#include "norva/values.h"
#include "store_handle.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace norva::python {

namespace {

/// Of the calendar, which repeats every 400 years.
constexpr std::int64_t kDaysOfCycle = 146'097;
constexpr std::int64_t kNotATime = std::numeric_limits<std::int64_t>::min();

template <typename Value>
Value Load(char const* values, py::ssize_t index) {
    Value value;
    std::memcpy(&value, values + index * static_cast<py::ssize_t>(sizeof value), sizeof value);
    return value;
}

template <typename Value>
constexpr Value kNoDataOf = kNoDataDouble;
template <>
constexpr float kNoDataOf<float> = kNoDataFloat;
template <>
constexpr std::int32_t kNoDataOf<std::int32_t> = kNoDataLong;
template <>
constexpr std::int16_t kNoDataOf<std::int16_t> = kNoDataShort;

/// Calls `call` with a value of the array's type of number.
template <typename Call>
auto WithNumberType(py::array const& values, Call call) {
    bool const isFloating = values.dtype().kind() == 'f';
    switch (isFloating ? values.itemsize() : -values.itemsize()) {
        case 4:
            return call(float{});
        case 8:
            return call(double{});
        case -4:
            return call(std::int32_t{});
        case -2:
            return call(std::int16_t{});
        default:
            throw py::type_error("not a type that a store has");
    }
}

char const* BytesOf(py::array const& values) {
    if ((values.flags() & py::array::c_style) == 0) throw py::value_error("the values are not contiguous");
    return static_cast<char const*>(values.data());
}

bool IsText(py::array const& values) {
    return values.dtype().kind() == 'S';
}

std::string_view TextAt(char const* texts, py::ssize_t width, py::ssize_t index) {
    auto length = static_cast<std::size_t>(width);
    char const* const text = texts + index * width;
    while (length > 0 && text[length - 1] == ' ') --length;
    return {text, length};
}

bool IsMissing(std::string_view text) {
    return text == "*";
}

std::vector<py::ssize_t> ShapeOf(py::array const& values) {
    return {values.shape(), values.shape() + values.ndim()};
}

template <typename To, typename Convert>
py::array Converted(py::array const& values, Convert convert) {
    char const* const bytes = BytesOf(values);
    py::array_t<To> result(ShapeOf(values));
    To* const out = result.mutable_data();
    py::ssize_t const size = values.size();
    WithNumberType(values, [&]<typename Value>(Value) {
        py::gil_scoped_release const others;
        for (py::ssize_t i = 0; i < size; ++i) out[i] = convert(Load<Value>(bytes, i));
    });
    return result;
}

std::int64_t MillisecondsOf(double date, CNorvaDateTime const& converter) {
    // Beyond this year milliseconds do not fit in 64 bits.
    constexpr double kLastYear = 200'000'000;
    int year = 0;
    int month = 0;
    int day = 0;
    if (!(date < kLastYear) || converter.GetDateParts(date, year, month, day) == 0) return kNotATime;
    // std::chrono's years have 15 bits.
    int const cycles = year / 400;
    std::chrono::year_month_day const inFirst(std::chrono::year(year % 400), std::chrono::month(unsigned(month)),
                                              std::chrono::day(unsigned(day)));
    std::int64_t const days =
        std::chrono::sys_days(inFirst).time_since_epoch().count() + std::int64_t{cycles} * kDaysOfCycle;
    return days * 86'400'000;
}

double YearsOf(std::int64_t daysSince1970, CNorvaDateTime const& converter) {
    constexpr std::int64_t kDaysToYear0 = -719'528;
    constexpr std::int64_t kLastDay = 300'000'000'000;
    double value = kNoDataDouble;
    if (daysSince1970 < kDaysToYear0 || daysSince1970 > kLastDay) return value;
    std::int64_t const cycles = (daysSince1970 - kDaysToYear0) / kDaysOfCycle;
    auto const inFirst = static_cast<int>(daysSince1970 - cycles * kDaysOfCycle);
    std::chrono::year_month_day const date{std::chrono::sys_days(std::chrono::days(inFirst))};
    converter.GetDoubleDate(static_cast<int>(cycles * 400) + int{date.year()}, int(unsigned{date.month()}),
                            int(unsigned{date.day()}), value);
    return value;
}

}  // namespace

bool HasMissing(py::array const& values) {
    char const* const bytes = BytesOf(values);
    py::ssize_t const size = values.size();
    if (IsText(values)) {
        py::ssize_t const width = values.itemsize();
        py::gil_scoped_release const others;
        for (py::ssize_t i = 0; i < size; ++i) {
            if (bytes[i * width] == '*' && IsMissing(TextAt(bytes, width, i))) return true;
        }
        return false;
    }
    return WithNumberType(values, [&]<typename Value>(Value) {
        py::gil_scoped_release const others;
        // Blocks of one length are compared many values at a time.
        constexpr py::ssize_t kBlock = 2048;
        py::ssize_t at = 0;
        for (; at + kBlock <= size; at += kBlock) {
            std::array<Value, kBlock> block;
            std::memcpy(block.data(), bytes + at * static_cast<py::ssize_t>(sizeof(Value)), sizeof block);
            int found = 0;
            for (Value const value : block) found |= value == kNoDataOf<Value> ? 1 : 0;
            if (found != 0) return true;
        }
        for (; at < size; ++at) {
            if (Load<Value>(bytes, at) == kNoDataOf<Value>) return true;
        }
        return false;
    });
}

py::array MissingMask(py::array const& values) {
    if (!IsText(values)) {
        return Converted<bool>(values, []<typename Value>(Value value) { return value == kNoDataOf<Value>; });
    }
    char const* const bytes = BytesOf(values);
    py::array_t<bool> mask(ShapeOf(values));
    bool* const out = mask.mutable_data();
    py::gil_scoped_release const others;
    for (py::ssize_t i = 0; i < values.size(); ++i) out[i] = IsMissing(TextAt(bytes, values.itemsize(), i));
    return mask;
}

py::array FilledWithNan(py::array const& values) {
    auto const fill = [&]<typename To>(To) {
        return Converted<To>(values, []<typename Value>(Value value) {
            return value == kNoDataOf<Value> ? std::numeric_limits<To>::quiet_NaN() : static_cast<To>(value);
        });
    };
    bool const isSingle = values.dtype().kind() == 'f' && values.itemsize() == 4;
    return isSingle ? fill(float{}) : fill(double{});
}

py::array DatesOf(py::array const& values) {
    // Neighbours are mostly of one day.
    CNorvaDateTime const converter;
    double before = kNoDataDouble;
    std::int64_t last = kNotATime;
    return Converted<std::int64_t>(values, [&](auto value) {
        auto const date = static_cast<double>(value);
        if (date != before) last = value == kNoDataOf<decltype(value)> ? kNotATime : MillisecondsOf(date, converter);
        before = date;
        return last;
    });
}

py::array TimesOf(py::array const& values) {
    constexpr double kPerHour = 3.6e9;
    constexpr double kLimit = 9.2e18;
    return Converted<std::int64_t>(values, [](auto value) {
        double const time = static_cast<double>(value) * kPerHour;
        bool const fits = value != kNoDataOf<decltype(value)> && time > -kLimit && time < kLimit;
        return fits ? static_cast<std::int64_t>(std::llround(time)) : kNotATime;
    });
}

py::array TextsOf(py::array const& values, bool missingAsNone) {
    char const* const bytes = BytesOf(values);
    py::ssize_t const width = values.itemsize();
    py::array result(py::dtype("O"), ShapeOf(values));
    auto** const out = static_cast<PyObject**>(result.mutable_data());
    // A survey has few different texts, many times each: most values find theirs made already.
    struct Made {
        std::string_view text;
        py::object object;
    };
    std::vector<Made> made(1024);
    for (py::ssize_t i = 0; i < values.size(); ++i) {
        std::string_view const text = TextAt(bytes, width, i);
        Made& place = made[std::hash<std::string_view>{}(text) % made.size()];
        if (!place.object || place.text != text) {
            if (!IsMissing(text)) {
                place.object = StrOf(text);
            } else {
                place.object = missingAsNone ? py::object(py::none()) : py::object(py::str());
            }
            place.text = text;
        }
        PyObject* const older = out[i];
        out[i] = place.object.inc_ref().ptr();
        Py_XDECREF(older);
    }
    return result;
}

py::object AsciiTextsOf(py::array const& values) {
    char const* const bytes = BytesOf(values);
    py::ssize_t const width = values.itemsize();
    py::ssize_t const size = values.size();
    py::ssize_t longest = 1;
    bool isAscii = true;
    {
        py::gil_scoped_release const others;
        for (py::ssize_t i = 0; i < size && isAscii; ++i) {
            std::string_view const text = TextAt(bytes, width, i);
            longest = std::max(longest, static_cast<py::ssize_t>(text.size()));
            isAscii = std::none_of(text.begin(), text.end(), [](char c) { return (c & 0x80) != 0; });
        }
    }
    if (!isAscii) return py::none();
    py::array result(py::dtype("U" + std::to_string(longest)), ShapeOf(values));
    auto* out = static_cast<char32_t*>(result.mutable_data());
    py::gil_scoped_release const others;
    for (py::ssize_t i = 0; i < size; ++i, out += longest) {
        std::string_view text = TextAt(bytes, width, i);
        if (IsMissing(text)) text = {};
        char32_t* const rest = std::copy(text.begin(), text.end(), out);
        std::fill(rest, out + longest, U'\0');
    }
    return result;
}

py::array DecimalYearsOf(py::array_t<std::int64_t> const& days) {
    CNorvaDateTime const converter;
    std::int64_t before = kNotATime;
    double last = kNoDataDouble;
    py::array_t<double> result(ShapeOf(days));
    double* const out = result.mutable_data();
    std::int64_t const* const in = days.data();
    py::gil_scoped_release const others;
    for (py::ssize_t i = 0; i < days.size(); ++i) {
        if (in[i] != before) last = YearsOf(in[i], converter);
        before = in[i];
        out[i] = last;
    }
    return result;
}

}  // namespace norva::python
