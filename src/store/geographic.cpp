#include "norva/converters.h"
#include "platform/numbers.h"
#include "platform/text.h"

#include <array>
#include <cmath>

namespace norva {

namespace {

constexpr int kMostDecimals = 12;
constexpr double kLargestDegrees = 1.0e6;  ///< beyond this nothing is a coordinate

bool IsDigits(std::string_view text) {
    if (text.empty()) return false;
    for (char const c : text) {
        if (c < '0' || c > '9') return false;
    }
    return true;
}

void AppendPadded(std::string& out, std::int64_t value, std::size_t width) {
    std::size_t const before = out.size();
    AppendInteger(out, value);
    std::size_t const digits = out.size() - before;
    if (digits < width) out.insert(before, width - digits, '0');
}

}  // namespace

int CNorvaGeographic::GetDoubleData(std::string_view text, int /*templateFormat*/, double& value, int& decimals) const {
    value = kNoDataDouble;
    decimals = 0;
    text = Trim(text);
    bool const negative = text.starts_with('-');
    if (negative || text.starts_with('+')) text.remove_prefix(1);
    std::array<std::string_view, 4> parts;
    std::size_t count = 0;
    while (true) {
        if (count == parts.size()) return 0;
        std::size_t const dot = text.find('.');
        parts[count] = text.substr(0, dot);
        if (!IsDigits(parts[count])) return 0;
        ++count;
        if (dot == std::string_view::npos) break;
        text.remove_prefix(dot + 1);
    }
    double const degrees = ReadNumber(parts[0]);
    double const minutes = count > 1 ? ReadNumber(parts[1]) : 0;
    double seconds = count > 2 ? ReadNumber(parts[2]) : 0;
    if (degrees > kLargestDegrees || minutes >= 60 || seconds >= 60) return 0;
    if (count > 3) {
        // Read together with its fraction, so that the digits are rounded once.
        char const* const begin = parts[2].data();
        seconds = ReadNumber(std::string_view(begin, parts[3].data() + parts[3].size()));
        decimals = static_cast<int>(parts[3].size());
    }
    value = degrees + (minutes * 60 + seconds) / 3600;
    if (negative) value = -value;
    return 1;
}

int CNorvaGeographic::GetString(double value, int /*templateFormat*/, int decimals, std::string& text) const {
    text.clear();
    if (!(std::abs(value) <= kLargestDegrees)) {
        text = "*";
        return 0;
    }
    int const places = decimals < 0 ? 0 : decimals > kMostDecimals ? kMostDecimals : decimals;
    // Whole units of the last digit shown, so that 59.9996 seconds carry into the minute.
    double const unitsPerSecond = std::pow(10.0, places);
    auto degrees = static_cast<std::int64_t>(std::abs(value));
    double const rest = (std::abs(value) - static_cast<double>(degrees)) * 3600;
    auto units = static_cast<std::int64_t>(std::llround(rest * unitsPerSecond));
    auto const perSecond = static_cast<std::int64_t>(unitsPerSecond);
    degrees += units / (3600 * perSecond);
    units %= 3600 * perSecond;
    if (value < 0 && (degrees != 0 || units != 0)) text += '-';
    AppendInteger(text, degrees);
    text += '.';
    AppendPadded(text, units / (60 * perSecond), 2);
    text += '.';
    AppendPadded(text, units / perSecond % 60, 2);
    if (places > 0) {
        text += '.';
        AppendPadded(text, units % perSecond, static_cast<std::size_t>(places));
    }
    return 1;
}

}  // namespace norva
