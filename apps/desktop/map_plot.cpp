#include "map_plot.h"

#include "plot_style.h"

#include <algorithm>
#include <cmath>

namespace norva {

namespace {

constexpr int kColourClasses = 32;
constexpr std::size_t kMostPoints = 200'000;  ///< per map; more than its pixels need
constexpr double kClickPixels = 8;

}  // namespace

CMapPlot::CMapPlot(CStoreDocument& document, QWidget* parent)
    : QCustomPlot(parent), m_document(document), m_scale(new QCPColorScale(this)) {
    StylePlot(*this);
    setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
    m_scale->setType(QCPAxis::atRight);
    // Lightness runs one way, so that a high is never taken for a low: "viridis" (van der Walt and Smith, 2015).
    QCPColorGradient gradient;
    gradient.setColorStops({{0.0, QColor(0x44, 0x01, 0x54)},
                            {0.25, QColor(0x3B, 0x52, 0x8B)},
                            {0.5, QColor(0x21, 0x91, 0x8C)},
                            {0.75, QColor(0x5E, 0xC9, 0x62)},
                            {1.0, QColor(0xFD, 0xE7, 0x25)}});
    m_scale->setGradient(gradient);
    m_scale->axis()->setTickLabelColor(palette().color(QPalette::Text));
    m_scale->axis()->setLabelColor(palette().color(QPalette::Text));
    m_scale->setVisible(false);
    setAccessibleName(tr("Map of the lines: drag to pan, wheel to zoom, click a line to choose it"));
}

void CMapPlot::ShowMap(int x, int y, int colour) {
    clearPlottables();
    m_tracks.clear();
    bool any = false;
    QCPRange rangeX;
    QCPRange rangeY;
    for (std::size_t line = 0; line < m_document.Lines().size() && x >= 0 && y >= 0; ++line) {
        if (m_document.Lines()[line].flag != 0) continue;
        int const number = static_cast<int>(line);
        Track track{number, m_document.Column(x, number, true), m_document.Column(y, number, true), nullptr};
        for (std::size_t i = 0; i < track.x.size(); ++i) {
            if (!std::isfinite(track.x[i]) || !std::isfinite(track.y[i])) continue;
            QCPRange const hereX(track.x[i], track.x[i]);
            QCPRange const hereY(track.y[i], track.y[i]);
            rangeX = any ? rangeX.expanded(hereX) : hereX;
            rangeY = any ? rangeY.expanded(hereY) : hereY;
            any = true;
        }
        m_tracks.push_back(std::move(track));
    }
    std::size_t total = 0;
    for (Track const& track : m_tracks) total += track.x.size();
    std::size_t const step = total / kMostPoints + 1;
    QColor grey = palette().color(QPalette::Text);
    grey.setAlpha(colour >= 0 ? 70 : 200);
    for (Track& track : m_tracks) {
        QVector<double> xs;
        QVector<double> ys;
        for (std::size_t i = 0; i < track.x.size(); i += step) {
            xs << track.x[i];
            ys << track.y[i];
        }
        track.curve = new QCPCurve(xAxis, yAxis);
        track.curve->setPen(QPen(grey, 1));
        track.curve->setData(xs, ys);
    }
    m_scale->setVisible(colour >= 0);
    if (colour >= 0) {
        if (!plotLayout()->hasElement(0, 1)) plotLayout()->addElement(0, 1, m_scale);
        DrawColours(colour);
    } else if (plotLayout()->hasElement(0, 1)) {
        plotLayout()->take(m_scale);
        plotLayout()->simplify();
    }
    QString units[2];
    for (ChannelEntry const& entry : m_document.Channels()) {
        if (entry.index == x) xAxis->setLabel(entry.fullName), units[0] = entry.units;
        if (entry.index == y) yAxis->setLabel(entry.fullName), units[1] = entry.units;
        if (entry.index == colour) m_scale->axis()->setLabel(entry.fullName);
    }
    m_metric = units[0] == units[1];
    m_x = rangeX;
    m_y = rangeY;
    KeepAspect();
    replot();
}

void CMapPlot::DrawColours(int colour) {
    std::vector<std::vector<double>> values;
    std::vector<double> sorted;
    for (Track const& track : m_tracks) {
        values.push_back(m_document.Column(colour, track.line, true));
        for (double const value : values.back()) {
            if (std::isfinite(value)) sorted.push_back(value);
        }
    }
    if (sorted.empty()) return;
    // The outer two percent share the end colours: one spike must not make all the rest look alike.
    auto const quantile = [&sorted](double part) {
        auto const at = sorted.begin() + static_cast<long>(part * static_cast<double>(sorted.size() - 1));
        std::nth_element(sorted.begin(), at, sorted.end());
        return *at;
    };
    double const lowest = quantile(0.01);
    double const highest = quantile(0.99);
    double const span = highest > lowest ? highest - lowest : 1;
    m_scale->setDataRange(QCPRange(lowest, lowest + span));

    std::vector<QVector<double>> xs(kColourClasses);
    std::vector<QVector<double>> ys(kColourClasses);
    std::size_t const step = sorted.size() / kMostPoints + 1;
    for (std::size_t t = 0; t < m_tracks.size(); ++t) {
        Track const& track = m_tracks[t];
        for (std::size_t i = 0; i < track.x.size(); i += step) {
            double const value = values[t][i];
            if (!std::isfinite(value) || !std::isfinite(track.x[i]) || !std::isfinite(track.y[i])) continue;
            auto const place = static_cast<std::size_t>(
                std::clamp((value - lowest) / span * kColourClasses, 0.0, kColourClasses - 1.0));
            xs[place] << track.x[i];
            ys[place] << track.y[i];
        }
    }
    QCPColorGradient gradient = m_scale->gradient();
    for (int i = 0; i < kColourClasses; ++i) {
        auto* const points = new QCPCurve(xAxis, yAxis);
        points->setLineStyle(QCPCurve::lsNone);
        QColor const fill = QColor::fromRgb(gradient.color(i + 0.5, QCPRange(0, kColourClasses)));
        points->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssDisc, fill, fill, 6));
        points->setData(xs[static_cast<std::size_t>(i)], ys[static_cast<std::size_t>(i)]);
    }
}

