#include "position_choice.h"

#include "common/position_names.h"

namespace norva {

namespace {

PositionCandidate CandidateOf(ChannelEntry const& channel) {
    return {channel.name.toStdString(), channel.units.toStdString(), channel.isNumber, channel.displayFormat};
}

}  // namespace

double MetresOf(QString const& units) {
    return MetresOfUnit(units.toStdString());
}

PositionChoice ChoosePositions(std::vector<ChannelEntry> const& channels) {
    std::vector<PositionCandidate> candidates;
    for (ChannelEntry const& channel : channels) candidates.push_back(CandidateOf(channel));
    PositionPlaces const found = FindPositions(candidates);
    if (found.x < 0) return {};
    return {channels[static_cast<std::size_t>(found.x)].index, channels[static_cast<std::size_t>(found.y)].index};
}

int ChooseReading(std::vector<ChannelEntry> const& channels) {
    constexpr char const* kReadings[] = {"mag", "fmag", "tmi", "grav", "field", "total", "residual"};
    PositionChoice const positions = ChoosePositions(channels);
    for (char const* const start : kReadings) {
        for (ChannelEntry const& channel : channels) {
            if (channel.isNumber && PlainName(channel.name.toStdString()).starts_with(start)) return channel.index;
        }
    }
    int first = -1;
    for (ChannelEntry const& channel : channels) {
        if (!channel.isNumber || channel.index == positions.x || channel.index == positions.y ||
            channel.displayFormat >= DisplayFormat::kTime) {
            continue;
        }
        if (!channel.units.isEmpty() && MetresOf(channel.units) == 0) return channel.index;
        if (first < 0 && !PlainName(channel.name.toStdString()).starts_with("fid")) first = channel.index;
    }
    return first;
}

PositionKind KindOfPositions(ChannelEntry const& x, ChannelEntry const& y) {
    PositionCandidate const east = CandidateOf(x);
    PositionCandidate const north = CandidateOf(y);
    if (IsDegrees(east) && IsDegrees(north)) return PositionKind::Degrees;
    if (IsDegrees(east) || IsDegrees(north) || !IsSameWord(east.units, north.units)) return PositionKind::Unknown;
    if (MetresOfUnit(east.units) > 0) return PositionKind::Lengths;
    // Without units the names have to say it.
    bool const named = east.units.empty() && AreNamedPositions(east, north);
    return named ? PositionKind::Lengths : PositionKind::Unknown;
}

}  // namespace norva
