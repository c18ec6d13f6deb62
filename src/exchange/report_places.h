#pragma once

#include "norva/import_report.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace norva {

/// How many places of each finding the import that runs on this thread keeps.
std::size_t MostPlaces();

/// Sets that number for as long as it lives.
class CMostPlacesScope {
public:
    explicit CMostPlacesScope(std::size_t most);
    CMostPlacesScope(CMostPlacesScope const&) = delete;
    CMostPlacesScope& operator=(CMostPlacesScope const&) = delete;
    ~CMostPlacesScope();

private:
    std::size_t m_before;
};

/// Counts one more finding, with its place as long as places are kept.
void AddFinding(ReportFinding& finding, std::uint64_t line, std::uint64_t column, std::string_view text);

}  // namespace norva
