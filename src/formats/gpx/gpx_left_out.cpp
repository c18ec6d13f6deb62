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

}  // namespace norva
