#include "map_picture.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace norva {

namespace {

constexpr std::int16_t kEmpty = -2;    ///< no reading in the pixel
constexpr std::int16_t kNoValue = -1;  ///< readings without a value

/// A picture of classes, a pixel each.
class CMapDrawing {
public:
    CMapDrawing(CMapData const& data, std::vector<std::int16_t> const& classes, MapView const& view)
        : m_data(data),
          m_classes(classes),
          m_view(view),
          m_perX(view.width / (view.box.right - view.box.left)),
          m_perY(view.height / (view.box.top - view.box.bottom)),
          m_pixels(static_cast<std::size_t>(view.width) * static_cast<std::size_t>(view.height), kEmpty) {}

    /// Takes all readings that `forEach` names and gives every pixel its class.
    template <typename ForEach>
    void Collect(ForEach&& forEach) {
        std::fill(m_pixels.begin(), m_pixels.end(), kEmpty);
        m_occupied.clear();
        if (m_classes.empty()) {
            forEach([this](std::size_t reading) { Occupy(PixelOf(reading), kNoValue); });
        } else if (m_view.isMedian) {
            CollectMedians(forEach);
        } else {
            CollectLast(forEach);
        }
    }
    std::size_t Occupied() const { return m_occupied.size(); }

    /// Discs around the occupied pixels; a pixel belongs to the nearest.
    void Stamp(QImage& image, int radius, QRgb noValue) const {
        std::vector<std::int16_t> covered = m_pixels;
        struct Offset {
            int x, y;
        };
        std::vector<Offset> offsets;
        for (int y = -radius; y <= radius; ++y) {
            for (int x = -radius; x <= radius; ++x) {
                if (x * x + y * y <= radius * radius + radius / 2) offsets.push_back({x, y});
            }
        }
        std::sort(offsets.begin(), offsets.end(),
                  [](Offset a, Offset b) { return a.x * a.x + a.y * a.y < b.x * b.x + b.y * b.y; });
        for (Offset const offset : offsets) {
            for (std::size_t const pixel : m_occupied) {
                int const x = static_cast<int>(pixel % static_cast<std::size_t>(m_view.width)) + offset.x;
                int const y = static_cast<int>(pixel / static_cast<std::size_t>(m_view.width)) + offset.y;
                if (x < 0 || y < 0 || x >= m_view.width || y >= m_view.height) continue;
                std::int16_t& here = covered[At(x, y)];
                if (here == kEmpty) here = m_pixels[pixel];
            }
        }
        for (int y = 0; y < m_view.height; ++y) {
            auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
            for (int x = 0; x < m_view.width; ++x) {
                std::int16_t const here = covered[At(x, y)];
                if (here != kEmpty) row[x] = here == kNoValue ? noValue : CColourScale::Colour(here);
            }
        }
    }

    /// The line between the readings, broken at gaps.
    void DrawTrack(QPainter& painter, int line) const {
        CMapData::Box const& box = m_data.BoxOf(line);
        if (box.right < m_view.box.left || box.left > m_view.box.right || box.top < m_view.box.bottom ||
            box.bottom > m_view.box.top) {
            return;
        }
        QPolygonF piece;
        bool isLastSeen = false;
        auto const flush = [&painter, &piece] {
            if (piece.size() > 1) painter.drawPolyline(piece);
            if (piece.size() == 1) painter.drawPoint(piece.front());
            piece.clear();
        };
        std::size_t last = 0;
        for (std::size_t i = m_data.FirstOf(line); i < m_data.FirstOf(line + 1); ++i) {
            if (!m_data.HasPosition(i)) {
                flush();
                continue;
            }
            QPointF const place = PlaceOf(i);
            // Far outside there is nothing to draw, and coordinates that a painter cannot count in.
            bool const isSeen = place.x() > -m_view.width && place.x() < 2.0 * m_view.width &&
                                place.y() > -m_view.height && place.y() < 2.0 * m_view.height;
            if (!piece.isEmpty()) {
                bool const isGap =
                    std::hypot(m_data.X(i) - m_data.X(last), m_data.Y(i) - m_data.Y(last)) > m_data.LongestStep(line);
                if (isGap || (!isSeen && !isLastSeen)) flush();
            }
            if (isSeen || isLastSeen) {
                bool const isMoved = piece.isEmpty() || (place - piece.back()).manhattanLength() >= 0.75;
                if (isMoved) piece << place;
                if (piece.size() >= kPieceOfTrack) {
                    QPointF const end = piece.back();
                    flush();
                    piece << end;
                }
            }
            isLastSeen = isSeen;
            last = i;
        }
        flush();
    }

private:
    static constexpr qsizetype kPieceOfTrack = 4096;
    static constexpr std::size_t kOutside = ~std::size_t{0};

    std::size_t At(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(m_view.width) + static_cast<std::size_t>(x);
    }
    QPointF PlaceOf(std::size_t reading) const {
        return {(m_data.X(reading) - m_view.box.left) * m_perX, (m_view.box.top - m_data.Y(reading)) * m_perY};
    }
    std::size_t PixelOf(std::size_t reading) const {
        QPointF const place = PlaceOf(reading);
        if (!(place.x() >= 0 && place.y() >= 0 && place.x() < m_view.width && place.y() < m_view.height)) {
            return kOutside;
        }
        return At(static_cast<int>(place.x()), static_cast<int>(place.y()));
    }
    void Occupy(std::size_t pixel, std::int16_t colourClass) {
        if (pixel == kOutside) return;
        if (m_pixels[pixel] == kEmpty) m_occupied.push_back(pixel);
        m_pixels[pixel] = std::max(m_pixels[pixel], colourClass);
    }

