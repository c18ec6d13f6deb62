#pragma once

#include <string_view>

namespace norva {

/// "07.123" (year, day of the year) as a decimal year.
double GetSeaSPYDate(std::string_view field);
/// "12:30:15.5", at fixed positions, as hours.
double GetSeaSPYTime(std::string_view field);

}  // namespace norva
