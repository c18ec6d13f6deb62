#pragma once

#include "formats/column_text/converted_import.h"
#include "formats/gpx/gpx_layout.h"
#include "formats/gpx/gpx_left_out.h"
#include "inspection/date_text.h"
#include "platform/files.h"

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

namespace norva {

/// Writes the points of a GPX file as comma separated rows: the line of the survey, position, elevation, date and time
/// in UTC, and the name of the point. A track, a route and a run of waypoints are a line each, by its whole name.
class CGpxTable {
public:
    enum Column { kLine, kLatitude, kLongitude, kElevation, kDate, kTime, kName };
    static constexpr std::string_view kTitles = "Line,Latitude (deg),Longitude (deg),Elevation (m),Date,Time,Name\n";

    /// A failure has been shown.
    Status ConvertToXYZ(std::string const& gpxPath, std::string const& outputPath);
    /// What ConvertToXYZ made of the file, with findings on its lines.
    ConvertedSource TakeSource();

private:
    struct Element;

    void Take(Element const& element, bool isCut);
    void StartPoint(Element const& element);
    void EndPoint();
    void TakeValue(Element const& element);
    void SetTime(std::string_view text);
    void StartLine();

    CReplacementFile m_output;
    ConvertedSource m_source;
    CLeftOutValues m_leftOut;
    CLastDate m_lastDate;
    std::string m_row;
    std::string m_kind;      ///< "Track", "Route", "Waypoints"
    std::string m_lineName;  ///< of the track or route that is open
    std::string m_label;     ///< of the line that points go to; empty: the next point starts one
    std::set<std::string> m_labels;
    bool m_isInTrack = false;  ///< or in a route
    bool m_isInPoint = false;
    std::string m_latitude;
    std::string m_longitude;
    std::string m_elevation;
    std::string m_date;
    std::string m_time;
    std::string m_name;
    bool m_hasElevation = false;  ///< some point, as for those below
    bool m_hasTime = false;
    bool m_hasName = false;
    std::uint64_t m_points = 0;
    std::uint64_t m_pointsLeftOut = 0;
    std::uint64_t m_tracks = 0;  ///< and routes, with points or without
    std::uint64_t m_unnamed = 0;
    std::uint64_t m_renamed = 0;
};

}  // namespace norva
