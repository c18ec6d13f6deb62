#include "profile_plot.h"

#include "plot_style.h"
#include "reduce.h"

#include <algorithm>
#include <cmath>

namespace norva {

CProfilePlot::CProfilePlot(CStoreDocument& document, QWidget* parent)
    : QCustomPlot(parent), m_document(document), m_cursor(new QCPItemStraightLine(this)) {
    StylePlot(*this);
    setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
    axisRect()->setRangeDragAxes({xAxis}, {yAxis, yAxis2});
    axisRect()->setRangeZoomAxes({xAxis}, {yAxis, yAxis2});
    setMouseTracking(true);
    m_cursor->setPen(QPen(palette().color(QPalette::Highlight), 1, Qt::DashLine));
    m_cursor->setVisible(false);
    connect(xAxis, qOverload<QCPRange const&>(&QCPAxis::rangeChanged), this, [this] { Reduce(); });
    connect(this, &QCustomPlot::mouseDoubleClick, this, [this] { FitAll(); });
    setAccessibleName(tr("Profile plot: drag to pan, wheel to zoom, double click to see the whole line"));
}

void CProfilePlot::ShowLine(int line, std::vector<int> const& channels, int against) {
    clearPlottables();
    m_curves.clear();
    m_positions.clear();
    m_cursor->setVisible(false);
    m_line = line;
    legend->setVisible(channels.size() > 1);
    if (line < 0 || channels.empty()) {
        replot();
        return;
    }
    auto const entryOf = [this](int index) {
        for (ChannelEntry const& entry : m_document.Channels()) {
            if (entry.index == index) return entry;
        }
        return ChannelEntry{};
    };
    QString const firstUnits = entryOf(channels.front()).units;
    if (against >= 0) m_positions = m_document.Column(against, line, false);
    for (int const channel : channels) {
        Curve curve;
        ChannelEntry const entry = entryOf(channel);
        curve.name = entry.fullName;
        curve.values = m_document.Column(channel, line, true);
        // Other units have an axis of their own, on the right.
        curve.curve = new QCPCurve(xAxis, entry.units == firstUnits ? yAxis : yAxis2);
        curve.curve->setName(curve.name);
        curve.curve->setPen(QPen(CurveColour(static_cast<int>(m_curves.size())), 1.2));
        curve.curve->setAntialiased(curve.values.size() < 5000);
        if (curve.values.size() <= 200) curve.curve->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssDisc, 4));
        m_curves.push_back(std::move(curve));
    }
    xAxis->setLabel(against >= 0 ? entryOf(against).fullName : tr("Location"));
    for (QCPAxis* const axis : {yAxis, yAxis2}) {
        QStringList names;
        for (Curve const& curve : m_curves) {
            if (curve.curve->valueAxis() == axis) names << curve.name;
        }
        axis->setLabel(names.join(", "));
        axis->setVisible(axis == yAxis || !names.isEmpty());
    }
    FitAll();
}

void CProfilePlot::FitAll() {
    if (m_curves.empty()) return;
    auto const extend = [](std::vector<double> const& values, double& lowest, double& highest) {
        for (double const value : values) {
            if (!std::isfinite(value)) continue;
            lowest = std::min(lowest, value);
            highest = std::max(highest, value);
        }
    };
    double left = m_positions.empty() ? 0 : HUGE_VAL;
    double right = m_positions.empty() ? static_cast<double>(m_curves.front().values.size()) - 1 : -HUGE_VAL;
    extend(m_positions, left, right);
    if (!(left < right)) left -= 1, right += 1;
    for (QCPAxis* const axis : {yAxis, yAxis2}) {
        double bottom = HUGE_VAL;
        double top = -HUGE_VAL;
        for (Curve const& curve : m_curves) {
            if (curve.curve->valueAxis() == axis) extend(curve.values, bottom, top);
        }
        if (!(bottom <= top)) bottom = 0, top = 1;
        double const margin = top > bottom ? (top - bottom) * 0.05 : std::max(1.0, std::abs(top) * 0.01);
        axis->setRange(bottom - margin, top + margin);
    }
    QSignalBlocker const reducedOnce(xAxis);
    xAxis->setRange(left - (right - left) * 0.01, right + (right - left) * 0.01);
    Reduce();
    replot();
}

void CProfilePlot::Reduce() {
    QCPRange const range = xAxis->range();
    int const pixels = std::max(1, axisRect()->width());
    for (Curve& curve : m_curves) {
        ReducedLine const line = ReduceForPixels(m_positions, curve.values, range.lower, range.upper, pixels);
        curve.curve->setData(QVector<double>(line.x.begin(), line.x.end()),
                             QVector<double>(line.y.begin(), line.y.end()));
    }
}

double CProfilePlot::PositionOf(long location) const {
    if (m_positions.empty()) return static_cast<double>(location);
    return m_positions[static_cast<std::size_t>(location)];
}

long CProfilePlot::LocationAt(double x) const {
    if (m_curves.empty() || m_curves.front().values.empty()) return -1;
    long const count = static_cast<long>(m_curves.front().values.size());
    if (m_positions.empty()) return std::clamp(std::lround(x), 0L, count - 1);
    long nearest = -1;
    double distance = HUGE_VAL;
    for (long i = 0; i < count; ++i) {
        double const here = std::abs(m_positions[static_cast<std::size_t>(i)] - x);
        if (here < distance) {
            distance = here;
            nearest = i;
        }
    }
    return nearest;
}

void CProfilePlot::ShowCursor(long location) {
    if (m_curves.empty() || location < 0 || location >= static_cast<long>(m_curves.front().values.size())) return;
    double const x = PositionOf(location);
    if (std::isnan(x)) return;
    m_cursor->point1->setCoords(x, 0);
    m_cursor->point2->setCoords(x, 1);
    m_cursor->setVisible(true);
    replot(QCustomPlot::rpQueuedReplot);
}

void CProfilePlot::mouseMoveEvent(QMouseEvent* event) {
    QCustomPlot::mouseMoveEvent(event);
    long const location = LocationAt(xAxis->pixelToCoord(event->position().x()));
    if (location < 0) return;
    QString text = tr("location %1").arg(location);
    for (Curve const& curve : m_curves) {
        double const value = curve.values[static_cast<std::size_t>(location)];
        text += QString("   %1: %2").arg(curve.name, std::isnan(value) ? "*" : QString::number(value, 'g', 10));
    }
    emit Hovered(text);
}

void CProfilePlot::mouseReleaseEvent(QMouseEvent* event) {
    bool const click = (event->position().toPoint() - mMousePressPos).manhattanLength() < 4;
    QCustomPlot::mouseReleaseEvent(event);
    if (!click || event->button() != Qt::LeftButton) return;
    long const location = LocationAt(xAxis->pixelToCoord(event->position().x()));
    if (location < 0) return;
    ShowCursor(location);
    emit LocationChosen(location);
}

}  // namespace norva
