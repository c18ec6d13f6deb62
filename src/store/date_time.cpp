#include "norva/converters.h"
#include "platform/text.h"
#include "store/sexagesimal.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace norva {

namespace {

enum class DatePart { Year, Month, Day };
using DateOrder = std::array<DatePart, 3>;

constexpr DateOrder kYearFirst = {DatePart::Year, DatePart::Month, DatePart::Day};
constexpr DateOrder kDayFirst = {DatePart::Day, DatePart::Month, DatePart::Year};
constexpr DateOrder kMonthFirst = {DatePart::Month, DatePart::Day, DatePart::Year};

struct DateTemplate {
    char const* name;
    DateOrder order;
    char separator;
    bool shortYear;
};

constexpr std::array<DateTemplate, 8> kDateTemplates = {{
    {"YYYY/MM/DD", kYearFirst, '/', false},
    {"YY/MM/DD", kYearFirst, '/', true},
    {"DD/MM/YYYY", kDayFirst, '/', false},
    {"DD/MM/YY", kDayFirst, '/', true},
    {"MM/DD/YYYY", kMonthFirst, '/', false},
    {"MM/DD/YY", kMonthFirst, '/', true},
    {"YYYY-MM-DD", kYearFirst, '-', false},
    {"DD-MM-YYYY", kDayFirst, '-', false},
}};

constexpr std::array<char const*, 4> kTimeTemplates = {"HH:MM:SS", "HH:MM:SS.S", "HH:MM:SS.SSS", "HH:MM"};
constexpr int kHoursAndMinutes = 3;

constexpr std::size_t kMaxYearDigits = 9;
constexpr double kYearLimit = 1.0e9;
/// Two-digit years: the first that is meant, and the last.
constexpr std::int64_t kFirstShortYear = 1981;
constexpr std::int64_t kLastShortYear = 2080;

/// A code that no template has stands for the first.
DateTemplate const& DateTemplateOf(int code) {
    bool const known = code >= 0 && static_cast<std::size_t>(code) < kDateTemplates.size();
    return kDateTemplates[known ? static_cast<std::size_t>(code) : 0];
}

constexpr bool IsLeapYear(std::int64_t year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

constexpr int DaysIn(std::int64_t year) {
    return IsLeapYear(year) ? 366 : 365;
}

/// Days of the year before the month starts; month 12 stands for the next year's first.
constexpr int DaysBefore(std::int64_t year, int month) {
    constexpr std::array<int, 13> kDays = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365};
    return kDays[static_cast<std::size_t>(month)] + (month >= 2 && IsLeapYear(year) ? 1 : 0);
}

struct Date {
    std::int64_t year = 0;
    int month = 1;
    int day = 1;
};

bool IsDay(Date const& date) {
    return date.month >= 1 && date.month <= 12 && date.day >= 1 &&
           date.day <= DaysBefore(date.year, date.month) - DaysBefore(date.year, date.month - 1);
}

double DateValue(Date const& date) {
    int const day = DaysBefore(date.year, date.month - 1) + date.day;
    return static_cast<double>(date.year) + static_cast<double>(day) / DaysIn(date.year);
}

bool ReadDate(std::string_view text, DateOrder const& order, Date& date) {
    text = Trim(text);
    std::size_t at = 0;
    for (std::size_t i = 0; i < order.size(); ++i) {
        if (i > 0) {
            if (at == text.size() || (text[at] != '/' && text[at] != '-' && text[at] != '.')) {
                return false;
            }
            ++at;
        }
        std::size_t const first = at;
        std::size_t const most = order[i] == DatePart::Year ? kMaxYearDigits : 2;
        int number = 0;
        while (at < text.size() && IsDigit(text[at]) && at - first < most) {
            number = number * 10 + (text[at] - '0');
            ++at;
        }
        if (at == first) {
            return false;
        }
        switch (order[i]) {
            case DatePart::Year:
                date.year = at - first > 2 ? number : number + (number > 80 ? 1900 : 2000);
                break;
            case DatePart::Month:
                date.month = number;
                break;
            case DatePart::Day:
                date.day = number;
                break;
        }
    }
    return at == text.size() && IsDay(date);
}

/// False for years that no text can hold.
bool DateOf(double value, Date& date) {
    if (!(value > 0 && value <= kYearLimit)) {
        return false;
    }
    // The day counts from 1, so that a whole number ends the year before it.
    double const year = std::ceil(value) - 1;
    date.year = static_cast<std::int64_t>(year);
    int day = static_cast<int>((value - year) * DaysIn(date.year) + 0.5);
    if (day == 0) {
        if (date.year == 0) {
            return false;
        }
        --date.year;
        day = DaysIn(date.year);
    }
    date.month = 1 + (day - 1) / 31;
    if (day > DaysBefore(date.year, date.month)) {
        ++date.month;
    }
    date.day = day - DaysBefore(date.year, date.month - 1);
    return true;
}

}  // namespace

