#pragma once

#include "colour_scale.h"
#include "map_data.h"

#include <QImage>

namespace norva {

/// What of a map is drawn, and how.
struct MapView {
    CMapData::Box box{};  ///< edges of the picture, in units of the positions
    int width = 0;        ///< device pixels
    int height = 0;
    double ratio = 1;      ///< device pixels a pixel
    bool isMedian = true;  ///< of the readings in one pixel the median value, or the last
    int chosenLine = -1;
    QColor track{};   ///< of the lines between readings
    QColor chosen{};  ///< around the chosen line

    bool operator==(MapView const& other) const {
        return box.left == other.box.left && box.right == other.box.right && box.bottom == other.box.bottom &&
               box.top == other.box.top && width == other.width && height == other.height && ratio == other.ratio &&
               isMedian == other.isMedian && chosenLine == other.chosenLine && track == other.track &&
               chosen == other.chosen;
    }
};

/// The classes of all readings on a scale; empty when the map has no colours. A reading without value has none.
std::vector<std::int16_t> ClassesOf(CMapData const& data, CColourScale const& scale);

/// Draws the readings of the view: every pixel that holds readings has the colour of their median or last value, and
/// sparse readings are spread to discs that cover no other reading. An incomplete picture when `stop` was set.
QImage DrawMap(CMapData const& data, std::vector<std::int16_t> const& classes, MapView const& view,
               std::atomic<bool> const& stop);

}  // namespace norva
