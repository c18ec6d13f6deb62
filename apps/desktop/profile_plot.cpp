#include "profile_plot.h"

#include "gaps.h"
#include "plot_style.h"
#include "reduce.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace norva {

namespace {

constexpr int kMostPanels = 8;
constexpr int kMostCurves = 24;
constexpr std::size_t kPointsWithDots = 200;  ///< lines of no more have a dot at every value
constexpr std::size_t kPointsSmoothed = 5000;

QVector<double> ToVector(std::vector<double> const& values) {
    return {values.begin(), values.end()};
}

/// The points that stand alone between gaps.
void TakeIsolated(ReducedLine const& line, QVector<double>& xs, QVector<double>& ys) {
    auto const isGap = [&line](std::size_t i) { return i >= line.y.size() || std::isnan(line.y[i]); };
    for (std::size_t i = 0; i < line.y.size(); ++i) {
        if (!isGap(i) && (i == 0 || isGap(i - 1)) && isGap(i + 1)) {
            xs << line.x[i];
            ys << line.y[i];
        }
    }
}

}  // namespace

CProfilePlot::CProfilePlot(CStoreDocument& document, QWidget* parent)
    : QCustomPlot(parent), m_document(document), m_margins(new QCPMarginGroup(this)) {
    setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAutoAddPlottableToLegend(false);
    plotLayout()->clear();
    legend = new QCPLegend;
    plotLayout()->addElement(0, 0, legend);
    legend->setLayer("legend");
    plotLayout()->setRowSpacing(2);
    StylePlot(*this);
    setAccessibleName(
        tr("Profile plot: drag or arrow keys to pan, wheel or + and - to zoom, Home to see the whole line"));
    Clear();
}

CProfilePlot::~CProfilePlot() = default;

void CProfilePlot::Clear() {
    clearPlottables();
    clearItems();
    m_curves.clear();
    m_tracks.clear();
    m_panels.clear();
    m_leftOut.clear();
    legend->clearItems();
    if (legend->layout() == plotLayout()) plotLayout()->take(legend);
    plotLayout()->clear();
    legend->setVisible(false);
}

QCPAxis* CProfilePlot::XAxis() const {
    return m_panels.empty() ? nullptr : m_panels.back().rect->axis(QCPAxis::atBottom);
}

int CProfilePlot::PanelFor(QString const& units, int line, ChannelEntry const& channel) {
    for (std::size_t i = 0; i < m_panels.size(); ++i) {
        if (m_panels[i].units == units && m_panels[i].line == line) return static_cast<int>(i);
    }
    if (m_panels.size() >= kMostPanels) return -1;
    auto* const rect = new QCPAxisRect(this, true);
    plotLayout()->addElement(static_cast<int>(m_panels.size()), 0, rect);
    rect->setMarginGroup(QCP::msLeft | QCP::msRight, m_margins);
    rect->setMinimumMargins(QMargins(8, 6, 12, 4));
    rect->setMinimumSize(60, 30);
    for (QCPAxis* const axis : rect->axes()) {
        axis->setLayer("axes");
        axis->grid()->setLayer("grid");
        StyleAxis(*axis);
    }
    QCPAxis* const x = rect->axis(QCPAxis::atBottom);
    QCPAxis* const y = rect->axis(QCPAxis::atLeft);
    rect->axis(QCPAxis::atTop)->setVisible(false);
    rect->axis(QCPAxis::atRight)->setVisible(false);
    x->setTicker(TickerFor(m_document.FindChannel(m_choice.against)));
    y->setTicker(TickerFor(&channel));
    rect->setRangeDragAxes(x, y);
    rect->setRangeZoomAxes(x, y);
    connect(x, qOverload<QCPRange const&>(&QCPAxis::rangeChanged), this, [this, x] { ShareRange(x); });
    auto* const cursor = new QCPItemStraightLine(this);
    cursor->setClipAxisRect(rect);
    for (QCPItemPosition* const point : {cursor->point1, cursor->point2}) {
        point->setAxes(x, y);
        point->setAxisRect(rect);
    }
    cursor->setPen(QPen(palette().color(QPalette::Highlight), 1.5, Qt::DashLine));
    cursor->setVisible(false);
    m_panels.push_back({units, line, {}, rect, cursor});
    return static_cast<int>(m_panels.size()) - 1;
}