void CMapPlot::MarkLine(int line) {
    for (Track const& track : m_tracks) {
        QPen pen = track.curve->pen();
        pen.setWidthF(track.line == line ? 3 : 1);
        track.curve->setPen(pen);
    }
    replot(QCustomPlot::rpQueuedReplot);
}

void CMapPlot::KeepAspect() {
    auto const padded = [](QCPRange const& range) {
        double const margin = range.size() > 0 ? range.size() * 0.05 : 1;
        return QCPRange(range.lower - margin, range.upper + margin);
    };
    xAxis->setRange(padded(m_x));
    yAxis->setRange(padded(m_y));
    if (!m_metric || axisRect()->width() < 2 || axisRect()->height() < 2) return;
    // One metre is as long to the north as to the east.
    double const perPixelX = xAxis->range().size() / axisRect()->width();
    double const perPixelY = yAxis->range().size() / axisRect()->height();
    if (perPixelX > perPixelY) {
        yAxis->setScaleRatio(xAxis, 1);
    } else {
        xAxis->setScaleRatio(yAxis, 1);
    }
}

void CMapPlot::resizeEvent(QResizeEvent* event) {
    QCustomPlot::resizeEvent(event);
    KeepAspect();
    replot(QCustomPlot::rpQueuedReplot);
}

void CMapPlot::mouseReleaseEvent(QMouseEvent* event) {
    bool const click = (event->position().toPoint() - mMousePressPos).manhattanLength() < 4;
    QCustomPlot::mouseReleaseEvent(event);
    if (!click || event->button() != Qt::LeftButton) return;
    int nearest = -1;
    double distance = kClickPixels;
    for (Track const& track : m_tracks) {
        double const here = track.curve->selectTest(event->position(), false);
        double const pixels = here < 0 ? HUGE_VAL : here;
        if (pixels < distance) {
            distance = pixels;
            nearest = track.line;
        }
    }
    if (nearest >= 0) emit LineChosen(nearest);
}

}  // namespace norva
