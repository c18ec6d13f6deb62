#pragma once

#include <string>
#include <vector>

/// Which channels of a store hold positions, by their names, units and displays.
namespace norva {

struct PositionCandidate {
    std::string name;
    std::string units;
    bool isNumber = false;
    int displayFormat = 0;
};

/// Places of the two in the list; -1 where none does.
struct PositionPlaces {
    int x = -1;
    int y = -1;
};

/// The channels that most likely hold positions.
PositionPlaces FindPositions(std::vector<PositionCandidate> const& channels);
bool IsDegrees(PositionCandidate const& channel);
/// Whether the names of the two are those of an easting and a northing, or of a longitude and a latitude.
bool AreNamedPositions(PositionCandidate const& x, PositionCandidate const& y);
/// Metres of one unit of length; 0 for what is none.
double MetresOfUnit(std::string const& units);
/// A name as it is compared: its letters, lower case.
std::string PlainName(std::string const& name);
/// Without regard to the case of ASCII letters.
bool IsSameWord(std::string const& one, std::string const& other);

}  // namespace norva