void CProfilePlot::AddCurve(Track const& track, ChannelEntry const& channel) {
    bool const areMany = m_choice.lines.size() > 1;
    QString const units = channel.displayFormat >= DisplayFormat::kTime ? channel.fullName : channel.units;
    int const place =
        m_curves.size() >= kMostCurves ? -1 : PanelFor(units, areMany && m_choice.isStacked ? track.line : -1, channel);
    QString const lineName = m_document.Lines()[static_cast<std::size_t>(track.line)].name;
    QString const name = areMany ? tr("%1: %2").arg(lineName, channel.fullName) : channel.fullName;
    if (place < 0) {
        m_leftOut += m_leftOut.isEmpty() ? tr("No room for %1").arg(name) : ", " + name;
        return;
    }
    PanelOfUnits& panel = m_panels[static_cast<std::size_t>(place)];
    QString const label = areMany && m_choice.isStacked ? name : channel.fullName;
    if (!panel.title.split(", ").contains(label)) panel.title += (panel.title.isEmpty() ? "" : ", ") + label;

    double const infinity = std::numeric_limits<double>::infinity();
    Curve curve{name,     &track,    channel.index, m_document.Column(channel.index, track.line, false),
                infinity, -infinity, place,         nullptr,
                nullptr,  nullptr};
    for (double const value : curve.values) {
        if (!std::isfinite(value)) continue;
        curve.lowest = std::min(curve.lowest, value);
        curve.highest = std::max(curve.highest, value);
    }
    QCPAxis* const x = panel.rect->axis(QCPAxis::atBottom);
    QCPAxis* const y = panel.rect->axis(QCPAxis::atLeft);
    int const inPanel = static_cast<int>(
        std::count_if(m_curves.begin(), m_curves.end(), [place](Curve const& other) { return other.panel == place; }));
    // Stacked lines show a channel in one colour; curves of one panel never share one.
    int const shade = m_choice.isStacked && areMany ? inPanel : static_cast<int>(m_curves.size());
    QColor const colour = CurveColour(shade);
    QColor grey = palette().color(QPalette::Disabled, QPalette::Text);
    auto const add = [&](QColor const& ink, double dot) {
        auto* const part = new QCPCurve(x, y);
        part->setName(name);
        part->setPen(QPen(ink, 1.2));
        if (dot > 0) part->setScatterStyle(QCPScatterStyle(QCPScatterStyle::ssDisc, dot));
        part->setAntialiased(curve.values.size() < kPointsSmoothed);
        part->setAntialiasedScatters(true);
        return part;
    };
    curve.deleted = add(grey, 3);
    curve.deleted->setLineStyle(QCPCurve::lsNone);
    curve.line = add(colour, curve.values.size() <= kPointsWithDots ? 4 : 0);
    curve.dots = add(colour, 3);
    curve.dots->setLineStyle(QCPCurve::lsNone);
    curve.line->addToLegend(legend);
    m_curves.push_back(std::move(curve));
}

void CProfilePlot::Show(ProfileChoice const& choice, bool keepsView) {
    std::vector<QCPRange> ranges;
    if (keepsView && choice == m_choice) {
        for (Limits const& limits : CurrentLimits()) ranges.push_back(limits.range);
    }
    Clear();
    m_choice = choice;
    for (int const line : choice.lines) {
        if (line < 0 || choice.channels.empty()) continue;
        auto track = std::make_unique<Track>();
        track->line = line;
        track->locations = m_document.Lines()[static_cast<std::size_t>(line)].locations;
        track->positions = PositionsAlong(m_document, line, choice.against);
        track->deleted = m_document.DeletedMarks(line);
        std::vector<double> const& at = track->positions;
        track->isAscending = std::none_of(at.begin(), at.end(), [](double x) { return std::isnan(x); }) &&
                             std::is_sorted(at.begin(), at.end());
        track->longestStep = LongestUsualStep(at.size(), [&at](std::size_t i) { return std::abs(at[i + 1] - at[i]); });
        for (int const channel : choice.channels) {
            ChannelEntry const* const entry = m_document.FindChannel(channel);
            if (entry != nullptr && entry->isNumber) AddCurve(*track, *entry);
        }
        m_tracks.push_back(std::move(track));
    }
    for (PanelOfUnits const& panel : m_panels) {
        bool const isLast = &panel == &m_panels.back();
        QCPAxis* const x = panel.rect->axis(QCPAxis::atBottom);
        x->setTickLabels(isLast);
        x->setLabel(isLast ? TitleOfAxis(m_document, choice.against) : QString());
        panel.rect->axis(QCPAxis::atLeft)->setLabel(panel.title);
    }
    ArrangeLegend();
    StylePlot(*this);
    replot();  // lays the panels out, which says how many pixels a curve has
    if (ranges.size() == m_panels.size() + 1) {
        SetLimits(ranges);
    } else {
        FitAll();
    }
    if (m_cursor >= 0) ShowCursor(m_cursorLine, m_cursor);
}

