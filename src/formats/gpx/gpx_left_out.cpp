#include "formats/gpx/gpx_left_out.h"

#include <algorithm>

namespace norva {

void CLeftOutValues::Add(std::string_view name) {
    constexpr std::size_t mostNames = 32;
    if (name.starts_with('/')) return;
    auto found = std::ranges::find(m_names, name, &decltype(m_names)::value_type::first);
    if (found == m_names.end()) {
        if (m_names.size() == mostNames) {
            --found;
            found->first = "others";
        } else {
            found = m_names.insert(found, {std::string(name), 0});
        }
    }
    ++found->second;
}

void CLeftOutValues::Report(ImportReport& report) const {
    for (auto const& [name, count] : m_names) {
        report.leftOut.count += count;
        report.settings.push_back({"left out: " + name, std::to_string(count)});
    }
}

std::string CLeftOutValues::Names() const {
    std::string text;
    for (auto const& [name, count] : m_names) text += (text.empty() ? "" : ", ") + name + " " + std::to_string(count);
    return text;
}

void ReportPoints(std::uint64_t points, std::uint64_t rows, std::uint64_t leftOut, ImportReport& report) {
    std::uint64_t const cut = points - rows - leftOut;
    report.unit = "points";
    report.unitsRead = points;
    report.parts = {{"points", rows, report.bytesRead},
                    {"points without coordinates or end", leftOut, 0},
                    {"points that the file ends in", cut, 0}};
    report.leftOut.count = leftOut;
    report.cutRecords.count = cut;
}

}  // namespace norva
