#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Dates and times as they are written, before it is known in which order.
namespace norva {

/// Bits of the orders that a date allows.
enum DateOrderBit : unsigned { kDayFirst = 1, kMonthFirst = 2, kYearFirst = 4 };
inline constexpr unsigned kDateOrderBits[] = {kDayFirst, kMonthFirst, kYearFirst};

struct DateText {
    enum class Form : unsigned char { Numbers, NamedMonth, DayOfYear };

    int parts[3] = {0, 0, 0};  ///< as written; named months: day, month, year; day of year: year, day
    Form form = Form::Numbers;
    char separator = '\0';
    bool isShortYear = false;  ///< no part has four digits
    unsigned orders = 0;       ///< in which it is a day of the calendar

    bool operator==(DateText const&) const = default;
};

/// "27/02/2021", "2021-02-27", "27-Feb-2021", "Feb 27 2021", "2021-058": the whole text has to be the date.
bool ReadDateText(std::string_view text, DateText& date);

/// The last date that was read, since many rows follow each other on one day.
class CLastDate {
public:
    bool Read(std::string_view text, DateText& date);

private:
    static constexpr std::size_t kLongest = 20;

    char m_text[kLongest] = {};
    std::size_t m_size = 0;  ///< 0: none yet
    DateText m_date;
};

struct Day {
    int year = 0;
    int month = 1;
    int day = 1;
};

/// What the date means in one of its orders.
Day DayOf(DateText const& date, unsigned order);
/// Days since 1970-01-01.
std::int64_t DayNumber(Day const& day);
Day DayOfNumber(std::int64_t number);
bool IsCalendarDay(Day const& day);
/// As stores hold it: year + day of the year / days in the year.
double DecimalYear(Day const& day);

struct TimeText {
    double seconds = 0;
    int decimals = 0;  ///< digits of the fraction of a second
    bool hasSeconds = false;
};

/// "9:05", "09:05:07", "09:05:07.25", "9:05 PM": the whole text has to be the time.
bool ReadTimeText(std::string_view text, TimeText& time);

struct DateTimeText {
    DateText date;
    TimeText time;
    bool hasZone = false;
    int zoneMinutes = 0;  ///< to be taken off for UTC
};

/// A date, "T" or blanks, a time, and perhaps "Z" or an offset.
bool ReadDateTimeText(std::string_view text, DateTimeText& both, CLastDate& last);
/// The same in UTC: day number, and seconds of that day.
void ToUtc(DateTimeText const& both, unsigned order, std::int64_t& dayNumber, double& seconds);

}  // namespace norva