void CProfilePlot::ArrangeLegend() {
    if (m_curves.size() < 2) return;
    int widest = 1;
    for (Curve const& curve : m_curves) widest = std::max(widest, fontMetrics().horizontalAdvance(curve.name));
    legend->setVisible(true);
    legend->setFillOrder(QCPLayoutGrid::foColumnsFirst);
    legend->setWrap(std::max(1, (width() - 40) / (widest + 60)));
    legend->setRowSpacing(0);
    legend->setMargins(QMargins(8, 0, 8, 0));
    int const row = plotLayout()->rowCount();
    plotLayout()->addElement(row, 0, legend);
    plotLayout()->setRowStretchFactor(row, 0.001);
}

void CProfilePlot::FitAll() {
    QCPAxis* const x = XAxis();
    if (x == nullptr) return;
    double left = HUGE_VAL;
    double right = -HUGE_VAL;
    for (auto const& track : m_tracks) {
        if (track->positions.empty()) {
            left = std::min(left, 0.0);
            right = std::max(right, static_cast<double>(track->locations) - 1);
        }
        for (double const at : track->positions) {
            if (!std::isfinite(at)) continue;
            left = std::min(left, at);
            right = std::max(right, at);
        }
    }
    if (!(left <= right)) left = 0, right = 0;
    if (!(left < right)) left -= 1, right += 1;
    for (std::size_t i = 0; i < m_panels.size(); ++i) {
        double bottom = HUGE_VAL;
        double top = -HUGE_VAL;
        for (Curve const& curve : m_curves) {
            if (curve.panel != static_cast<int>(i)) continue;
            bottom = std::min(bottom, curve.lowest);
            top = std::max(top, curve.highest);
        }
        if (!(bottom <= top)) bottom = 0, top = 1;
        double const margin = top > bottom ? (top - bottom) * 0.05 : std::max(1.0, std::abs(top) * 0.01);
        m_panels[i].rect->axis(QCPAxis::atLeft)->setRange(bottom - margin, top + margin);
    }
    x->setRange(left - (right - left) * 0.01, right + (right - left) * 0.01);
    ShareRange(x);
    replot();
}

std::vector<CProfilePlot::Limits> CProfilePlot::CurrentLimits() const {
    std::vector<Limits> limits;
    if (m_panels.empty()) return limits;
    limits.push_back({XAxis()->label(), XAxis()->range()});
    for (PanelOfUnits const& panel : m_panels) {
        limits.push_back({panel.title, panel.rect->axis(QCPAxis::atLeft)->range()});
    }
    return limits;
}

void CProfilePlot::SetLimits(std::vector<QCPRange> const& ranges) {
    if (ranges.size() != m_panels.size() + 1) return;
    for (std::size_t i = 0; i < m_panels.size(); ++i) m_panels[i].rect->axis(QCPAxis::atLeft)->setRange(ranges[i + 1]);
    XAxis()->setRange(ranges.front());
    ShareRange(XAxis());
    replot();
}

