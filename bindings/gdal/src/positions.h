#pragma once

#include "survey_store.h"

#include <ogr_spatialref.h>

#include <string>

namespace norva::gdal {

/// What open options say of positions; empty where they say nothing.
struct PositionOptions {
    std::string x;
    std::string y;
    std::string z;
    std::string crs;
};

/// Which channels say where a location is, and in which reference system.
class CPositions {
public:
    CPositions() = default;
    CPositions(CPositions const&) = delete;
    CPositions& operator=(CPositions const&) = delete;
    ~CPositions();

    /// False with the reason when a channel or a reference system that was asked for is not there.
    bool Choose(CSurveyStore const& store, PositionOptions const& options, std::string& reason);

    bool HasAny() const { return m_x != nullptr; }
    bool HasZ() const { return m_z != nullptr; }
    /// Null when unknown; owned here.
    OGRSpatialReference* Reference() const { return m_reference; }
    /// False when the location has no position.
    bool At(std::int64_t location, double& x, double& y) const {
        x = m_x->Number(location);
        y = m_y->Number(location);
        return x == x && y == y;
    }
    /// NaN for no-data.
    double Height(std::int64_t location) const { return m_z->Number(location); }
    /// Length of a step in metres where positions are longitude and latitude, else in their own units.
    double Step(double fromX, double fromY, double toX, double toY) const;

private:
    bool ChooseByName(CSurveyStore const& store);

    SurveyChannel const* m_x = nullptr;
    SurveyChannel const* m_y = nullptr;
    SurveyChannel const* m_z = nullptr;
    OGRSpatialReference* m_reference = nullptr;  ///< counts its users
    bool m_isGeographic = false;
};

}  // namespace norva::gdal
