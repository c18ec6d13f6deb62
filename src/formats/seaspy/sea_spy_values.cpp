#include "formats/seaspy/sea_spy_values.h"

#include "platform/numbers.h"

#include <algorithm>

namespace norva {

double GetSeaSPYDate(std::string_view field) {
    int const shortYear = ReadInt(field.substr(0, 2));
    int const year = (shortYear > 80 ? 1900 : 2000) + shortYear;
    int const day = ReadInt(field.substr(field.size() - std::min<std::size_t>(field.size(), 3)));
    bool const isLeapYear = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return year + static_cast<double>(day) / (isLeapYear ? 366 : 365);
}

double GetSeaSPYTime(std::string_view field) {
    auto const part = [field](std::size_t at, std::size_t count) {
        return at < field.size() ? ReadInt(field.substr(at, count)) : 0;
    };
    int const tenths = field.empty() ? 0 : part(field.size() - 1, 1);
    return part(0, 2) + part(3, 2) / 60.0 + part(6, 2) / 3600.0 + tenths / 36000.0;
}

}  // namespace norva
