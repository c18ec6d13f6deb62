#include "inspection/missing_numbers.h"

#include "platform/numbers.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace norva {

namespace {

constexpr double kBeyond = 1e30;
/// So many spreads of the other values outside of them.
constexpr double kSpreadsApart = 2;

enum class Place { Alone, Apart, Outside, Near, Inside };

/// Where a number stands among the others of its column.
Place PlaceOf(double value, ValueRange const& others) {
    if (std::fabs(value) >= kBeyond) return Place::Apart;
    if (!others.IsSet()) return Place::Alone;
    bool const isOtherSign = value < 0 ? others.low >= 0 : others.high < 0;
    if (isOtherSign) return Place::Apart;
    if (value >= others.low && value <= others.high) return Place::Inside;
    double const distance = value > others.high ? value - others.high : others.low - value;
    // A counter that goes on: 9997, 9998, 9999.
    if (distance <= 1) return Place::Near;
    return distance > kSpreadsApart * (others.high - others.low) ? Place::Apart : Place::Outside;
}

std::string RangeText(ValueRange const& range) {
    std::string text = "others ";
    AppendShortest(text, range.low);
    text += " to ";
    AppendShortest(text, range.high);
    return text;
}

bool IsAmong(double value, std::vector<double> const& values) {
    return std::find(values.begin(), values.end(), value) != values.end();
}

}  // namespace

std::vector<MissingNumbers> FindMissingNumbers(std::vector<CColumnFacts> const& columns,
                                               InspectionOptions const& options) {
    std::map<double, std::uint64_t> inTable;
    for (CColumnFacts const& column : columns) {
        for (DummySeen const& dummy : column.dummies) inTable[dummy.value] += dummy.count;
    }
    std::map<double, int> accepted;  // columns that each is missing in
    std::vector<MissingNumbers> found(columns.size());
    std::vector<std::vector<DummySeen>> alone(columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i) {
        CColumnFacts const& column = columns[i];
        ValueRange others = column.Range();
        // Numbers of that shape that are ordinary values of the column stand among the others.
        std::vector<DummySeen> sorted = column.dummies;
        std::sort(sorted.begin(), sorted.end(),
                  [](DummySeen const& a, DummySeen const& b) { return std::fabs(a.value) < std::fabs(b.value); });
        for (DummySeen const& dummy : sorted) {
            if (IsAmong(dummy.value, options.noData)) {
                found[i].missing.push_back(dummy);
                continue;
            }
            Place const place = PlaceOf(dummy.value, others);
            bool const isRepeated = inTable[dummy.value] >= 2;
            if (place == Place::Alone) {
                alone[i].push_back(dummy);
            } else if (place == Place::Apart && isRepeated) {
                found[i].missing.push_back(dummy);
                ++accepted[dummy.value];
            } else {
                found[i].kept.push_back(dummy);
                if (place == Place::Apart || place == Place::Outside) {
                    found[i].doubts.push_back({dummy, (isRepeated ? "comes " + std::to_string(dummy.count) + " times, "
                                                                  : "once in the table, ") +
                                                          std::string("outside of the ") + RangeText(others) +
                                                          ": it looks like a mark of missing values"});
                }
                if (place == Place::Near) others.Add(dummy.value);
            }
        }
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        for (DummySeen const& dummy : alone[i]) {
            if (accepted[dummy.value] >= 2 || (accepted[dummy.value] == 1 && dummy.count >= 2)) {
                found[i].missing.push_back(dummy);
                continue;
            }
            found[i].kept.push_back(dummy);
            found[i].doubts.push_back({dummy, "the only value of the column: it looks like a mark of missing values"});
        }
    }
    return found;
}

}  // namespace norva
