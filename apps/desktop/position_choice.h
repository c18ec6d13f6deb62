#pragma once

#include "store_document.h"

namespace norva {

/// How the positions of a map are measured.
enum class PositionKind {
    Unknown,  ///< the axes have nothing to do with each other
    Lengths,  ///< a unit to the north is as long as one to the east
    Degrees,
};

/// The channels that most likely hold positions, -1 where none does.
struct PositionChoice {
    int x = -1;
    int y = -1;
};

PositionChoice ChoosePositions(std::vector<ChannelEntry> const& channels);
/// The channel whose readings a map or profile shows first; -1 when there is none.
int ChooseReading(std::vector<ChannelEntry> const& channels);
PositionKind KindOfPositions(ChannelEntry const& x, ChannelEntry const& y);
/// Metres of one unit of length; 0 for what is none.
double MetresOf(QString const& units);

}  // namespace norva
