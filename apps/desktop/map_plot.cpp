#include "map_plot.h"

#include "colour_bar.h"
#include "map_image.h"
#include "plot_style.h"

#include <QApplication>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace norva {

namespace {

constexpr double kClickPixels = 8;
constexpr double kMetresADegree = 111'320;  ///< along a meridian
constexpr double kZoomStep = 1.4;
constexpr double kPanPart = 0.15;

QString Number(double value) {
    return QString::number(value, 'g', 12);
}

}  // namespace

CMapPlot::CMapPlot(CStoreDocument& document, QWidget* parent)
    : QCustomPlot(parent),
      m_document(document),
      m_bar(new CColourBar(this)),
      m_image(new CMapImage(*this)),
      m_ring(new QCPItemTracer(this)),
      m_notice(new QCPItemText(this)) {
    setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setNoAntialiasingOnDrag(false);
    plotLayout()->addElement(0, 1, m_bar);
    plotLayout()->setColumnStretchFactor(1, 0.001);
    m_ring->setStyle(QCPItemTracer::tsCircle);
    m_ring->setSize(16);
    m_ring->setVisible(false);
    m_notice->setPositionAlignment(Qt::AlignCenter);
    m_notice->position->setType(QCPItemPosition::ptAxisRectRatio);
    m_notice->position->setCoords(0.5, 0.5);
    Restyle();
    setAccessibleName(tr("Map of the lines: drag to pan, wheel to zoom, click a reading to choose it"));
    for (QCPAxis* const axis : {xAxis, yAxis}) {
        connect(axis, qOverload<QCPRange const&>(&QCPAxis::rangeChanged), this, [this] {
            if (!m_isSetting) m_isFitted = false;
            WishPicture();
        });
    }
    connect(this, &QCustomPlot::afterLayout, this, [this] { WishPicture(); });
    m_worker = std::make_unique<CMapWorker>([this](MapPicture picture) {
        auto const shared = std::make_shared<MapPicture>(std::move(picture));
        QMetaObject::invokeMethod(
            this, [this, shared] { Take(std::move(*shared)); }, Qt::QueuedConnection);
    });
}

CMapPlot::~CMapPlot() {
    m_worker.reset();
}

void CMapPlot::Restyle() {
    StylePlot(*this);
    m_notice->setColor(palette().color(QPalette::Text));
    m_ring->setPen(QPen(palette().color(QPalette::Text), 2));
}

void CMapPlot::changeEvent(QEvent* event) {
    QCustomPlot::changeEvent(event);
    if (event->type() != QEvent::PaletteChange || m_worker == nullptr) return;
    Restyle();
    WishPicture();
    replot(QCustomPlot::rpQueuedReplot);
}

void CMapPlot::ShowMap(int x, int y, int colour) {
    if (x != m_x || y != m_y) m_isFitted = true;
    m_x = x;
    m_y = y;
    m_colour = colour;
    ChannelEntry const* const east = m_document.FindChannel(x);
    ChannelEntry const* const north = m_document.FindChannel(y);
    bool const isKnown = east != nullptr && north != nullptr;
    m_kind = isKnown ? KindOfPositions(*east, *north) : PositionKind::Unknown;
    xAxis->setLabel(isKnown ? east->fullName : QString());
    yAxis->setLabel(isKnown ? north->fullName : QString());
    m_notice->setText(isKnown || !m_document.IsOpen() ? QString() : tr("Choose the channels of the positions above"));
    m_notice->setVisible(true);
    m_ring->setVisible(false);
    m_chosenLocation = -1;
    ++m_generation;
    m_picture = {};
    m_wished = {};
    if (isKnown) {
        long readings = 0;
        for (LineEntry const& line : m_document.Lines()) readings += line.locations;
        m_worker->SetSource({m_document.Path(), x, y, colour, m_document.Changes(), m_generation}, readings);
    }
    ShowColourBar();
    WishPicture();
    replot(QCustomPlot::rpQueuedReplot);
}

void CMapPlot::SetColours(ColourChoice const& choice) {
    m_worker->SetColours(choice);
}

void CMapPlot::ShowMedian(bool isMedian) {
    m_isMedian = isMedian;
    WishPicture();
}

void CMapPlot::MarkLine(int line) {
    if (line != m_chosenLine) m_ring->setVisible(false);
    m_chosenLine = line;
    WishPicture();
    replot(QCustomPlot::rpQueuedReplot);
}

void CMapPlot::MarkLocation(int line, long location) {
    m_chosenLine = line;
    m_chosenLocation = location;
    CMapData const* const data = m_picture.data.get();
    m_ring->setVisible(false);
    if (data != nullptr && !data->IsPreview() && line >= 0 && line < data->Lines()) {
        std::size_t const reading = data->FirstOf(line) + static_cast<std::size_t>(location);
        if (reading < data->FirstOf(line + 1) && data->HasPosition(reading)) {
            double const x = data->X(reading), y = data->Y(reading);
            m_ring->position->setCoords(x, y);
            m_ring->setVisible(true);
            if (!xAxis->range().contains(x)) xAxis->moveRange(x - xAxis->range().center());
            if (!yAxis->range().contains(y)) yAxis->moveRange(y - yAxis->range().center());
        }
    }
    WishPicture();
    replot(QCustomPlot::rpQueuedReplot);
}