void CProfilePlot::ShareRange(QCPAxis* from) {
    if (m_isSharing) return;
    m_isSharing = true;
    for (PanelOfUnits const& panel : m_panels) {
        QCPAxis* const axis = panel.rect->axis(QCPAxis::atBottom);
        if (axis != from) axis->setRange(from->range());
    }
    m_isSharing = false;
    Reduce();
}

void CProfilePlot::Reduce() {
    if (m_panels.empty()) return;
    QCPRange const range = XAxis()->range();
    int const pixels = std::max(1, m_panels.back().rect->width());
    std::vector<double> shown;
    std::vector<double> deleted;
    for (Curve& curve : m_curves) {
        Track const& track = *curve.track;
        std::vector<double> const* values = &curve.values;
        if (!track.deleted.empty()) {
            shown = curve.values;
            deleted.assign(shown.size(), std::numeric_limits<double>::quiet_NaN());
            for (std::size_t i = 0; i < shown.size(); ++i) {
                if (track.deleted[i]) std::swap(shown[i], deleted[i]);
            }
            values = &shown;
            ReducedLine const grey = ReduceForPixels(track.positions, deleted, range.lower, range.upper, pixels);
            curve.deleted->setData(ToVector(grey.x), ToVector(grey.y));
        }
        ReducedLine const line =
            ReduceForPixels(track.positions, *values, range.lower, range.upper, pixels, track.longestStep);
        QVector<double> xs;
        QVector<double> ys;
        TakeIsolated(line, xs, ys);
        curve.line->setData(ToVector(line.x), ToVector(line.y));
        curve.dots->setData(xs, ys);
    }
}

double CProfilePlot::PositionOf(Track const& track, long location) const {
    if (track.positions.empty()) return static_cast<double>(location);
    return track.positions[static_cast<std::size_t>(location)];
}

long CProfilePlot::LocationAt(Track const& track, double x) const {
    if (track.locations == 0) return -1;
    if (track.positions.empty()) return std::clamp(std::lround(x), 0L, track.locations - 1);
    std::vector<double> const& at = track.positions;
    if (track.isAscending) {
        auto const after = std::lower_bound(at.begin(), at.end(), x);
        if (after == at.begin()) return 0;
        if (after == at.end()) return track.locations - 1;
        return static_cast<long>(after - at.begin()) - (x - *(after - 1) < *after - x ? 1 : 0);
    }
    long nearest = -1;
    double distance = HUGE_VAL;
    for (std::size_t i = 0; i < at.size(); ++i) {
        double const here = std::abs(at[i] - x);
        if (here < distance) {
            distance = here;
            nearest = static_cast<long>(i);
        }
    }
    return nearest;
}

/// The curve of the panel at a place that runs nearest to it, and its location there.
CProfilePlot::Curve const* CProfilePlot::CurveAt(QPointF const& place, long& location) const {
    Curve const* nearest = nullptr;
    double distance = HUGE_VAL;
    for (Curve const& curve : m_curves) {
        QCPAxisRect const* const rect = m_panels[static_cast<std::size_t>(curve.panel)].rect;
        if (!rect->rect().contains(place.toPoint())) continue;
        long const here = LocationAt(*curve.track, XAxis()->pixelToCoord(place.x()));
        if (here < 0) continue;
        double const value = curve.values[static_cast<std::size_t>(here)];
        double const away =
            std::isnan(value) ? 1e6 : std::abs(rect->axis(QCPAxis::atLeft)->coordToPixel(value) - place.y());
        if (nearest != nullptr && away >= distance) continue;
        nearest = &curve;
        distance = away;
        location = here;
    }
    return nearest;
}

void CProfilePlot::ShowCursor(int line, long location) {
    m_cursorLine = line;
    m_cursor = location;
    for (PanelOfUnits const& panel : m_panels) panel.cursor->setVisible(false);
    for (auto const& track : m_tracks) {
        if (track->line != line || location < 0 || location >= track->locations) continue;
        double const x = PositionOf(*track, location);
        if (std::isnan(x)) continue;
        for (PanelOfUnits const& panel : m_panels) {
            if (panel.line >= 0 && panel.line != line) continue;
            panel.cursor->point1->setCoords(x, 0);
            panel.cursor->point2->setCoords(x, 1);
            panel.cursor->setVisible(true);
        }
    }
    replot(QCustomPlot::rpQueuedReplot);
}

