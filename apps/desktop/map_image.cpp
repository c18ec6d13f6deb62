#include "map_image.h"

#include "map_plot.h"

namespace norva {

namespace {

constexpr int kMargin = 12;

/// Text on a ground of the plot's own, so that it can be read over any reading.
void DrawGround(QCPPainter* painter, QRectF const& place, QColor ground) {
    ground.setAlpha(200);
    painter->setPen(Qt::NoPen);
    painter->setBrush(ground);
    painter->drawRoundedRect(place, 3, 3);
}

}  // namespace

CMapImage::CMapImage(CMapPlot& map) : QCPAbstractItem(&map), m_map(map) {}

double CMapImage::selectTest(QPointF const& /*pos*/, bool /*onlySelectable*/, QVariant* /*details*/) const {
    return -1;
}

void CMapImage::draw(QCPPainter* painter) {
    QRect const area = m_map.axisRect()->rect();
    if (area.width() < 2 || area.height() < 2) return;
    MapPicture const& picture = m_map.Picture();
    bool const isForFile = painter->modes().testFlag(QCPPainter::pmNoCaching);
    if (isForFile) {
        // A drawing for a file is made in the size of that file, and finer than it is shown, as it may be printed.
        double const finer = painter->modes().testFlag(QCPPainter::pmVectorized) ? 3 : m_map.bufferDevicePixelRatio();
        QImage const image = m_map.DrawNow(m_map.ViewOf(area, finer));
        painter->drawImage(QRectF(area), image);
    } else if (!picture.image.isNull()) {
        CMapData::Box const& box = picture.view.box;
        QPointF const from(m_map.xAxis->coordToPixel(box.left), m_map.yAxis->coordToPixel(box.top));
        QPointF const to(m_map.xAxis->coordToPixel(box.right), m_map.yAxis->coordToPixel(box.bottom));
        MapView const now = m_map.ViewOf(area, m_map.bufferDevicePixelRatio());
        bool const isExact = now == picture.view;
        painter->drawImage(isExact ? QRectF(area) : QRectF(from, to), picture.image);
    }
    if (picture.data == nullptr || picture.data->IsEmpty()) return;
    DrawScaleBar(painter, area);
    DrawNorth(painter, area);
}

void CMapImage::DrawScaleBar(QCPPainter* painter, QRect const& area) const {
    QString text;
    double const length = m_map.ScaleBar(text);
    if (!(length > 0)) return;
    QFontMetrics const metrics(m_map.font());
    double const pixels = length / m_map.xAxis->range().size() * area.width();
    double const left = area.left() + kMargin;
    double const bottom = area.bottom() - kMargin;
    double const width = std::max<double>(pixels, metrics.horizontalAdvance(text));
    QColor const ink = m_map.xAxis->labelColor();
    DrawGround(painter, {left - 6, bottom - metrics.height() - 8, width + 12, metrics.height() + 14.0},
               m_map.palette().color(QPalette::Base));
    painter->setPen(QPen(ink, 2));
    painter->drawLine(QPointF(left, bottom), QPointF(left + pixels, bottom));
    painter->drawLine(QPointF(left, bottom - 4), QPointF(left, bottom));
    painter->drawLine(QPointF(left + pixels, bottom - 4), QPointF(left + pixels, bottom));
    painter->setFont(m_map.font());
    painter->drawText(QRectF(left, bottom - metrics.height() - 5, width, metrics.height()), Qt::AlignLeft, text);
}

void CMapImage::DrawNorth(QCPPainter* painter, QRect const& area) const {
    if (m_map.Kind() == PositionKind::Unknown) return;
    QFontMetrics const metrics(m_map.font());
    QColor const ink = m_map.xAxis->labelColor();
    double const x = area.right() - kMargin - 6;
    double const y = area.top() + kMargin;
    DrawGround(painter, {x - 12, y - 6, 24, 34.0 + metrics.height()}, m_map.palette().color(QPalette::Base));
    painter->setPen(QPen(ink, 1));
    painter->setBrush(ink);
    painter->setAntialiasing(true);
    painter->drawPolygon(QPolygonF({{x, y}, {x + 6, y + 24}, {x, y + 18}, {x - 6, y + 24}}));
    painter->setFont(m_map.font());
    painter->drawText(QRectF(x - 12, y + 25, 24, metrics.height()), Qt::AlignCenter, QObject::tr("N"));
}

}  // namespace norva
