#include "import_text/gpx_converter.h"

#include "entry/converted_import.h"
#include "platform/last_error.h"
#include "platform/text.h"
#include "ui/messages.h"

#include <algorithm>
#include <utility>

namespace norva {

namespace {

constexpr std::string_view kMissing = "*";
constexpr GpxDelimiters kDelimiters{" ,<>\t\n#"};
constexpr GpxDelimiters kFormatCheckDelimiters{" ,|\t\n#<>"};
constexpr GpxDelimiters kAttributeDelimiters{" ="};
constexpr GpxDelimiters kTimeDelimiters{" TZ"};
constexpr std::size_t kCoordinateWidth = 15;
constexpr std::size_t kValueWidth = 12;

bool ContainsAny(std::string_view text, std::string_view first, std::string_view second, std::string_view third) {
    return Contains(text, first) || Contains(text, second) || Contains(text, third);
}

bool IsPoint(std::string_view token) {
    return ContainsAny(token, "trkpt", "wpt", "rtept");
}

bool IsPointEnd(std::string_view token) {
    return ContainsAny(token, "/trkpt", "/wpt", "/rtept");
}

/// A value that fills its field is set off by a blank, so that every row keeps its five values.
void AppendField(std::string& row, std::string_view value, std::size_t width) {
    if (value.size() >= width) row.push_back(' ');
    AppendRightAligned(row, value, width);
}

std::string DecodeNamedEntities(std::string_view text) {
    static constexpr std::pair<std::string_view, char> entities[] = {
        {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}, {"&amp;", '&'}};
    std::string decoded;
    while (!text.empty()) {
        auto const entity = std::find_if(std::begin(entities), std::end(entities),
                                         [text](auto const& candidate) { return text.starts_with(candidate.first); });
        bool const found = entity != std::end(entities);
        decoded.push_back(found ? entity->second : text.front());
        text.remove_prefix(found ? entity->first.size() : 1);
    }
    return decoded;
}

std::string_view ShownColumnName(std::string_view name) {
    if (name == "lat") return "Latitude";
    if (name == "lon") return "Longitude";
    if (name == "ele") return "Elevation(m)";
    return name;
}

void ReportFailure(char const* what, std::string const& path, int error) {
    ShowMessage(what + path + "\n" + SystemErrorText(error));
}

}  // namespace

void GpxTokens::Split(std::string_view text, GpxDelimiters const& delimiters) {
    count = 0;
    std::size_t at = 0;
    while (count < kKept) {
        while (at < text.size() && delimiters.Contains(text[at])) ++at;
        if (at == text.size()) break;
        std::size_t const start = at;
        while (at < text.size() && !delimiters.Contains(text[at])) ++at;
        token[count++] = text.substr(start, at - start);
    }
}

CGpxConverter::CGpxConverter() {
    ResetPoint();
}

int CGpxConverter::ConvertToXYZ(std::string const& gpxPath, std::string const& outputPath) {
    CGpxLayout file;
    if (!file.Open(gpxPath)) {
        ShowMessage("Could not open the file!");
        return 0;
    }
    if (CheckGpxFormat(file) == 0) {
        ShowMessage("Could not handle data format!\nPlease check the GPX format.");
        return 0;
    }
    CReplacementFile output;
    if (!output.Open(outputPath)) {
        SetLastErrorText("Couldn't create the file : " + outputPath + "\n" + SystemErrorText(output.Error()));
        return 0;
    }
    bool const hasColumns = ReadColumnNames(file) == 1;
    if (!hasColumns && file.Error() == 0) {
        // The file stays, empty, for whoever chose its name.
        output.Commit(false);
        ShowMessage("Could not handle GPX data format.\n");
        return 0;
    }
    output.Write("//Data from GPX format \n");
    output.Write(GetHeaderLine());
    m_pointOpen = m_lineOpen = false;
    ResetPoint();
    bool const rewound = hasColumns && file.Rewind();
    std::string_view line;
    GpxTokens tokens;
    while (rewound && output.Error() == 0 && file.Next(line)) {
        tokens.Split(line, kDelimiters);
        if (tokens.count > 0) ConvertLine(tokens, output);
    }
    if (file.Error() != 0) {
        ReportFailure("Couldn't read the file : ", gpxPath, file.Error());
        return 0;
    }
    if (!output.Commit(false)) {
        ReportFailure("Couldn't write the file : ", outputPath, output.Error());
        return 0;
    }
    return 1;
}

int CGpxConverter::CheckGpxFormat(CGpxLayout& file) {
    bool seen = false;
    std::string_view line;
    GpxTokens tokens;
    while (file.Next(line)) {
        tokens.Split(line, kFormatCheckDelimiters);
        if (tokens.count == 0) continue;
        if (Contains(tokens.token[0], "gpx")) seen = true;
        if (ContainsAny(tokens.token[0], "trk", "wpt", "rte")) break;
    }
    return seen ? 1 : 0;
}

int CGpxConverter::ReadColumnNames(CGpxLayout& file) {
    m_columnNames.clear();
    if (!file.Rewind()) return 0;
    bool pointSeen = false;
    std::string_view line;
    GpxTokens tokens;
    while (file.Next(line)) {
        tokens.Split(line, kDelimiters);
        if (tokens.count == 0) continue;
        std::string_view const element = tokens.token[0];
        if (tokens.count == 1) {
            if (!pointSeen || !IsPointEnd(element)) continue;
            if (m_columnNames.size() == 3) m_columnNames.insert(m_columnNames.end(), {"Date", "Time"});
            return 1;
        }
        if (Contains(element, "name") || tokens.count != 3) continue;
        if (IsPoint(element)) {
            pointSeen = true;
            for (std::string_view const attribute : {tokens.token[1], tokens.token[2]}) {
                GpxTokens parts;
                parts.Split(attribute, kAttributeDelimiters);
                m_columnNames.emplace_back(parts.count == 2 ? parts.token[0] : "Ch");
            }
        }
        if (!pointSeen) continue;
        if (Contains(element, "ele") && Contains(tokens.token[2], "/ele")) m_columnNames.emplace_back(element);
        if (Contains(element, "time") && Contains(tokens.token[2], "/time")) {
            m_columnNames.insert(m_columnNames.end(), {"Date", "Time"});
            return 1;
        }
    }
    return 0;
}

std::string CGpxConverter::GetHeaderLine() const {
    std::string line = "/";
    for (std::string const& name : m_columnNames) AppendRightAligned(line, ShownColumnName(name), kCoordinateWidth);
    return line + "\n";
}

std::string const& CGpxConverter::GetRowLine() {
    m_row.clear();
    AppendField(m_row, m_latitude, kCoordinateWidth);
    AppendField(m_row, m_longitude, kCoordinateWidth);
    AppendField(m_row, m_elevation, kValueWidth);
    AppendField(m_row, m_date, kValueWidth);
    AppendField(m_row, m_time, kValueWidth);
    m_row.push_back('\n');
    return m_row;
}

void CGpxConverter::ConvertLine(GpxTokens const& line, CReplacementFile& output) {
    std::string_view const element = line.token[0];
    if (element == "/trk" || element == "/rte") {
        m_lineOpen = false;
        return;
    }
    if (line.count == 1) {
        if (!m_pointOpen || !IsPointEnd(element)) return;
        output.Write(GetRowLine());
        ResetPoint();
        m_pointOpen = false;
        return;
    }
    bool const hasContent = line.count > 2;
    if (hasContent && !m_pointOpen && Contains(element, "name")) {
        StartLine(DecodeNamedEntities(line.token[line.count == 3 ? 1 : 2]), output);
        return;
    }
    if (!m_lineOpen && Contains(element, "wpt")) StartLine("waypoint", output);
    if (hasContent && IsPoint(element)) {
        SetLatLon(line.token[1], line.token[2]);
        m_pointOpen = true;
    } else if (hasContent && m_pointOpen && Contains(element, "ele")) {
        m_elevation = line.token[1];
    } else if (hasContent && m_pointOpen && Contains(element, "time")) {
        SetDateTime(line.token[1]);
    }
}

void CGpxConverter::StartLine(std::string_view name, CReplacementFile& output) {
    output.Write("Line  ");
    output.Write(name);
    output.Write(" \n");
    ResetPoint();
    m_lineOpen = true;
}

void CGpxConverter::SetLatLon(std::string_view first, std::string_view second) {
    SetCoordinate(first);
    SetCoordinate(second);
}

void CGpxConverter::SetCoordinate(std::string_view attribute) {
    GpxTokens parts;
    parts.Split(attribute, kAttributeDelimiters);
    if (parts.count != 2) return;
    std::string_view value = TrimOf(parts.token[1], "\"'");
    if (value.empty()) value = kMissing;
    if (parts.token[0] == "lat") m_latitude = value;
    if (parts.token[0] == "lon") m_longitude = value;
}

void CGpxConverter::SetDateTime(std::string_view text) {
    GpxTokens parts;
    parts.Split(text, kTimeDelimiters);
    if (parts.count < 2) return;
    m_date = parts.token[0];
    m_time = parts.token[1];
}

void CGpxConverter::ResetPoint() {
    m_latitude = m_longitude = m_elevation = m_date = m_time = kMissing;
}

int RunGpxImport(ImportJob const& job) {
    return RunConvertedImport(job, "GPX_temp.xyz", [](std::string const& input, std::string const& output) {
        return CGpxConverter().ConvertToXYZ(input, output);
    });
}

}  // namespace norva
