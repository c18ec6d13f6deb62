#include "map_data.h"

#include "common/store_column.h"
#include "gaps.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace norva {

namespace {

constexpr long kBlock = 16 * 1024;
constexpr std::size_t kSample = 1 << 18;
constexpr double kReadingsACell = 16;
constexpr double kMostCells = 1024;  ///< in either direction
constexpr double kMissing = std::numeric_limits<double>::quiet_NaN();

void Extend(CMapData::Box& box, double x, double y) {
    box.left = std::min(box.left, x);
    box.right = std::max(box.right, x);
    box.bottom = std::min(box.bottom, y);
    box.top = std::max(box.top, y);
}

}  // namespace

std::shared_ptr<CMapData const> CMapData::Read(MapSource const& source, int step, std::atomic<bool> const& stop) {
    CNorvaFileUtil store;
    if (source.x < 0 || source.y < 0 || store.SetFileName(source.path.toStdString(), kReopenStore, nullptr) == 0) {
        return nullptr;
    }
    auto data = std::make_shared<CMapData>();
    data->m_isPreview = step > 1;
    CColumnReader reader(store);
    std::vector<double> xs(kBlock), ys(kBlock), values(kBlock);
    long blocks = 0;
    for (int number = 0; number < store.ProfileCount; ++number) {
        constexpr double kNone = std::numeric_limits<double>::infinity();
        Line line{data->m_x.size(), {kNone, -kNone, kNone, -kNone}, kNone};
        std::string name;
        long count = 0;
        int flag = 0;
        store.GetProfileInfo(number, name, count, flag);
        if (auto const changed = source.changes.flags.find(number); changed != source.changes.flags.end()) {
            flag = changed->second;
        }
        StoreChanges::Marks const* const marks = source.changes.MarksOf(number);
        bool const anyDeleted = marks != nullptr || store.GetProfileLocationNum(number, 1) != count;
        for (long first = 0; first < count; first += kBlock) {
            if (stop) return nullptr;
            if (step > 1 && blocks++ % step != 0) continue;
            long const piece = std::min(kBlock, count - first);
            auto const size = static_cast<std::size_t>(piece);
            if (flag != 0) {  // a hidden line keeps its places, so that readings are found by their number
                std::fill_n(xs.begin(), piece, kMissing);
            } else if (!reader.Read(source.x, number, first, piece, xs.data()) ||
                       !reader.Read(source.y, number, first, piece, ys.data()) ||
                       (source.colour >= 0 && !reader.Read(source.colour, number, first, piece, values.data()))) {
                return nullptr;
            }
            if (anyDeleted && flag == 0) {
                for (long i = 0; i < piece; ++i) {
                    bool const isDeleted = marks != nullptr ? (*marks)[static_cast<std::size_t>(first + i)]
                                                            : store.IsLocMarkedToDelete(number, first + i) != 0;
                    if (isDeleted) xs[static_cast<std::size_t>(i)] = kMissing;
                }
            }
            data->m_x.insert(data->m_x.end(), xs.begin(), xs.begin() + piece);
            data->m_y.insert(data->m_y.end(), ys.begin(), ys.begin() + piece);
            if (source.colour < 0) continue;
            std::size_t const before = data->m_values.size();
            data->m_values.resize(before + size);
            for (std::size_t i = 0; i < size; ++i) data->m_values[before + i] = static_cast<float>(values[i]);
        }
        data->MeasureLine(line, data->m_x.size());
        data->m_lines.push_back(line);
    }
    if (data->m_x.size() > std::numeric_limits<std::uint32_t>::max()) return nullptr;
    data->TakeSample();
    if (stop) return nullptr;
    data->BuildIndex();
    return data;
}

bool CMapData::HasPosition(std::size_t i) const {
    return std::isfinite(m_x[i]) && std::isfinite(m_y[i]);
}

std::size_t CMapData::FirstOf(int line) const {
    auto const place = static_cast<std::size_t>(line);
    return place < m_lines.size() ? m_lines[place].first : m_x.size();
}

int CMapData::LineOf(std::size_t reading) const {
    auto const after = std::upper_bound(m_lines.begin(), m_lines.end(), reading,
                                        [](std::size_t value, Line const& line) { return value < line.first; });
    return static_cast<int>(after - m_lines.begin()) - 1;
}

