#include "inspection/unit_words.h"

#include "platform/text.h"

#include <algorithm>

namespace norva {

bool IsUnitWord(std::string_view text) {
    static constexpr std::string_view kUnits[] = {"m",
                                                  "km",
                                                  "cm",
                                                  "mm",
                                                  "ft",
                                                  "feet",
                                                  "foot",
                                                  "in",
                                                  "mi",
                                                  "nmi",
                                                  "metre",
                                                  "metres",
                                                  "meter",
                                                  "meters",
                                                  "nt",
                                                  "pt",
                                                  "t",
                                                  "gamma",
                                                  "gammas",
                                                  "nt/m",
                                                  "nt/km",
                                                  "a/m",
                                                  "mgal",
                                                  "mgals",
                                                  "ugal",
                                                  "gal",
                                                  "m/s2",
                                                  "m/s^2",
                                                  "um/s2",
                                                  "eotvos",
                                                  "e",
                                                  "g/cc",
                                                  "g/cm3",
                                                  "kg/m3",
                                                  "t/m3",
                                                  "s",
                                                  "ms",
                                                  "us",
                                                  "ns",
                                                  "sec",
                                                  "secs",
                                                  "seconds",
                                                  "min",
                                                  "mins",
                                                  "minutes",
                                                  "h",
                                                  "hr",
                                                  "hrs",
                                                  "hours",
                                                  "day",
                                                  "days",
                                                  "utc",
                                                  "hz",
                                                  "khz",
                                                  "mhz",
                                                  "v",
                                                  "mv",
                                                  "uv",
                                                  "nv",
                                                  "mv/v",
                                                  "v/v",
                                                  "a",
                                                  "ma",
                                                  "ua",
                                                  "ohm",
                                                  "ohms",
                                                  "kohm",
                                                  "ohm.m",
                                                  "ohm-m",
                                                  "ohmm",
                                                  "s/m",
                                                  "ms/m",
                                                  "us/cm",
                                                  "siemens",
                                                  "w",
                                                  "deg",
                                                  "degs",
                                                  "degree",
                                                  "degrees",
                                                  "rad",
                                                  "mrad",
                                                  "degc",
                                                  "deg.",
                                                  "c",
                                                  "k",
                                                  "f",
                                                  "pa",
                                                  "hpa",
                                                  "kpa",
                                                  "mbar",
                                                  "bar",
                                                  "%",
                                                  "ppm",
                                                  "ppb",
                                                  "ppt",
                                                  "cps",
                                                  "bq",
                                                  "bq/kg",
                                                  "ngy/h",
                                                  "ur/h",
                                                  "kt",
                                                  "kts",
                                                  "knots",
                                                  "km/h",
                                                  "kmh",
                                                  "m/s",
                                                  "mph",
                                                  "si",
                                                  "cgs",
                                                  "10-3 si",
                                                  "10^-3 si",
                                                  "1e-3 si",
                                                  "counts",
                                                  "count",
                                                  "db",
                                                  "\xC2\xB0",
                                                  "\xC2\xB0"
                                                  "c",
                                                  "\xB0",
                                                  "\xC2\xB5T",
                                                  "\xC2\xB5V",
                                                  "\xC2\xB5s",
                                                  "dd/mm/yyyy",
                                                  "yyyy/mm/dd",
                                                  "mm/dd/yyyy",
                                                  "yyyy-mm-dd",
                                                  "hh:mm:ss",
                                                  "hh:mm",
                                                  "hhmmss",
                                                  "yyyymmdd",
                                                  "none",
                                                  "unitless",
                                                  "n/a",
                                                  "text",
                                                  "-"};
    std::string lower(text);
    for (char& c : lower) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + 32);
    }
    return std::find(std::begin(kUnits), std::end(kUnits), lower) != std::end(kUnits);
}

std::string_view WithoutBrackets(std::string_view text) {
    text = Trim(text);
    if (text.size() >= 2 &&
        ((text.front() == '(' && text.back() == ')') || (text.front() == '[' && text.back() == ']'))) {
        return Trim(text.substr(1, text.size() - 2));
    }
    return text;
}

bool IsUnitLike(std::string_view text) {
    text = Trim(text);
    return text.empty() || WithoutBrackets(text).size() != text.size() || IsUnitWord(text);
}

bool SplitUnit(std::string_view label, std::string& name, std::string& unit) {
    label = Trim(label);
    if (label.ends_with(')') || label.ends_with(']')) {
        char const opening = label.back() == ')' ? '(' : '[';
        std::size_t const at = label.rfind(opening);
        if (at == std::string_view::npos || at == 0) return false;
        std::string_view const inside = Trim(label.substr(at + 1, label.size() - at - 2));
        // A number is an index, not a unit.
        bool const isIndex = !inside.empty() && inside.find_first_not_of("0123456789.,:-+") == std::string_view::npos;
        if (isIndex || inside.size() > 24) return false;
        name = Trim(label.substr(0, at));
        unit = inside;
        return !name.empty();
    }
    std::size_t const colon = label.rfind(':');
    if (colon == std::string_view::npos || colon == 0) return false;
    std::string_view const behind = Trim(label.substr(colon + 1));
    if (!IsUnitWord(behind)) return false;
    name = Trim(label.substr(0, colon));
    unit = behind;
    return !name.empty();
}

}  // namespace norva
