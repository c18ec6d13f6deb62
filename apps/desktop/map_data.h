#pragma once

#include "store_changes.h"

#include <QString>

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

namespace norva {

/// Which readings a map is made of.
struct MapSource {
    QString path;
    int x = -1;  ///< channel indexes
    int y = -1;
    int colour = -1;  ///< -1: positions alone
    StoreChanges changes{};
    unsigned generation = 0;  ///< tells this source from those before
};

/// The readings of a map, by line and location, and an index to find those of a region. Never changed once made, so
/// that threads may share it.
class CMapData {
public:
    struct Box {
        double left, right, bottom, top;
    };

    /// Reads the store on its own. With `step` above 1 only every step-th block is read, for a first picture; null
    /// when the store cannot be read, or when `stop` was set.
    static std::shared_ptr<CMapData const> Read(MapSource const& source, int step, std::atomic<bool> const& stop);

    std::size_t Size() const { return m_x.size(); }
    bool IsPreview() const { return m_isPreview; }
    double X(std::size_t i) const { return m_x[i]; }
    double Y(std::size_t i) const { return m_y[i]; }
    bool HasPosition(std::size_t i) const;
    /// Empty when the map has no colours; NaN where there is no value.
    std::vector<float> const& Values() const { return m_values; }
    /// Ascending values that stand for all of them, the lowest and the highest among them.
    std::vector<float> const& SortedSample() const { return m_sample; }

    int Lines() const { return static_cast<int>(m_lines.size()); }
    /// First reading of a line; that of the line after the last is Size().
    std::size_t FirstOf(int line) const;
    int LineOf(std::size_t reading) const;
    /// Around a line's readings; left > right when it has none.
    Box const& BoxOf(int line) const { return m_lines[static_cast<std::size_t>(line)].box; }
    /// A step between neighbours that is no gap, in units of the positions.
    double LongestStep(int line) const { return m_lines[static_cast<std::size_t>(line)].longestStep; }
    Box const& Extent() const { return m_extent; }
    bool IsEmpty() const { return !(m_extent.left <= m_extent.right); }

    /// Calls `take(reading)` for the readings of all cells that touch the box, a cell's in ascending order.
    template <typename Take>
    void ForEachIn(Box const& box, Take&& take) const {
        if (IsEmpty()) return;
        int const left = ColumnOf(box.left), right = ColumnOf(box.right);
        int const bottom = RowOf(box.bottom), top = RowOf(box.top);
        for (int row = bottom; row <= top; ++row) {
            std::uint32_t const begin = m_cells[CellAt(left, row)];
            std::uint32_t const end = m_cells[CellAt(right, row) + 1];
            for (std::uint32_t i = begin; i < end; ++i) take(std::size_t{m_order[i]});
        }
    }
    /// The reading nearest to a place, in the ellipse of these half axes around it; -1 when there is none.
    long Nearest(double x, double y, double reachX, double reachY) const;

private:
    struct Line {
        std::size_t first;
        Box box;
        double longestStep;
    };

    void MeasureLine(Line& line, std::size_t end);
    void TakeSample();
    void BuildIndex();
    int ColumnOf(double x) const;
    int RowOf(double y) const;
    std::size_t CellAt(int column, int row) const {
        return static_cast<std::size_t>(row) * static_cast<std::size_t>(m_columns) + static_cast<std::size_t>(column);
    }

    std::vector<double> m_x;
    std::vector<double> m_y;
    std::vector<float> m_values;
    std::vector<float> m_sample;
    std::vector<Line> m_lines;
    Box m_extent{};
    bool m_isPreview = false;
    int m_columns = 1;  ///< cells
    int m_rows = 1;
    double m_perCellX = 1;
    double m_perCellY = 1;
    std::vector<std::uint32_t> m_cells;  ///< begin of every cell in m_order, and the end of the last
    std::vector<std::uint32_t> m_order;
};

}  // namespace norva