/// Degrees of longitude that are as long as one of latitude; 1 for lengths.
double CMapPlot::RatioOfAxes() const {
    if (m_kind != PositionKind::Degrees) return 1;
    double const latitude = std::clamp(yAxis->range().center(), -85.0, 85.0);
    return 1 / std::cos(latitude * std::numbers::pi / 180);
}

void CMapPlot::FitAll() {
    m_isFitted = true;
    KeepAspect();
    replot(QCustomPlot::rpQueuedReplot);
}

void CMapPlot::KeepAspect() {
    CMapData const* const data = m_picture.data.get();
    if (data == nullptr || data->IsEmpty()) return;
    CMapData::Box const& box = data->Extent();
    double const larger = std::max(box.right - box.left, box.top - box.bottom);
    auto const padded = [larger](double from, double to) {
        double const margin = to > from ? (to - from) * 0.05 : larger > 0 ? larger * 0.05 : 1;
        return QCPRange(from - margin, to + margin);
    };
    m_isSetting = true;
    if (m_isFitted) {
        xAxis->setRange(padded(box.left, box.right));
        yAxis->setRange(padded(box.bottom, box.top));
    }
    if (m_kind != PositionKind::Unknown && axisRect()->width() > 1 && axisRect()->height() > 1) {
        // One metre is as long to the north as to the east.
        double const ratio = RatioOfAxes();
        double const perPixelX = xAxis->range().size() / axisRect()->width();
        double const perPixelY = yAxis->range().size() * ratio / axisRect()->height();
        if (perPixelX > perPixelY) {
            yAxis->setScaleRatio(xAxis, 1 / ratio);
        } else {
            xAxis->setScaleRatio(yAxis, ratio);
        }
    }
    m_isSetting = false;
}

MapView CMapPlot::ViewOf(QRect const& area, double ratio) const {
    MapView view;
    view.box = {xAxis->range().lower, xAxis->range().upper, yAxis->range().lower, yAxis->range().upper};
    view.width = static_cast<int>(std::lround(area.width() * ratio));
    view.height = static_cast<int>(std::lround(area.height() * ratio));
    view.ratio = ratio;
    view.isMedian = m_isMedian;
    view.chosenLine = m_chosenLine;
    view.track = palette().color(QPalette::Text);
    view.track.setAlpha(m_colour >= 0 ? 70 : 190);
    view.chosen = QColor(0xE6, 0x3B, 0x9A);  // a colour that the scale does not have
    return view;
}

void CMapPlot::WishPicture() {
    if (m_worker == nullptr || m_x < 0 || m_y < 0) return;
    MapView const view = ViewOf(axisRect()->rect(), bufferDevicePixelRatio());
    if (view.width < 2 || view.height < 2 || view == m_wished) return;
    m_wished = view;
    m_worker->SetView(view);
}

void CMapPlot::Take(MapPicture picture) {
    if (picture.generation != m_generation) return;
    bool const isNewData = picture.data != m_picture.data;
    m_picture = std::move(picture);
    bool const isEmpty = m_picture.data == nullptr || m_picture.data->IsEmpty();
    m_notice->setText(isEmpty ? tr("There are no positions in these channels") : QString());
    ShowColourBar();
    if (isNewData) {
        KeepAspect();
        if (m_chosenLocation >= 0) MarkLocation(m_chosenLine, m_chosenLocation);
    }
    emit ScaleChanged();
    replot(QCustomPlot::rpQueuedReplot);
}

void CMapPlot::ShowColourBar() {
    ChannelEntry const* const colour = m_document.FindChannel(m_colour);
    m_bar->Show(m_picture.scale, colour != nullptr ? colour->fullName : QString());
}

void CMapPlot::WaitUntilDrawn() {
    // The first picture gives the view, the layout the room, and only then the map is drawn as it stands.
    for (int turn = 0; turn < 4; ++turn) {
        m_worker->Wait();
        QCoreApplication::sendPostedEvents(this, QEvent::MetaCall);
        replot();
        KeepAspect();
        replot();
    }
}

QImage CMapPlot::DrawNow(MapView const& view) {
    if (m_picture.data == nullptr) return {};
    std::atomic<bool> const never{false};
    return DrawMap(*m_picture.data, ClassesOf(*m_picture.data, m_picture.scale), view, never);
}

