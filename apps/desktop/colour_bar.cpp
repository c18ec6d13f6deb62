#include "colour_bar.h"

#include <QApplication>

#include <algorithm>
#include <cmath>

namespace norva {

namespace {

constexpr int kLabels = 7;
constexpr int kBarWidth = 16;
constexpr int kArrow = 12;
constexpr int kSpace = 6;

}  // namespace

void CColourBar::Show(CColourScale const& scale, QString const& title) {
    m_scale = scale;
    m_title = title;
}

/// The values at equal distances along the bar, with as many digits as tell neighbours apart.
QStringList CColourBar::Labels() const {
    QStringList labels;
    auto const valueAt = [this](int i) { return m_scale.ValueAt(static_cast<double>(i) / (kLabels - 1)); };
    double smallest = 0;
    for (int i = 1; i < kLabels; ++i) {
        double const step = valueAt(i) - valueAt(i - 1);
        if (step > 0 && (smallest == 0 || step < smallest)) smallest = step;
    }
    int const decimals = smallest > 0 ? std::clamp(static_cast<int>(std::ceil(-std::log10(smallest))), 0, 9) : 2;
    for (int i = 0; i < kLabels; ++i) {
        labels << QString::number(valueAt(i), 'f', decimals);
    }
    return labels;
}

QSize CColourBar::minimumOuterSizeHint() const {
    if (m_scale.IsEmpty()) return {0, 0};
    QFontMetrics const metrics(mParentPlot->font());
    int widest = 0;
    for (QString const& label : Labels()) widest = std::max(widest, metrics.horizontalAdvance(label));
    return {2 * kSpace + kBarWidth + kSpace + widest + kSpace + metrics.height() + kSpace, 8 * metrics.height()};
}

void CColourBar::draw(QCPPainter* painter) {
    if (m_scale.IsEmpty()) return;
    QFontMetrics const metrics(mParentPlot->font());
    QColor const ink = mParentPlot->xAxis->labelColor();
    // Beside the axes, so that the bar stands as high as the map.
    QRect const area = mParentPlot->axisRect()->rect();
    QRectF const bar(mRect.left() + 2 * kSpace, area.top() + kArrow, kBarWidth, area.height() - 2.0 * kArrow);
    if (bar.height() < 2) return;
    painter->setFont(mParentPlot->font());
    painter->setPen(Qt::NoPen);
    painter->setAntialiasing(false);
    for (int i = 0; i < kColourClasses; ++i) {
        double const top = bar.bottom() - bar.height() * (i + 1) / kColourClasses;
        painter->setBrush(QColor::fromRgb(CColourScale::Colour(i)));
        painter->drawRect(QRectF(bar.left(), top, bar.width(), bar.height() / kColourClasses + 0.5));
    }
    painter->setAntialiasing(true);
    auto const arrow = [&](double from, double tip, int colourClass) {
        painter->setBrush(QColor::fromRgb(CColourScale::Colour(colourClass)));
        painter->drawPolygon(QPolygonF({{bar.left(), from}, {bar.right() - 1, from}, {bar.center().x(), tip}}));
    };
    if (m_scale.IsClippedAbove()) arrow(bar.top() - 1, bar.top() - kArrow + 1, kColourClasses - 1);
    if (m_scale.IsClippedBelow()) arrow(bar.bottom() + 1, bar.bottom() + kArrow - 1, 0);
    painter->setPen(ink);
    QStringList const labels = Labels();
    int widest = 0;
    double const left = bar.right() + kSpace;
    for (int i = 0; i < kLabels; ++i) {
        double const y = bar.bottom() - bar.height() * i / (kLabels - 1);
        painter->drawLine(QPointF(bar.right(), y), QPointF(bar.right() + 3, y));
        painter->drawText(QPointF(left, y + metrics.ascent() / 2.0 - 1), labels[i]);
        widest = std::max(widest, metrics.horizontalAdvance(labels[i]));
    }
    painter->save();
    painter->translate(left + widest + kSpace, bar.center().y());
    painter->rotate(90);
    painter->drawText(QRectF(-bar.height() / 2, -metrics.height(), bar.height(), metrics.height()),
                      Qt::AlignCenter | Qt::TextSingleLine, m_title);
    painter->restore();
}

}  // namespace norva
