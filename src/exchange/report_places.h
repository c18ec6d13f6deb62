#pragma once

#include <cstddef>

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

}  // namespace norva
