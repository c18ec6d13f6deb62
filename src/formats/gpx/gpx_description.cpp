#include "formats/gpx/gpx_format.h"

#include "formats/gpx/gpx_converter.h"
#include "platform/text.h"

namespace norva {

namespace {

/// Counts the elements of a GPX file, laid out one a line.
class CGpxCount {
public:
    void Line(std::string_view line) {
        std::string_view const name = line.substr(0, line.find_first_of(" \t\r\n/>", 2)).substr(1);
        if (name == "trk" || name == "rte") {
            m_lines.push_back({name == "trk" ? "track" : "route", "", 0});
            m_isInside = true;
            ++(name == "trk" ? tracks : routes);
        } else if (name == "/trk" || name == "/rte") {
            m_isInside = false;
        } else if (name == "trkseg") {
            ++segments;
        } else if (name == "wpt") {
            ++waypoints;
            m_isInPoint = true;
        } else if (name == "trkpt" || name == "rtept") {
            ++points;
            m_isInPoint = true;
            if (m_isInside) ++m_lines.back().points;
        } else if (name == "/trkpt" || name == "/rtept" || name == "/wpt") {
            m_isInPoint = false;
        } else if (name == "name" && m_isInside && !m_isInPoint) {
            std::size_t const start = line.find('>') + 1;
            m_lines.back().name = Trim(line.substr(start, line.rfind('<') - start));
        }
    }

    void Report(FileDescription& description) const {
        description.AddFact("tracks", tracks);
        description.AddFact("segments", segments);
        description.AddFact("routes", routes);
        description.AddFact("points", points);
        description.AddFact("waypoints", waypoints);
        FileDescription::Table lines{"lines", {"name", "kind", "points"}, {}};
        for (Track const& track : m_lines) lines.rows.push_back({track.name, track.kind, track.points});
        description.tables = {std::move(lines)};
    }

private:
    struct Track {
        std::string kind;
        std::string name;
        std::int64_t points;
    };

    std::int64_t tracks = 0;
    std::int64_t segments = 0;
    std::int64_t routes = 0;
    std::int64_t points = 0;
    std::int64_t waypoints = 0;
    std::vector<Track> m_lines;
    bool m_isInside = false;
    bool m_isInPoint = false;
};

}  // namespace

Status DescribeGpxFile(DescribeJob const& job, FileDescription& description) {
    CGpxLayout file;
    CGpxCount count;
    std::string_view line;
    bool const isGpx = file.Open(job.inputPath) && CGpxConverter().CheckGpxFormat(file) != 0 && file.Rewind();
    while (isGpx && file.Next(line)) count.Line(line);
    if (file.Error() != 0) return Status::FileFailure("read", job.inputPath, file.Error());
    if (!isGpx) return Status::Failure({});
    count.Report(description);
    return {};
}

}  // namespace norva