int CNorvaDateTime::GetDoubleDate(std::string_view text, int templateFormat, double& value) const {
    Date date;
    if (!ReadDate(text, DateTemplateOf(templateFormat).order, date)) {
        value = kNoDataDouble;
        return 0;
    }
    value = DateValue(date);
    return 1;
}

int CNorvaDateTime::GetDateParts(double value, int& year, int& month, int& day) const {
    Date date;
    if (!DateOf(value, date)) return 0;
    year = static_cast<int>(date.year);
    month = date.month;
    day = date.day;
    return 1;
}

int CNorvaDateTime::GetDoubleDate(int year, int month, int day, double& value) const {
    Date const date = {year, month, day};
    bool const isDay = year >= 0 && year < kYearLimit && IsDay(date);
    value = isDay ? DateValue(date) : kNoDataDouble;
    return isDay ? 1 : 0;
}

int CNorvaDateTime::GetDoubleTime(std::string_view text, int /*templateFormat*/, int /*decimals*/,
                                  double& value) const {
    int decimals = 0;
    if (ReadSexagesimal(text, ':', 1, value, decimals)) {
        return 1;
    }
    value = kNoDataDouble;
    return 0;
}

int CNorvaDateTime::GetStringDate(double value, int templateFormat, std::string& text) const {
    Date date;
    if (!DateOf(value, date)) {
        text = "*";
        return 0;
    }
    DateTemplate const& format = DateTemplateOf(templateFormat);
    // Years that two digits would turn into others are written whole.
    bool const shortYear = format.shortYear && date.year >= kFirstShortYear && date.year <= kLastShortYear;
    std::array<char, 32> buffer;
    char* out = buffer.data();
    for (DatePart const part : format.order) {
        if (out != buffer.data()) {
            *out++ = format.separator;
        }
        switch (part) {
            case DatePart::Year:
                out = WriteDigits(out, static_cast<std::uint64_t>(shortYear ? date.year % 100 : date.year),
                                  shortYear ? 2 : 4);
                break;
            case DatePart::Month:
                out = WriteDigits(out, static_cast<std::uint64_t>(date.month), 2);
                break;
            case DatePart::Day:
                out = WriteDigits(out, static_cast<std::uint64_t>(date.day), 2);
                break;
        }
    }
    text.assign(buffer.data(), out);
    return 1;
}

int CNorvaDateTime::GetStringTime(double value, int templateFormat, int decimals, std::string& text) const {
    decimals = templateFormat == kHoursAndMinutes ? 0 : std::clamp(decimals, 0, kMaxSecondDecimals);
    SexagesimalParts parts;
    std::uint64_t const perHour = templateFormat == kHoursAndMinutes ? 60 : 3600 * PowerOfTen(decimals);
    if (!SplitSexagesimal(value, perHour, parts)) {
        text = "*";
        return 0;
    }
    std::array<char, 64> buffer;
    char* out = buffer.data();
    if (templateFormat == kHoursAndMinutes) {
        if (parts.negative) {
            *out++ = '-';
        }
        out = WriteDigits(out, parts.whole, 2);
        *out++ = ':';
        out = WriteDigits(out, parts.parts, 2);
    } else {
        out = WriteSexagesimal(out, parts, 2, ':', decimals);
    }
    text.assign(buffer.data(), out);
    return 1;
}

void CNorvaDateTime::GetImportDateTemplate(std::vector<std::string>& names, std::vector<int>& codes) const {
    names.clear();
    codes.clear();
    for (DateTemplate const& format : kDateTemplates) {
        codes.push_back(static_cast<int>(names.size()));
        names.emplace_back(format.name);
    }
}

void CNorvaDateTime::GetImportTimeTemplate(std::vector<std::string>& names, std::vector<int>& codes) const {
    names.clear();
    codes.clear();
    for (char const* const name : kTimeTemplates) {
        codes.push_back(static_cast<int>(names.size()));
        names.emplace_back(name);
    }
}

}  // namespace norva
