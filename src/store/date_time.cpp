#include "norva/converters.h"
#include "platform/numbers.h"
#include "platform/text.h"

#include <array>
#include <cmath>

namespace norva {

namespace {

/// Order of year, month and day in a date template, its separator and the digits of its year.
struct DateTemplate {
    char const* name;
    std::array<char, 3> order;
    char separator;
    int yearDigits;
};

// The position is the code, and codes stand in files.
constexpr std::array<DateTemplate, 8> kDates = {{
    {"YYYY/MM/DD", {'Y', 'M', 'D'}, '/', 4},
    {"YY/MM/DD", {'Y', 'M', 'D'}, '/', 2},
    {"DD/MM/YYYY", {'D', 'M', 'Y'}, '/', 4},
    {"DD/MM/YY", {'D', 'M', 'Y'}, '/', 2},
    {"MM/DD/YYYY", {'M', 'D', 'Y'}, '/', 4},
    {"MM/DD/YY", {'M', 'D', 'Y'}, '/', 2},
    {"YYYY-MM-DD", {'Y', 'M', 'D'}, '-', 4},
    {"DD-MM-YYYY", {'D', 'M', 'Y'}, '-', 4},
}};
constexpr std::array<char const*, 4> kTimes = {"HH:MM:SS", "HH:MM:SS.S", "HH:MM:SS.SSS", "HH:MM"};
constexpr int kTimeWithoutSeconds = 3;

constexpr int kMostDecimals = 12;
constexpr int kLargestYear = 999999;
constexpr double kLargestHours = 1.0e9;
constexpr std::array<int, 12> kDaysInMonth = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

bool IsLeapYear(int year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int DaysInYear(int year) {
    return IsLeapYear(year) ? 366 : 365;
}

int DaysInMonth(int year, int month) {
    return kDaysInMonth[static_cast<std::size_t>(month - 1)] + (month == 2 && IsLeapYear(year) ? 1 : 0);
}

DateTemplate const& DateOf(int code) {
    return kDates[code >= 0 && static_cast<std::size_t>(code) < kDates.size() ? static_cast<std::size_t>(code) : 0];
}

/// Takes digits from the front of `text`; false when there are none or more than nine.
bool TakeDigits(std::string_view& text, int& value) {
    std::size_t count = 0;
    value = 0;
    for (; count < text.size() && text[count] >= '0' && text[count] <= '9'; ++count) {
        if (count == 9) return false;
        value = value * 10 + (text[count] - '0');
    }
    text.remove_prefix(count);
    return count > 0;
}

void AppendPadded(std::string& out, std::int64_t value, std::size_t width) {
    std::size_t const before = out.size();
    AppendInteger(out, value);
    std::size_t const digits = out.size() - before;
    if (digits < width) out.insert(before, width - digits, '0');
}

}  // namespace

int CNorvaDateTime::GetDoubleDate(std::string_view text, int templateFormat, double& value) const {
    value = kNoDataDouble;
    text = Trim(text);
    DateTemplate const& date = DateOf(templateFormat);
    int year = 0;
    int month = 0;
    int day = 0;
    for (std::size_t part = 0; part < 3; ++part) {
        if (part > 0) {
            if (text.empty() || (text[0] != '/' && text[0] != '-' && text[0] != '.')) return 0;
            text.remove_prefix(1);
        }
        std::size_t const before = text.size();
        int& target = date.order[part] == 'Y' ? year : date.order[part] == 'M' ? month : day;
        if (!TakeDigits(text, target)) return 0;
        if (&target == &year && before - text.size() <= 2) year += year > 80 ? 1900 : 2000;
    }
    if (!text.empty() || year > kLargestYear || month < 1 || month > 12 || day < 1 || day > DaysInMonth(year, month)) {
        return 0;
    }
    int dayOfYear = day;
    for (int m = 1; m < month; ++m) dayOfYear += DaysInMonth(year, m);
    value = year + static_cast<double>(dayOfYear) / DaysInYear(year);
    return 1;
}

int CNorvaDateTime::GetStringDate(double value, int templateFormat, std::string& text) const {
    text.clear();
    if (!(value >= 0 && value <= kLargestYear)) {
        text = "*";
        return 0;
    }
    int year = static_cast<int>(value);
    int dayOfYear = static_cast<int>(std::lround((value - year) * DaysInYear(year)));
    if (dayOfYear == 0) {  // 31 December of the year before gives the next whole number
        if (year == 0) {
            text = "*";
            return 0;
        }
        --year;
        dayOfYear = DaysInYear(year);
    }
    int month = 1;
    while (dayOfYear > DaysInMonth(year, month)) dayOfYear -= DaysInMonth(year, month++);

    DateTemplate const& date = DateOf(templateFormat);
    for (std::size_t part = 0; part < 3; ++part) {
        if (part > 0) text += date.separator;
        switch (date.order[part]) {
            case 'Y':
                AppendPadded(text, date.yearDigits == 2 ? year % 100 : year, static_cast<std::size_t>(date.yearDigits));
                break;
            case 'M':
                AppendPadded(text, month, 2);
                break;
            default:
                AppendPadded(text, dayOfYear, 2);
                break;
        }
    }
    return 1;
}

int CNorvaDateTime::GetDoubleTime(std::string_view text, int /*templateFormat*/, int /*decimals*/,
                                  double& value) const {
    value = kNoDataDouble;
    text = Trim(text);
    bool const negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    int hours = 0;
    int minutes = 0;
    double seconds = 0;
    if (!TakeDigits(text, hours)) return 0;
    if (text.starts_with(':')) {
        text.remove_prefix(1);
        if (!TakeDigits(text, minutes) || minutes >= 60) return 0;
    }
    if (text.starts_with(':')) {
        text.remove_prefix(1);
        for (char const c : text) {
            if ((c < '0' || c > '9') && c != '.') return 0;
        }
        NumberRead const read = ScanNumber(text);
        if (read.consumed == 0 || read.consumed != text.size() || read.value >= 60) return 0;
        seconds = read.value;
        text = {};
    }
    if (!text.empty()) return 0;
    value = hours + (minutes * 60 + seconds) / 3600;
    if (negative) value = -value;
    return 1;
}

int CNorvaDateTime::GetStringTime(double value, int templateFormat, int decimals, std::string& text) const {
    text.clear();
    if (!(std::abs(value) <= kLargestHours)) {
        text = "*";
        return 0;
    }
    bool const withSeconds = templateFormat != kTimeWithoutSeconds;
    int const places = !withSeconds || decimals < 0 ? 0 : decimals > kMostDecimals ? kMostDecimals : decimals;
    // Whole units of the last digit shown, so that 59.9996 seconds carry into the minute.
    double const unitsPerHour = withSeconds ? 3600 * std::pow(10.0, places) : 60;
    auto hours = static_cast<std::int64_t>(std::abs(value));
    auto units = static_cast<std::int64_t>(std::llround((std::abs(value) - static_cast<double>(hours)) * unitsPerHour));
    auto const perHour = static_cast<std::int64_t>(unitsPerHour);
    hours += units / perHour;
    units %= perHour;
    if (value < 0 && (hours != 0 || units != 0)) text += '-';
    AppendPadded(text, hours, 2);
    text += ':';
    AppendPadded(text, units / (perHour / 60), 2);
    if (!withSeconds) return 1;
    auto const perSecond = perHour / 3600;
    text += ':';
    AppendPadded(text, units / perSecond % 60, 2);
    if (places > 0) {
        text += '.';
        AppendPadded(text, units % perSecond, static_cast<std::size_t>(places));
    }
    return 1;
}

void CNorvaDateTime::GetImportDateTemplate(std::vector<std::string>& names, std::vector<int>& codes) const {
    names.clear();
    codes.clear();
    for (DateTemplate const& date : kDates) {
        codes.push_back(static_cast<int>(names.size()));
        names.emplace_back(date.name);
    }
}

void CNorvaDateTime::GetImportTimeTemplate(std::vector<std::string>& names, std::vector<int>& codes) const {
    names.clear();
    codes.clear();
    for (char const* const name : kTimes) {
        codes.push_back(static_cast<int>(names.size()));
        names.emplace_back(name);
    }
}

}  // namespace norva
