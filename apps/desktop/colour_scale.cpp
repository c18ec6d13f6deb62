#include "colour_scale.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace norva {

namespace {

constexpr double kOuterPart = 0.01;

std::array<QRgb, kColourClasses> MakeColours() {
    // Lightness grows evenly, so that a high is never taken for a low: "viridis" (van der Walt and Smith, 2015).
    constexpr QRgb kStops[] = {0xFF440154, 0xFF472D7B, 0xFF3B528B, 0xFF2C728E, 0xFF21918C,
                               0xFF28AE80, 0xFF5EC962, 0xFFADDC30, 0xFFFDE725};
    std::array<QRgb, kColourClasses> colours{};
    constexpr int kSteps = static_cast<int>(std::size(kStops)) - 1;
    for (int i = 0; i < kColourClasses; ++i) {
        double const place = static_cast<double>(i) * kSteps / (kColourClasses - 1);
        int const stop = std::min(static_cast<int>(place), kSteps - 1);
        double const part = place - stop;
        auto const mix = [part](int from, int to) { return static_cast<int>(std::lround(from + part * (to - from))); };
        QRgb const a = kStops[stop], b = kStops[stop + 1];
        colours[static_cast<std::size_t>(i)] =
            qRgb(mix(qRed(a), qRed(b)), mix(qGreen(a), qGreen(b)), mix(qBlue(a), qBlue(b)));
    }
    return colours;
}

}  // namespace

CColourScale::CColourScale(ColourChoice const& choice, std::vector<float> const& sorted) {
    if (sorted.empty()) return;
    double const lowest = sorted.front();
    double const highest = sorted.back();
    m_bounds.resize(kColourClasses + 1);
    if (choice.mode == ColourChoice::Mode::EqualArea) {
        double const last = static_cast<double>(sorted.size() - 1);
        for (int i = 0; i <= kColourClasses; ++i) {
            double const part = kOuterPart + (1 - 2 * kOuterPart) * i / kColourClasses;
            double const at = part * last;
            auto const below = static_cast<std::size_t>(at);
            double const next = sorted[std::min(below + 1, sorted.size() - 1)];
            m_bounds[static_cast<std::size_t>(i)] =
                sorted[below] + (at - static_cast<double>(below)) * (next - sorted[below]);
        }
    } else {
        bool const isTyped = choice.mode == ColourChoice::Mode::Limits && choice.from < choice.to;
        double const from = isTyped ? choice.from : lowest;
        double const to = isTyped ? choice.to : highest > lowest ? highest : lowest + 1;
        for (int i = 0; i <= kColourClasses; ++i) {
            m_bounds[static_cast<std::size_t>(i)] = from + (to - from) * i / kColourClasses;
        }
    }
    m_isClippedBelow = lowest < m_bounds.front();
    m_isClippedAbove = highest > m_bounds.back();
}

int CColourScale::ClassOf(float value) const {
    // Equal bounds, where many readings have one value: it takes the middle of their colours.
    auto const [first, last] = std::equal_range(m_bounds.begin(), m_bounds.end(), static_cast<double>(value));
    auto const below = (first - m_bounds.begin()) + (last - m_bounds.begin());
    return static_cast<int>(std::clamp<std::ptrdiff_t>((below - 1) / 2, 0, kColourClasses - 1));
}

double CColourScale::ValueAt(double part) const {
    double const at = std::clamp(part, 0.0, 1.0) * kColourClasses;
    auto const below = std::min(static_cast<std::size_t>(at), std::size_t{kColourClasses - 1});
    return m_bounds[below] + (at - static_cast<double>(below)) * (m_bounds[below + 1] - m_bounds[below]);
}

QRgb CColourScale::Colour(int colourClass) {
    static std::array<QRgb, kColourClasses> const colours = MakeColours();
    return colours[static_cast<std::size_t>(std::clamp(colourClass, 0, kColourClasses - 1))];
}

}  // namespace norva
