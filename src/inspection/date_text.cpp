#include "inspection/date_text.h"

#include "platform/text.h"

#include <cmath>
#include <iterator>

namespace norva {

namespace {

bool IsLeapYear(int year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int DaysOfMonth(int year, int month) {
    constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && IsLeapYear(year) ? 29 : kDays[month - 1];
}

int FullYear(int year, bool isShort) {
    return isShort ? year + (year > 80 ? 1900 : 2000) : year;
}

/// Digits from the start of `text` on, which they leave; 0 digits for none or more than `most`.
std::size_t TakeDigits(std::string_view& text, std::size_t most, int& number) {
    std::size_t count = 0;
    number = 0;
    while (count < text.size() && count <= most && IsDigit(text[count])) number = number * 10 + (text[count++] - '0');
    if (count > most) return 0;
    text.remove_prefix(count);
    return count;
}

/// A month's name, three letters or whole; 0 for none.
int TakeMonth(std::string_view& text) {
    static constexpr std::string_view kMonths[] = {"JANUARY",   "FEBRUARY", "MARCH",    "APRIL",
                                                   "MAY",       "JUNE",     "JULY",     "AUGUST",
                                                   "SEPTEMBER", "OCTOBER",  "NOVEMBER", "DECEMBER"};
    std::size_t letters = 0;
    while (letters < text.size() && ((text[letters] | 0x20) >= 'a' && (text[letters] | 0x20) <= 'z')) ++letters;
    if (letters < 3 || letters > 9) return 0;
    for (int month = 0; month < 12; ++month) {
        std::string_view const name = kMonths[month];
        if (letters != 3 && letters != name.size() && !(month == 8 && letters == 4)) continue;
        std::size_t same = 0;
        while (same < letters && same < name.size() && (text[same] & ~0x20) == name[same]) ++same;
        if (same != letters) continue;
        text.remove_prefix(letters);
        return month + 1;
    }
    return 0;
}

bool TakeSeparator(std::string_view& text, char& separator) {
    if (text.empty()) return false;
    char const c = text.front();
    if (c != '/' && c != '-' && c != '.' && c != ' ') return false;
    if (separator != '\0' && separator != c) return false;
    separator = c;
    text.remove_prefix(1);
    return true;
}

/// "Feb 27 2021", "Feb 27, 2021".
bool ReadMonthFirst(std::string_view text, DateText& date) {
    date.parts[1] = TakeMonth(text);
    if (date.parts[1] == 0) return false;
    date.separator = '\0';
    if (!TakeSeparator(text, date.separator) || TakeDigits(text, 2, date.parts[0]) == 0) return false;
    if (text.starts_with(", ")) text.remove_prefix(1);
    if (!TakeSeparator(text, date.separator) || TakeDigits(text, 4, date.parts[2]) != 4 || !text.empty()) return false;
    date.form = DateText::Form::NamedMonth;
    return true;
}

bool ReadDayAndName(std::string_view text, int day, std::size_t digits, DateText& date) {
    date.form = DateText::Form::NamedMonth;
    date.parts[1] = TakeMonth(text);
    if (date.parts[1] == 0 || !TakeSeparator(text, date.separator)) return false;
    int last = 0;
    std::size_t const lastDigits = TakeDigits(text, 4, last);
    if (!text.empty()) return false;
    if (digits == 4 && lastDigits > 0 && lastDigits <= 2) {
        date.parts[0] = last;
        date.parts[2] = day;
        return true;
    }
    date.isShortYear = lastDigits == 2;
    date.parts[0] = day;
    date.parts[2] = FullYear(last, date.isShortYear);
    return digits <= 2 && (lastDigits == 2 || lastDigits == 4);
}

}  // namespace

bool IsCalendarDay(Day const& day) {
    return day.month >= 1 && day.month <= 12 && day.day >= 1 && day.year >= 1 &&
           day.day <= DaysOfMonth(day.year, day.month);
}

Day DayOf(DateText const& date, unsigned order) {
    switch (date.form) {
        case DateText::Form::NamedMonth:
            return {date.parts[2], date.parts[1], date.parts[0]};
        case DateText::Form::DayOfYear:
            return DayOfNumber(DayNumber({date.parts[0], 1, 1}) + date.parts[1] - 1);
        default:
            break;
    }
    int const* const p = date.parts;
    if (order == kYearFirst) return {FullYear(p[0], date.isShortYear), p[1], p[2]};
    int const year = FullYear(p[2], date.isShortYear);
    return order == kDayFirst ? Day{year, p[1], p[0]} : Day{year, p[0], p[1]};
}

bool ReadDateText(std::string_view text, DateText& date) {
    date = {};
    if (text.size() < 6 || text.size() > 20) return false;
    if (!IsDigit(text.front())) {
        if (!ReadMonthFirst(text, date)) return false;
        date.orders = IsCalendarDay(DayOf(date, kDayFirst)) ? unsigned{kDayFirst} : 0U;
        return date.orders != 0;
    }
    int numbers[3];
    std::size_t digits[3];
    digits[0] = TakeDigits(text, 4, numbers[0]);
    if (digits[0] == 0) return false;
    // "27Feb2021" has no separator.
    bool const hasSeparator = TakeSeparator(text, date.separator);
    if (!text.empty() && !IsDigit(text.front())) {
        if (!hasSeparator) return false;
        if (!ReadDayAndName(text, numbers[0], digits[0], date)) return false;
        date.orders = IsCalendarDay(DayOf(date, kDayFirst)) ? unsigned{kDayFirst} : 0U;
        return date.orders != 0;
    }
    if (!hasSeparator || date.separator == ' ') return false;
    digits[1] = TakeDigits(text, 3, numbers[1]);
    if (digits[0] == 4 && digits[1] == 3 && text.empty()) {
        date.form = DateText::Form::DayOfYear;
        date.parts[0] = numbers[0];
        date.parts[1] = numbers[1];
        bool const isDay = date.separator != '.' && numbers[0] > 1800 && numbers[0] < 2200 && numbers[1] >= 1 &&
                           numbers[1] <= (IsLeapYear(numbers[0]) ? 366 : 365);
        date.orders = isDay ? unsigned{kYearFirst} : 0U;
        return isDay;
    }
    if (digits[1] == 0 || digits[1] > 2 || !TakeSeparator(text, date.separator)) return false;
    digits[2] = TakeDigits(text, 4, numbers[2]);
    if (digits[2] == 0 || !text.empty() || digits[0] == 3 || digits[2] == 3) return false;
    for (int i = 0; i < 3; ++i) date.parts[i] = numbers[i];
    date.isShortYear = digits[0] != 4 && digits[2] != 4;
    if (digits[0] == 4 && digits[2] == 4) return false;
    for (unsigned const order : kDateOrderBits) {
        std::size_t const year = order == kYearFirst ? 0 : 2;
        if (digits[year] != (date.isShortYear ? 2U : 4U)) continue;
        if (IsCalendarDay(DayOf(date, order))) date.orders |= order;
    }
    return date.orders != 0;
}

bool CLastDate::Read(std::string_view text, DateText& date) {
    if (m_size > 0 && text == std::string_view(m_text, m_size)) {
        date = m_date;
        return true;
    }
    if (!ReadDateText(text, date)) return false;
    if (text.size() <= kLongest) {
        m_size = text.copy(m_text, kLongest);
        m_date = date;
    }
    return true;
}

std::int64_t DayNumber(Day const& day) {
    // Years that begin in March have the leap day at their end.
    std::int64_t const year = day.year - (day.month <= 2 ? 1 : 0);
    std::int64_t const era = (year >= 0 ? year : year - 399) / 400;
    std::int64_t const ofEra = year - era * 400;
    std::int64_t const ofYear = (153 * (day.month + (day.month > 2 ? -3 : 9)) + 2) / 5 + day.day - 1;
    return era * 146097 + ofEra * 365 + ofEra / 4 - ofEra / 100 + ofYear - 719468;
}

Day DayOfNumber(std::int64_t number) {
    std::int64_t const shifted = number + 719468;
    std::int64_t const era = (shifted >= 0 ? shifted : shifted - 146096) / 146097;
    std::int64_t const ofEra = shifted - era * 146097;
    std::int64_t const year = (ofEra - ofEra / 1460 + ofEra / 36524 - ofEra / 146096) / 365;
    std::int64_t const ofYear = ofEra - (365 * year + year / 4 - year / 100);
    std::int64_t const month = (5 * ofYear + 2) / 153;
    Day day;
    day.day = static_cast<int>(ofYear - (153 * month + 2) / 5 + 1);
    day.month = static_cast<int>(month < 10 ? month + 3 : month - 9);
    day.year = static_cast<int>(year + era * 400 + (day.month <= 2 ? 1 : 0));
    return day;
}

double DecimalYear(Day const& day) {
    auto const ofYear = static_cast<double>(DayNumber(day) - DayNumber({day.year, 1, 1}) + 1);
    return day.year + ofYear / (IsLeapYear(day.year) ? 366 : 365);
}

namespace {

/// Takes "AM" or "PM" off the end: 'A', 'P', or 0 for neither.
char TakeHalfDay(std::string_view& text) {
    if (text.size() < 5 || (text.back() | 0x20) != 'm') return '\0';
    auto const half = static_cast<char>(text[text.size() - 2] & ~0x20);
    if (half != 'A' && half != 'P') return '\0';
    text = TrimRight(text.substr(0, text.size() - 2));
    return half;
}

}  // namespace

bool ReadTimeText(std::string_view text, TimeText& time) {
    static constexpr double kPowers[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                         1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    time = {};
    int hours = 0;
    int minutes = 0;
    char const half = TakeHalfDay(text);
    if (TakeDigits(text, 2, hours) == 0 || hours > 24 || !text.starts_with(':')) return false;
    text.remove_prefix(1);
    if (TakeDigits(text, 2, minutes) == 0 || minutes > 59) return false;
    if (half != '\0') {
        if (hours < 1 || hours > 12) return false;
        hours = hours % 12 + (half == 'P' ? 12 : 0);
    }
    time.seconds = hours * 3600 + minutes * 60;
    if (text.empty()) return true;
    if (!text.starts_with(':')) return false;
    text.remove_prefix(1);
    int seconds = 0;
    if (TakeDigits(text, 2, seconds) == 0 || seconds > 60) return false;
    time.hasSeconds = true;
    time.seconds += seconds;
    if (text.empty()) return true;
    if ((text.front() != '.' && text.front() != ',') || text.size() > std::size(kPowers)) return false;
    std::int64_t fraction = 0;
    for (char const c : text.substr(1)) {
        if (!IsDigit(c)) return false;
        fraction = fraction * 10 + (c - '0');
    }
    time.decimals = static_cast<int>(text.size() - 1);
    time.seconds += static_cast<double>(fraction) / kPowers[time.decimals];
    return true;
}

namespace {

/// Takes "Z", "+hh", "+hhmm" or "+hh:mm" off the end.
void TakeZone(std::string_view& text, DateTimeText& both) {
    if (text.ends_with('Z') || text.ends_with('z')) {
        both.hasZone = true;
        text = TrimRight(text.substr(0, text.size() - 1));
        return;
    }
    std::size_t const sign = text.find_last_of("+-");
    if (sign == std::string_view::npos || text.find(':') > sign) return;
    std::string_view zone = text.substr(sign + 1);
    int hours = 0;
    int minutes = 0;
    if (zone.size() == 4 && TakeDigits(zone, 4, hours) == 4) {
        minutes = hours % 100;
        hours /= 100;
    } else {
        if (TakeDigits(zone, 2, hours) != 2) return;
        if (zone.starts_with(':')) zone.remove_prefix(1);
        if (!zone.empty() && TakeDigits(zone, 2, minutes) != 2) return;
    }
    if (!zone.empty() || hours > 14 || minutes > 59) return;
    both.hasZone = true;
    both.zoneMinutes = (text[sign] == '-' ? -1 : 1) * (hours * 60 + minutes);
    text = TrimRight(text.substr(0, sign));
}

}  // namespace

bool ReadDateTimeText(std::string_view text, DateTimeText& both, CLastDate& last) {
    both = {};
    if (text.size() < 11 || text.size() > 50) return false;
    std::size_t const colon = text.find(':');
    if (colon == std::string_view::npos || colon < 7) return false;
    std::size_t const split = text.find_last_of("T ", colon);
    if (split == std::string_view::npos) return false;
    if (!last.Read(TrimRight(text.substr(0, split)), both.date)) return false;
    std::string_view clock = text.substr(split + 1);
    TakeZone(clock, both);
    return ReadTimeText(clock, both.time);
}

void ToUtc(DateTimeText const& both, unsigned order, std::int64_t& dayNumber, double& seconds) {
    dayNumber = DayNumber(DayOf(both.date, order));
    seconds = both.time.seconds;
    if (both.zoneMinutes == 0) return;
    seconds -= both.zoneMinutes * 60.0;
    double const days = std::floor(seconds / 86400);
    dayNumber += static_cast<std::int64_t>(days);
    seconds -= days * 86400;
}

}  // namespace norva
