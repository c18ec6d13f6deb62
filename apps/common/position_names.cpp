#include "common/position_names.h"

#include "norva/values.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace norva {

namespace {

/// Names as the field writes them, without their case, from the likeliest on.
constexpr std::string_view kEast[] = {"x",    "easting",   "east", "utme", "utmx", "xcoord",
                                      "xutm", "longitude", "long", "lon",  "lng"};
constexpr std::string_view kNorth[] = {"y",    "northing", "north", "utmn", "utmy", "ycoord",
                                       "yutm", "latitude", "lati",  "lat",  "lat"};
static_assert(std::size(kEast) == std::size(kNorth));

std::string Lower(std::string text) {
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
    }
    return text;
}

/// How well a channel fits as one of the two; 0 for not at all.
int ScoreOf(PositionCandidate const& channel, std::string_view const* names) {
    if (!channel.isNumber || channel.displayFormat == DisplayFormat::kTime ||
        channel.displayFormat == DisplayFormat::kDate) {
        return 0;
    }
    std::string const name = PlainName(channel.name);
    int score = 0;
    for (int i = 0; i < static_cast<int>(std::size(kEast)); ++i) {
        std::string const known(names[i]);
        if (name == known) {
            score = std::max(score, 100 - i);
        } else if (known.size() > 2 && name.starts_with(known)) {
            score = std::max(score, 60 - i);
        } else if (known.size() == 1 && (name == "local" + known || name == "grid" + known || name == "pos" + known)) {
            score = std::max(score, 50);
        }
    }
    if (score == 0) return 0;
    // A unit that no position has speaks against the name: "Long (s)", "X (nT)".
    bool const isPosition = channel.units.empty() || IsDegrees(channel) || MetresOfUnit(channel.units) > 0;
    return isPosition ? score : 0;
}

}  // namespace

std::string PlainName(std::string const& name) {
    std::string plain = Lower(name);
    std::erase_if(plain, [](char c) {
        bool const isLetter = (c >= 'a' && c <= 'z') || static_cast<unsigned char>(c) >= 0x80;
        return !isLetter;
    });
    return plain;
}

bool IsSameWord(std::string const& one, std::string const& other) {
    return Lower(one) == Lower(other);
}

bool IsDegrees(PositionCandidate const& channel) {
    std::string const units = Lower(channel.units);
    std::string const name = PlainName(channel.name);
    return channel.displayFormat == DisplayFormat::kGeographic || units.starts_with("deg") || units == "\u00B0" ||
           ((name.starts_with("lon") || name.starts_with("lat")) && units.empty());
}

bool AreNamedPositions(PositionCandidate const& x, PositionCandidate const& y) {
    return ScoreOf(x, kEast) > 0 && ScoreOf(y, kNorth) > 0;
}

double MetresOfUnit(std::string const& units) {
    static constexpr std::pair<std::string_view, double> kUnits[] = {
        {"m", 1},     {"metre", 1},   {"metres", 1},    {"meter", 1},     {"meters", 1},
        {"km", 1000}, {"ft", 0.3048}, {"feet", 0.3048}, {"foot", 0.3048}, {"usft", 1200.0 / 3937},
    };
    std::string const lower = Lower(units);
    for (auto const& [name, metres] : kUnits) {
        if (lower == name) return metres;
    }
    return 0;
}

PositionPlaces FindPositions(std::vector<PositionCandidate> const& channels) {
    PositionPlaces best;
    int bestScore = 0;
    for (std::size_t x = 0; x < channels.size(); ++x) {
        int const east = ScoreOf(channels[x], kEast);
        if (east == 0) continue;
        for (std::size_t y = 0; y < channels.size(); ++y) {
            int const north = x == y ? 0 : ScoreOf(channels[y], kNorth);
            // The two have to be a pair: degrees do not go with metres.
            if (north == 0 || IsDegrees(channels[x]) != IsDegrees(channels[y])) continue;
            int const score = east + north + (channels[x].units == channels[y].units ? 20 : 0);
            if (score > bestScore) {
                bestScore = score;
                best = {static_cast<int>(x), static_cast<int>(y)};
            }
        }
    }
    return best;
}

}  // namespace norva