double CMapPlot::ScaleBar(QString& text) const {
    if (m_kind == PositionKind::Unknown) return 0;
    ChannelEntry const* const east = m_document.FindChannel(m_x);
    bool const isDegrees = m_kind == PositionKind::Degrees;
    double const known = east != nullptr ? MetresOf(east->units) : 0;
    bool const isMetric = isDegrees || known == 1 || known == 1000;
    // Metres of one unit of the axis where they are known, else the bar counts in units.
    double const perUnit = isDegrees ? kMetresADegree / RatioOfAxes() : isMetric ? known : 1;
    double const room = xAxis->range().size() * perUnit / 4;
    if (!(room > 0) || !std::isfinite(room)) return 0;
    double const power = std::pow(10, std::floor(std::log10(room)));
    double length = power;
    for (double const step : {2.0, 5.0}) {
        if (step * power <= room) length = step * power;
    }
    if (isMetric) {
        text = length >= 1000 ? tr("%1 km").arg(Number(length / 1000)) : tr("%1 m").arg(Number(length));
    } else {
        text = east != nullptr && !east->units.isEmpty() ? Number(length) + " " + east->units : Number(length);
    }
    return length / perUnit;
}

void CMapPlot::resizeEvent(QResizeEvent* event) {
    QCustomPlot::resizeEvent(event);
    KeepAspect();
    WishPicture();
    replot(QCustomPlot::rpQueuedReplot);
}

long CMapPlot::ReadingAt(QPointF const& place) const {
    CMapData const* const data = m_picture.data.get();
    if (data == nullptr || data->IsPreview() || !axisRect()->rect().contains(place.toPoint())) return -1;
    double const reachX = kClickPixels * xAxis->range().size() / std::max(axisRect()->width(), 1);
    double const reachY = kClickPixels * yAxis->range().size() / std::max(axisRect()->height(), 1);
    return data->Nearest(xAxis->pixelToCoord(place.x()), yAxis->pixelToCoord(place.y()), reachX, reachY);
}

/// The line that passes nearest to a place between its readings; -1 when none is near.
int CMapPlot::LineAt(QPointF const& place) const {
    CMapData const* const data = m_picture.data.get();
    if (data == nullptr || data->IsPreview()) return -1;
    int nearest = -1;
    double distance = kClickPixels;
    for (int line = 0; line < data->Lines(); ++line) {
        QPointF last;
        bool hasLast = false;
        for (std::size_t i = data->FirstOf(line); i < data->FirstOf(line + 1); ++i) {
            if (!data->HasPosition(i)) {
                hasLast = false;
                continue;
            }
            QPointF const here(xAxis->coordToPixel(data->X(i)), yAxis->coordToPixel(data->Y(i)));
            if (hasLast) {
                double const away = std::sqrt(QCPVector2D(place).distanceSquaredToLine(QLineF(last, here)));
                if (away < distance) {
                    distance = away;
                    nearest = line;
                }
            }
            last = here;
            hasLast = true;
        }
    }
    return nearest;
}

void CMapPlot::mouseMoveEvent(QMouseEvent* event) {
    QCustomPlot::mouseMoveEvent(event);
    if (event->buttons() != Qt::NoButton) return;
    long const reading = ReadingAt(event->position());
    if (reading < 0) {
        emit Hovered({});
        return;
    }
    auto const at = static_cast<std::size_t>(reading);
    int const line = m_picture.data->LineOf(at);
    auto const location = static_cast<long>(at - m_picture.data->FirstOf(line));
    QString text =
        tr("line %1, location %2").arg(m_document.Lines()[static_cast<std::size_t>(line)].name).arg(location);
    for (int const channel : {m_x, m_y, m_colour}) {
        if (ChannelEntry const* const entry = m_document.FindChannel(channel)) {
            text += QString("   %1: %2").arg(entry->fullName, m_document.CellText(channel, line, location));
        }
    }
    emit Hovered(text);
}

void CMapPlot::mouseReleaseEvent(QMouseEvent* event) {
    bool const click = (event->position().toPoint() - mMousePressPos).manhattanLength() < 4;
    QCustomPlot::mouseReleaseEvent(event);
    if (!click || event->button() != Qt::LeftButton) return;
    if (long const reading = ReadingAt(event->position()); reading >= 0) {
        auto const at = static_cast<std::size_t>(reading);
        int const line = m_picture.data->LineOf(at);
        emit ReadingChosen(line, static_cast<long>(at - m_picture.data->FirstOf(line)));
        return;
    }
    if (int const line = LineAt(event->position()); line >= 0) emit LineChosen(line);
}

void CMapPlot::mouseDoubleClickEvent(QMouseEvent* event) {
    QCustomPlot::mouseDoubleClickEvent(event);
    FitAll();
}

void CMapPlot::keyPressEvent(QKeyEvent* event) {
    auto const zoom = [this](double factor) {
        xAxis->scaleRange(factor);
        yAxis->scaleRange(factor);
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
            xAxis->moveRange(-kPanPart * xAxis->range().size());
            break;
        case Qt::Key_Right:
            xAxis->moveRange(kPanPart * xAxis->range().size());
            break;
        case Qt::Key_Up:
            yAxis->moveRange(kPanPart * yAxis->range().size());
            break;
        case Qt::Key_Down:
            yAxis->moveRange(-kPanPart * yAxis->range().size());
            break;
        case Qt::Key_Home:
        case Qt::Key_0:
            FitAll();
            break;
        default:
            QCustomPlot::keyPressEvent(event);
            return;
    }
    replot(QCustomPlot::rpQueuedReplot);
}

}  // namespace norva
