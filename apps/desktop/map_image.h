#pragma once

#include <qcustomplot.h>

namespace norva {

class CMapPlot;

/// The picture of the readings behind the axes of a map, with the scale bar and the arrow to the north.
class CMapImage : public QCPAbstractItem {
public:
    explicit CMapImage(CMapPlot& map);
    double selectTest(QPointF const& pos, bool onlySelectable, QVariant* details = nullptr) const override;

protected:
    void draw(QCPPainter* painter) override;

private:
    void DrawScaleBar(QCPPainter* painter, QRect const& area) const;
    void DrawNorth(QCPPainter* painter, QRect const& area) const;

    CMapPlot& m_map;
};

}  // namespace norva
