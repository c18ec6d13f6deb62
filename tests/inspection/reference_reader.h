#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace norva::test {

/// Cells of a line without quotes, the plain way: what any other reader has to agree with.
inline std::vector<std::string> PlainCells(std::string_view line, char separator) {
    std::vector<std::string> cells;
    std::string cell;
    bool const byGaps = separator == ' ';
    auto const isGap = [](char c) { return c == ' ' || c == '\t'; };
    auto const end = [&] {
        std::size_t first = 0;
        std::size_t last = cell.size();
        while (first < last && isGap(cell[first])) ++first;
        while (first < last && isGap(cell[last - 1])) --last;
        if (!byGaps || first < last) cells.push_back(cell.substr(first, last - first));
        cell.clear();
    };
    for (char const c : line) {
        if (byGaps ? isGap(c) : c == separator) {
            end();
        } else {
            cell += c;
        }
    }
    end();
    return cells;
}

}  // namespace norva::test
