#include "positions.h"

#include <geodesic.h>

#include <array>
#include <cmath>
#include <utility>

namespace norva::gdal {

namespace {

struct NamePair {
    char const* x;
    char const* y;
    bool isGeographic;
};

/// In the order in which they are looked for: what names its reference system comes first.
constexpr std::array<NamePair, 12> kNames = {{
    {"Longitude", "Latitude", true},
    {"Lon", "Lat", true},
    {"Long", "Lat", true},
    {"Lon_WGS84", "Lat_WGS84", true},
    {"GPS_Lon", "GPS_Lat", true},
    {"X", "Y", false},
    {"Easting", "Northing", false},
    {"East", "North", false},
    {"E", "N", false},
    {"UTM_X", "UTM_Y", false},
    {"UTME", "UTMN", false},
    {"UTM_E", "UTM_N", false},
}};

constexpr int kWgs84 = 4326;

}  // namespace

CPositions::~CPositions() {
    if (m_reference != nullptr) m_reference->Release();
}

bool CPositions::ChooseByName(CSurveyStore const& store) {
    for (NamePair const& names : kNames) {
        int const x = store.FindChannel(names.x);
        int const y = store.FindChannel(names.y);
        if (x < 0 || y < 0) continue;
        m_x = &store.Channels()[static_cast<std::size_t>(x)];
        m_y = &store.Channels()[static_cast<std::size_t>(y)];
        if (m_x->IsText() || m_y->IsText()) continue;
        m_isGeographic = names.isGeographic;
        return true;
    }
    m_x = m_y = nullptr;
    return false;
}

bool CPositions::Choose(CSurveyStore const& store, PositionOptions const& options, std::string& reason) {
    auto const find = [&](char const* option, std::string const& name, SurveyChannel const*& channel) {
        if (name.empty()) return true;
        int const found = store.FindChannel(name);
        if (found >= 0) channel = &store.Channels()[static_cast<std::size_t>(found)];
        if (found < 0 || channel->IsText()) {
            reason = std::string("option ") + option + ": there is no channel of numbers called \"" + name + "\"";
            return false;
        }
        return true;
    };
    if (options.x.empty() != options.y.empty()) {
        reason = "the options X and Y go together";
        return false;
    }
    if (!find("X", options.x, m_x) || !find("Y", options.y, m_y) || !find("Z", options.z, m_z)) return false;
    if (m_x == nullptr) {
        ChooseByName(store);
    } else {
        m_isGeographic = m_x->displayFormat == DisplayFormat::kGeographic;
    }
    if (m_x == nullptr) return true;
    if (options.crs.empty() && !m_isGeographic) return true;

    m_reference = new OGRSpatialReference();
    m_reference->SetAxisMappingStrategy(OAMS_TRADITIONAL_GIS_ORDER);
    OGRErr const set =
        options.crs.empty() ? m_reference->importFromEPSG(kWgs84) : m_reference->SetFromUserInput(options.crs.c_str());
    if (set != OGRERR_NONE) {
        reason = "option CRS: \"" + options.crs + "\" is no reference system";
        return false;
    }
    m_isGeographic = m_reference->IsGeographic() != 0;
    return true;
}

double CPositions::Step(double fromX, double fromY, double toX, double toY) const {
    if (!m_isGeographic) return std::hypot(toX - fromX, toY - fromY);
    geod_geodesic ellipsoid;
    double const inverse = m_reference->GetInvFlattening();  // 0 for a sphere
    geod_init(&ellipsoid, m_reference->GetSemiMajor(), inverse == 0 ? 0 : 1 / inverse);
    double metres = 0;
    geod_inverse(&ellipsoid, fromY, fromX, toY, toX, &metres, nullptr, nullptr);
    return metres;
}

}  // namespace norva::gdal
