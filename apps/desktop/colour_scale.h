#pragma once

#include <QColor>

#include <vector>

namespace norva {

inline constexpr int kColourClasses = 256;

/// How values become colours.
struct ColourChoice {
    enum class Mode {
        EqualArea,  ///< every colour for as many readings; the outer hundredths share the end colours
        Linear,     ///< from the lowest value to the highest
        Limits,     ///< from `from` to `to`
    };
    Mode mode = Mode::EqualArea;
    double from = 0;
    double to = 1;

    bool operator==(ColourChoice const&) const = default;
};

/// Values in classes of colour.
class CColourScale {
public:
    CColourScale() = default;
    /// `sorted` is ascending and stands for all values.
    CColourScale(ColourChoice const& choice, std::vector<float> const& sorted);

    bool IsEmpty() const { return m_bounds.empty(); }
    /// 0 to kColourClasses - 1.
    int ClassOf(float value) const;
    /// The value at a part (0 to 1) of the bar.
    double ValueAt(double part) const;
    /// Whether some values lie beyond the end and share its colour.
    bool IsClippedBelow() const { return m_isClippedBelow; }
    bool IsClippedAbove() const { return m_isClippedAbove; }

    static QRgb Colour(int colourClass);

private:
    std::vector<double> m_bounds;  ///< kColourClasses + 1, ascending
    bool m_isClippedBelow = false;
    bool m_isClippedAbove = false;
};

}  // namespace norva