    template <typename ForEach>
    void CollectLast(ForEach&& forEach) {
        std::vector<std::uint32_t> last(m_pixels.size(), 0);
        forEach([&](std::size_t reading) {
            std::size_t const pixel = PixelOf(reading);
            if (pixel == kOutside) return;
            Occupy(pixel, kNoValue);
            if (m_classes[reading] != kNoValue) {
                last[pixel] = std::max(last[pixel], static_cast<std::uint32_t>(reading) + 1);
            }
        });
        for (std::size_t const pixel : m_occupied) {
            if (last[pixel] > 0) m_pixels[pixel] = m_classes[last[pixel] - 1];
        }
    }

    template <typename ForEach>
    void CollectMedians(ForEach&& forEach) {
        std::vector<std::uint32_t> ends(m_pixels.size() + 1, 0);
        struct Hit {
            std::uint32_t pixel;
            std::uint8_t colourClass;
        };
        std::vector<Hit> hits;
        forEach([&](std::size_t reading) {
            std::size_t const pixel = PixelOf(reading);
            if (pixel == kOutside) return;
            Occupy(pixel, kNoValue);
            if (m_classes[reading] == kNoValue) return;
            ++ends[pixel + 1];
            hits.push_back({static_cast<std::uint32_t>(pixel), static_cast<std::uint8_t>(m_classes[reading])});
        });
        for (std::size_t pixel = 1; pixel < ends.size(); ++pixel) ends[pixel] += ends[pixel - 1];
        std::vector<std::uint8_t> sorted(hits.size());
        std::vector<std::uint32_t> next(ends.begin(), ends.end() - 1);
        for (Hit const& hit : hits) sorted[next[hit.pixel]++] = hit.colourClass;
        for (std::size_t const pixel : m_occupied) {
            auto const begin = sorted.begin() + ends[pixel];
            auto const end = sorted.begin() + ends[pixel + 1];
            if (begin == end) continue;
            auto const middle = begin + (end - begin - 1) / 2;
            std::nth_element(begin, middle, end);
            m_pixels[pixel] = *middle;
        }
    }

    CMapData const& m_data;
    std::vector<std::int16_t> const& m_classes;
    MapView const& m_view;
    double m_perX;
    double m_perY;
    std::vector<std::int16_t> m_pixels;
    std::vector<std::size_t> m_occupied;
};

/// Discs as large as the readings leave room for, in device pixels.
int RadiusFor(std::size_t occupied, MapView const& view) {
    double const area = static_cast<double>(view.width) * view.height / (view.ratio * view.ratio);
    double const part = static_cast<double>(occupied) / std::max(area, 1.0);
    double const radius = part < 0.005 ? 3 : part < 0.02 ? 2 : part < 0.06 ? 1 : 0;
    return static_cast<int>(std::lround(radius * view.ratio));
}

}  // namespace

std::vector<std::int16_t> ClassesOf(CMapData const& data, CColourScale const& scale) {
    std::vector<std::int16_t> classes;
    if (scale.IsEmpty()) return classes;
    classes.reserve(data.Values().size());
    for (float const value : data.Values()) {
        classes.push_back(std::isfinite(value) ? static_cast<std::int16_t>(scale.ClassOf(value)) : kNoValue);
    }
    return classes;
}

QImage DrawMap(CMapData const& data, std::vector<std::int16_t> const& classes, MapView const& view,
               std::atomic<bool> const& stop) {
    QImage image(std::max(view.width, 1), std::max(view.height, 1), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    if (data.IsEmpty() || view.width < 1 || view.height < 1 || !(view.box.left < view.box.right) ||
        !(view.box.bottom < view.box.top)) {
        return image;
    }
    CMapDrawing drawing(data, classes, view);
    drawing.Collect([&](auto const& take) { data.ForEachIn(view.box, take); });
    if (stop) return image;
    int const radius = RadiusFor(drawing.Occupied(), view);
    bool const hasColours = !classes.empty();
    // A preview has only some pieces of the lines, which nothing joins.
    bool const drawsTracks = !data.IsPreview() && (!hasColours || radius > 0);
    if (drawsTracks) {
        QPainter painter(&image);
        painter.setPen(QPen(view.track, view.ratio));
        for (int line = 0; line < data.Lines() && !stop; ++line) drawing.DrawTrack(painter, line);
    }
    QRgb const noValue = qPremultiply(view.track.rgba());
    if (hasColours || radius > 0 || !drawsTracks) drawing.Stamp(image, hasColours ? radius : radius / 2, noValue);
    if (view.chosenLine < 0 || view.chosenLine >= data.Lines() || data.IsPreview() || stop) return image;
    {
        QPainter painter(&image);
        painter.setPen(QPen(view.chosen, 2 * radius + 4 * view.ratio, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        drawing.DrawTrack(painter, view.chosenLine);
    }
    if (hasColours) {
        drawing.Collect([&](auto const& take) {
            for (std::size_t i = data.FirstOf(view.chosenLine); i < data.FirstOf(view.chosenLine + 1); ++i) {
                if (data.HasPosition(i)) take(i);
            }
        });
        drawing.Stamp(image, radius, noValue);
    }
    return image;
}

}  // namespace norva
