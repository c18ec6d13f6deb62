#pragma once

#include "formats/column_text/converted_import.h"
#include "formats/column_text/text_line.h"
#include "formats/gpx/gpx_layout.h"
#include "formats/gpx/gpx_left_out.h"
#include "platform/files.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace norva {

/// The first tokens of a text; more than any rule looks at are not kept.
struct GpxTokens {
    static constexpr std::size_t kKept = 4;

    void Split(std::string_view text, CDelimiters const& delimiters);

    std::array<std::string_view, kKept> token{};
    std::size_t count = 0;  ///< kKept stands for that many or more
};

/// What an element name means to the converter: it may hold several of these words.
struct GpxElement {
    bool isPoint = false;     ///< "trkpt", "wpt" or "rtept"
    bool isPointEnd = false;  ///< the same with a "/"
    bool isWaypoint = false;
    bool isName = false;
    bool isElevation = false;
    bool isTime = false;
};

/// Judges element names, and remembers its judgement of those that come again and again.
class CGpxElementJudge {
public:
    GpxElement Of(std::string_view name);

private:
    struct Known {
        std::string name;
        GpxElement element;
    };
    std::array<Known, 32> m_known;
};

/// Rewrites the tracks, routes and waypoints of a GPX file as column text: a marker line for every track or route with
/// a name and for a run of waypoints, then a row a point with latitude, longitude, elevation, date and time. It is no
/// XML parser: it judges a line by the words in it.
class CGpxConverter {
public:
    /// A failure has been shown, but for an output that cannot be created, which is silent.
    Status ConvertToXYZ(std::string const& gpxPath, std::string const& outputPath);

    /// What ConvertToXYZ made of the file.
    ConvertedSource TakeSource();

    /// 1 when a line that begins with "gpx" comes before the first track, route or waypoint. Reads on from where
    /// `file` stands.
    int CheckGpxFormat(CGpxLayout& file);
    /// Takes the column names from the first point; 1 when there is one. Reads from the beginning.
    int ReadColumnNames(CGpxLayout& file);
    std::string GetHeaderLine() const;
    /// The row of the current point; lasts until the next call.
    std::string const& GetRowLine();

    /// Each text is an attribute, lat="45.1" or lon='-75.2'; others are ignored.
    void SetLatLon(std::string_view first, std::string_view second);
    /// "2007-01-02T03:04:05Z" becomes date and time; false when it is none.
    bool SetDateTime(std::string_view text);
    /// Every value of the current point is missing then.
    void ResetPoint();

    std::vector<std::string> const& ColumnNames() const { return m_columnNames; }

private:
    /// `isCut` says that the line was longer than the layout keeps.
    void ConvertLine(GpxTokens const& line, bool isCut, CReplacementFile& output);
    void StartLine(std::string_view name, CReplacementFile& output);
    void SetCoordinate(std::string_view attribute);
    void NoteJoined(GpxElement const& point);

    CGpxElementJudge m_judge;
    std::vector<std::string> m_columnNames;
    // Of the current point; empty while missing.
    std::string m_latitude;
    std::string m_longitude;
    std::string m_elevation;
    std::string m_date;
    std::string m_time;
    std::string m_row;
    bool m_pointOpen = false;
    bool m_lineOpen = false;
    bool m_hasLine = false;     ///< some line was written
    bool m_awaitsName = false;  ///< in a track or route that has had neither name nor point
    bool m_isFileName = false;  ///< the line is named by the file's own name and has had no point

    ConvertedSource m_source;
    std::uint64_t m_points = 0;         ///< that began
    std::uint64_t m_pointsLeftOut = 0;  ///< without attributes, or not ended before the next began
    CLeftOutValues m_leftOut;
};

}  // namespace norva