void CProfilePlot::mouseMoveEvent(QMouseEvent* event) {
    QCustomPlot::mouseMoveEvent(event);
    long location = -1;
    Curve const* const nearest = CurveAt(event->position(), location);
    if (nearest == nullptr) return;
    int const line = nearest->track->line;
    QString text =
        tr("line %1, location %2").arg(m_document.Lines()[static_cast<std::size_t>(line)].name).arg(location);
    if (ChannelEntry const* const against = m_document.FindChannel(m_choice.against)) {
        text += QString("   %1: %2").arg(against->fullName, m_document.CellText(against->index, line, location));
    } else if (m_choice.against == kAgainstDistance) {
        text += QString("   %1: %2")
                    .arg(TitleOfAxis(m_document, kAgainstDistance),
                         QString::number(PositionOf(*nearest->track, location), 'f', 1));
    }
    for (Curve const& curve : m_curves) {
        if (curve.track->line != line) continue;
        QString const name = m_document.FindChannel(curve.channel)->fullName;
        text += QString("   %1: %2").arg(name, m_document.CellText(curve.channel, line, location));
    }
    emit Hovered(text);
}

void CProfilePlot::mouseReleaseEvent(QMouseEvent* event) {
    bool const click = (event->position().toPoint() - mMousePressPos).manhattanLength() < 4;
    QCustomPlot::mouseReleaseEvent(event);
    long location = -1;
    if (!click || event->button() != Qt::LeftButton) return;
    Curve const* const nearest = CurveAt(event->position(), location);
    if (nearest == nullptr) return;
    int const line = nearest->track->line;
    ShowCursor(line, location);
    emit LocationChosen(line, location);
}

void CProfilePlot::mouseDoubleClickEvent(QMouseEvent* event) {
    QCustomPlot::mouseDoubleClickEvent(event);
    bool const isInPanel = std::any_of(m_panels.begin(), m_panels.end(), [event](PanelOfUnits const& panel) {
        return panel.rect->rect().contains(event->position().toPoint());
    });
    if (isInPanel) {
        FitAll();
    } else if (!m_panels.empty()) {
        emit LimitsWished();
    }
}

void CProfilePlot::keyPressEvent(QKeyEvent* event) {
    QCPAxis* const x = XAxis();
    if (x == nullptr) return QCustomPlot::keyPressEvent(event);
    constexpr double kZoomStep = 1.4;
    constexpr double kPanPart = 0.15;
    bool const isVertical = event->modifiers().testFlag(Qt::ControlModifier);
    auto const forValues = [this](auto const& change) {
        for (PanelOfUnits const& panel : m_panels) change(*panel.rect->axis(QCPAxis::atLeft));
    };
    auto const zoom = [&](double factor) {
        if (!isVertical) return x->scaleRange(factor);
        forValues([factor](QCPAxis& axis) { axis.scaleRange(factor); });
    };
    auto const pan = [&](double part) {
        forValues([part](QCPAxis& axis) { axis.moveRange(part * axis.range().size()); });
    };
    switch (event->key()) {
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            zoom(1 / kZoomStep);
            break;
        case Qt::Key_Minus:
            zoom(kZoomStep);
            break;
        case Qt::Key_Left:
            x->moveRange(-kPanPart * x->range().size());
            break;
        case Qt::Key_Right:
            x->moveRange(kPanPart * x->range().size());
            break;
        case Qt::Key_Up:
            pan(kPanPart);
            break;
        case Qt::Key_Down:
            pan(-kPanPart);
            break;
        case Qt::Key_Home:
        case Qt::Key_0:
            FitAll();
            return;
        default:
            QCustomPlot::keyPressEvent(event);
            return;
    }
    replot(QCustomPlot::rpQueuedReplot);
}

void CProfilePlot::resizeEvent(QResizeEvent* event) {
    QCustomPlot::resizeEvent(event);
    Reduce();
    replot(QCustomPlot::rpQueuedReplot);
}

void CProfilePlot::changeEvent(QEvent* event) {
    QCustomPlot::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) Show(ProfileChoice(m_choice), true);
}

}  // namespace norva