void CMapData::MeasureLine(Line& line, std::size_t end) {
    for (std::size_t i = line.first; i < end; ++i) {
        if (HasPosition(i)) Extend(line.box, m_x[i], m_y[i]);
    }
    line.longestStep = LongestUsualStep(end - line.first, [this, &line](std::size_t i) {
        std::size_t const at = line.first + i;
        return std::hypot(m_x[at + 1] - m_x[at], m_y[at + 1] - m_y[at]);
    });
}

void CMapData::TakeSample() {
    if (m_values.empty()) return;
    float lowest = std::numeric_limits<float>::infinity();
    float highest = -lowest;
    std::size_t const step = m_values.size() / kSample + 1;
    for (std::size_t i = 0; i < m_values.size(); ++i) {
        if (!std::isfinite(m_values[i]) || !HasPosition(i)) continue;
        lowest = std::min(lowest, m_values[i]);
        highest = std::max(highest, m_values[i]);
        if (i % step == 0) m_sample.push_back(m_values[i]);
    }
    if (!(lowest <= highest)) return;
    m_sample.push_back(lowest);
    m_sample.push_back(highest);
    std::sort(m_sample.begin(), m_sample.end());
}

void CMapData::BuildIndex() {
    constexpr double kNone = std::numeric_limits<double>::infinity();
    m_extent = {kNone, -kNone, kNone, -kNone};
    for (Line const& line : m_lines) {
        if (!(line.box.left <= line.box.right)) continue;
        Extend(m_extent, line.box.left, line.box.bottom);
        Extend(m_extent, line.box.right, line.box.top);
    }
    if (IsEmpty()) return;
    double const side = std::clamp(std::sqrt(static_cast<double>(m_x.size()) / kReadingsACell), 1.0, kMostCells);
    m_columns = m_rows = static_cast<int>(side);
    auto const perCell = [](double from, double to, int cells) { return to > from ? (to - from) / cells : 1.0; };
    m_perCellX = perCell(m_extent.left, m_extent.right, m_columns);
    m_perCellY = perCell(m_extent.bottom, m_extent.top, m_rows);
    m_cells.assign(CellAt(0, m_rows) + 1, 0);
    constexpr std::uint32_t kNowhere = std::numeric_limits<std::uint32_t>::max();
    std::vector<std::uint32_t> cellOf(m_x.size(), kNowhere);
    for (std::size_t i = 0; i < m_x.size(); ++i) {
        if (!HasPosition(i)) continue;
        std::size_t const cell = CellAt(ColumnOf(m_x[i]), RowOf(m_y[i]));
        cellOf[i] = static_cast<std::uint32_t>(cell);
        ++m_cells[cell + 1];
    }
    for (std::size_t cell = 1; cell < m_cells.size(); ++cell) m_cells[cell] += m_cells[cell - 1];
    m_order.resize(m_cells.back());
    std::vector<std::uint32_t> next(m_cells.begin(), m_cells.end() - 1);
    for (std::size_t i = 0; i < m_x.size(); ++i) {
        if (cellOf[i] != kNowhere) m_order[next[cellOf[i]]++] = static_cast<std::uint32_t>(i);
    }
}

int CMapData::ColumnOf(double x) const {
    return static_cast<int>(std::clamp(std::floor((x - m_extent.left) / m_perCellX), 0.0, m_columns - 1.0));
}

int CMapData::RowOf(double y) const {
    return static_cast<int>(std::clamp(std::floor((y - m_extent.bottom) / m_perCellY), 0.0, m_rows - 1.0));
}

long CMapData::Nearest(double x, double y, double reachX, double reachY) const {
    long nearest = -1;
    double distance = 1;
    ForEachIn({x - reachX, x + reachX, y - reachY, y + reachY}, [&](std::size_t i) {
        double const here = std::hypot((m_x[i] - x) / reachX, (m_y[i] - y) / reachY);
        if (here < distance || (here == distance && nearest >= 0)) {  // of several in one place the last, as drawn
            distance = here;
            nearest = static_cast<long>(i);
        }
    });
    return nearest;
}

}  // namespace norva
