#include "position_choice.h"

#include <algorithm>
#include <utility>

namespace norva {

namespace {

/// Names as the field writes them, without their case, from the likeliest on.
constexpr char const* kEast[] = {"x",    "easting",   "east", "utme", "utmx", "xcoord",
                                 "xutm", "longitude", "long", "lon",  "lng"};
constexpr char const* kNorth[] = {"y",    "northing", "north", "utmn", "utmy", "ycoord",
                                  "yutm", "latitude", "lati",  "lat",  "lat"};
static_assert(std::size(kEast) == std::size(kNorth));

QString Plain(QString const& name) {
    QString plain;
    for (QChar const letter : name.toLower()) {
        if (letter.isLetter()) plain += letter;
    }
    return plain;
}

bool IsDegrees(ChannelEntry const& channel) {
    QString const units = channel.units.toLower();
    QString const name = Plain(channel.name);
    return channel.displayFormat == DisplayFormat::kGeographic || units.startsWith("deg") || units == "°" ||
           ((name.startsWith("lon") || name.startsWith("lat")) && units.isEmpty());
}

/// How well a channel fits as one of the two; 0 for not at all.
int ScoreOf(ChannelEntry const& channel, char const* const* names) {
    if (!channel.isNumber || channel.displayFormat == DisplayFormat::kTime ||
        channel.displayFormat == DisplayFormat::kDate) {
        return 0;
    }
    QString const name = Plain(channel.name);
    int score = 0;
    for (int i = 0; i < static_cast<int>(std::size(kEast)); ++i) {
        QString const known = names[i];
        if (name == known) {
            score = std::max(score, 100 - i);
        } else if (known.size() > 2 && name.startsWith(known)) {
            score = std::max(score, 60 - i);
        } else if (known.size() == 1 && (name == "local" + known || name == "grid" + known || name == "pos" + known)) {
            score = std::max(score, 50);
        }
    }
    if (score == 0) return 0;
    // A unit that no position has speaks against the name: "Long (s)", "X (nT)".
    bool const isPosition = channel.units.isEmpty() || IsDegrees(channel) || MetresOf(channel.units) > 0;
    return isPosition ? score : 0;
}

}  // namespace

double MetresOf(QString const& units) {
    static std::pair<char const*, double> const known[] = {
        {"m", 1},     {"metre", 1},   {"metres", 1},    {"meter", 1},     {"meters", 1},
        {"km", 1000}, {"ft", 0.3048}, {"feet", 0.3048}, {"foot", 0.3048}, {"usft", 1200.0 / 3937},
    };
    for (auto const& [name, metres] : known) {
        if (units.compare(name, Qt::CaseInsensitive) == 0) return metres;
    }
    return 0;
}

PositionChoice ChoosePositions(std::vector<ChannelEntry> const& channels) {
    PositionChoice best;
    int bestScore = 0;
    for (ChannelEntry const& x : channels) {
        int const east = ScoreOf(x, kEast);
        for (ChannelEntry const& y : channels) {
            int const north = east == 0 || x.index == y.index ? 0 : ScoreOf(y, kNorth);
            // The two have to be a pair: degrees do not go with metres.
            if (north == 0 || IsDegrees(x) != IsDegrees(y)) continue;
            int const score = east + north + (x.units == y.units ? 20 : 0);
            if (score > bestScore) {
                bestScore = score;
                best = {x.index, y.index};
            }
        }
    }
    return best;
}

int ChooseReading(std::vector<ChannelEntry> const& channels) {
    constexpr char const* kReadings[] = {"mag", "fmag", "tmi", "grav", "field", "total", "residual"};
    PositionChoice const positions = ChoosePositions(channels);
    for (char const* const start : kReadings) {
        for (ChannelEntry const& channel : channels) {
            if (channel.isNumber && Plain(channel.name).startsWith(start)) return channel.index;
        }
    }
    int first = -1;
    for (ChannelEntry const& channel : channels) {
        if (!channel.isNumber || channel.index == positions.x || channel.index == positions.y ||
            channel.displayFormat >= DisplayFormat::kTime) {
            continue;
        }
        if (!channel.units.isEmpty() && MetresOf(channel.units) == 0) return channel.index;
        if (first < 0 && !Plain(channel.name).startsWith("fid")) first = channel.index;
    }
    return first;
}

PositionKind KindOfPositions(ChannelEntry const& x, ChannelEntry const& y) {
    if (IsDegrees(x) && IsDegrees(y)) return PositionKind::Degrees;
    if (IsDegrees(x) || IsDegrees(y) || x.units.compare(y.units, Qt::CaseInsensitive) != 0)
        return PositionKind::Unknown;
    if (MetresOf(x.units) > 0) return PositionKind::Lengths;
    // Without units the names have to say it.
    bool const named = x.units.isEmpty() && ScoreOf(x, kEast) > 0 && ScoreOf(y, kNorth) > 0;
    return named ? PositionKind::Lengths : PositionKind::Unknown;
}

}  // namespace norva
