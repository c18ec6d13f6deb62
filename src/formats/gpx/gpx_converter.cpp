#include "formats/gpx/gpx_converter.h"

#include "exchange/exception_guard.h"
#include "formats/gpx/gpx_format.h"
#include "formats/gpx/gpx_markup.h"
#include "formats/gpx/gpx_table.h"
#include "platform/text.h"

#include <algorithm>
#include <utility>

namespace norva {

namespace {

constexpr std::string_view kTemporaryName = "GPX_temp.xyz";
constexpr std::string_view kMissing = "*";
// A laid out line may hold the line ends of the file, whatever they are, and a value no white space of any kind.
constexpr CDelimiters kDelimiters{" ,<>\t\n\r\v\f#"};
constexpr CDelimiters kFormatCheckDelimiters{" ,|\t\n\r\v\f#<>"};
constexpr CDelimiters kAttributeDelimiters{" ="};
constexpr CDelimiters kTimeDelimiters{" TZ"};
constexpr std::size_t kCoordinateWidth = 15;
constexpr std::size_t kValueWidth = 12;

bool ContainsAny(std::string_view text, std::string_view first, std::string_view second, std::string_view third) {
    return Contains(text, first) || Contains(text, second) || Contains(text, third);
}

GpxElement JudgeElement(std::string_view name) {
    GpxElement element;
    element.isPoint = ContainsAny(name, "trkpt", "wpt", "rtept");
    element.isPointEnd = ContainsAny(name, "/trkpt", "/wpt", "/rtept");
    element.isWaypoint = Contains(name, "wpt");
    element.isName = Contains(name, "name");
    element.isElevation = Contains(name, "ele");
    element.isTime = Contains(name, "time");
    return element;
}

std::string_view WithoutQuotes(std::string_view value) {
    auto const isQuote = [](char c) { return c == '"' || c == '\''; };
    while (!value.empty() && isQuote(value.front())) value.remove_prefix(1);
    while (!value.empty() && isQuote(value.back())) value.remove_suffix(1);
    return value;
}

std::string_view ShownColumnName(std::string_view name) {
    if (name == "lat") return "Latitude";
    if (name == "lon") return "Longitude";
    if (name == "ele") return "Elevation(m)";
    return name;
}

}  // namespace

void GpxTokens::Split(std::string_view text, CDelimiters const& delimiters) {
    CTokenCursor cursor(text, delimiters);
    count = 0;
    while (count < kKept && cursor.Next(token[count])) ++count;
}

GpxElement CGpxElementJudge::Of(std::string_view name) {
    constexpr std::size_t longestKept = 32;
    if (name.empty() || name.size() > longestKept) return JudgeElement(name);
    auto const first = static_cast<unsigned char>(name.front());
    auto const last = static_cast<unsigned char>(name.back());
    Known& known = m_known[(name.size() + 3U * first + 5U * last) % m_known.size()];
    if (known.name != name) known = {std::string(name), JudgeElement(name)};
    return known.element;
}

Status CGpxConverter::ConvertToXYZ(std::string const& gpxPath, std::string const& outputPath) {
    CGpxLayout file;
    if (!file.Open(gpxPath)) return Shown(Status::Failure("Could not open the file!"));
    auto const fail = [&file, &gpxPath](char const* reason) {
        return Shown(file.Error() == 0 ? Status::Failure(reason) : Status::FileFailure("read", gpxPath, file.Error()));
    };
    if (CheckGpxFormat(file) == 0) return fail("Could not handle data format!\nPlease check the GPX format.");
    CReplacementFile output;
    if (!output.Open(outputPath)) return Status::FileFailure("create", outputPath, output.Error()).Silent();
    if (ReadColumnNames(file) != 1) {
        // The file stays, empty, for whoever chose its name.
        output.Commit(false);
        return fail("Could not handle GPX data format.\n");
    }
    output.Write("//Data from GPX format \n");
    output.Write(GetHeaderLine());
    m_pointOpen = m_lineOpen = false;
    ResetPoint();
    bool const rewound = file.Rewind();
    std::string_view line;
    GpxTokens tokens;
    while (rewound && output.Error() == 0 && file.Next(line)) {
        tokens.Split(line, kDelimiters);
        if (tokens.count > 0) ConvertLine(tokens, file.IsCut(), output);
    }
    if (file.Error() != 0) return fail("");
    m_source.report.bytesRead = file.BytesRead();
    if (!file.Size(m_source.report.sourceSize)) return fail("");
    if (!output.Commit(false)) return Shown(Status::FileFailure("write", outputPath, output.Error()));
    return {};
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
        GpxElement const element = m_judge.Of(tokens.token[0]);
        if (tokens.count == 1) {
            if (!pointSeen || !element.isPointEnd) continue;
            if (m_columnNames.size() == 3) m_columnNames.insert(m_columnNames.end(), {"Date", "Time"});
            return 1;
        }
        if (element.isName || tokens.count != 3) continue;
        if (element.isPoint) {
            pointSeen = true;
            for (std::string_view const attribute : {tokens.token[1], tokens.token[2]}) {
                GpxTokens parts;
                parts.Split(attribute, kAttributeDelimiters);
                m_columnNames.emplace_back(parts.count == 2 ? parts.token[0] : "Ch");
            }
        }
        if (!pointSeen) continue;
        if (element.isElevation && Contains(tokens.token[2], "/ele")) m_columnNames.emplace_back(tokens.token[0]);
        if (element.isTime && Contains(tokens.token[2], "/time")) {
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
    TextField fields[] = {{m_latitude, kCoordinateWidth},
                          {m_longitude, kCoordinateWidth},
                          {m_elevation, kValueWidth},
                          {m_date, kValueWidth},
                          {m_time, kValueWidth}};
    for (TextField& field : fields) {
        if (field.text.empty()) field.text = kMissing;
        // A value that fills its field is set off by a blank, so that every row keeps its five values.
        field.width = std::max(field.width, field.text.size() + 1);
    }
    m_row.clear();
    AppendRightAligned(m_row, fields);
    m_row.push_back('\n');
    return m_row;
}

void CGpxConverter::ConvertLine(GpxTokens const& line, bool isCut, CReplacementFile& output) {
    GpxElement const element = m_judge.Of(line.token[0]);
    if (line.token[0] == "/trk" || line.token[0] == "/rte") {
        m_lineOpen = false;
        return;
    }
    if (line.count == 1 && (line.token[0] == "trk" || line.token[0] == "rte")) m_awaitsName = true;
    bool const hasContent = line.count > 2;
    // Counted once, whatever becomes of the part that is there.
    bool const isValue = m_pointOpen ? !element.isPoint : element.isName;
    if (isCut && isValue) m_leftOut.Add(line.token[0]);
    if (element.isPoint && (hasContent || !element.isPointEnd)) {
        ++m_points;
        // What it lacks itself, or the end of the point that is still open.
        if (m_pointOpen || !hasContent) ++m_pointsLeftOut;
    }
    if (line.count == 1) {
        if (!m_pointOpen || !element.isPointEnd) return;
        output.Write(GetRowLine());
        ++m_source.rows;
        ResetPoint();
        m_pointOpen = false;
        return;
    }
    if (hasContent && !m_pointOpen && element.isName) {
        // Of a name of several words the second is taken.
        if (line.count > 3 && !isCut && !Contains(line.token[1], "=")) m_leftOut.Add("words of names");
        m_isFileName = !m_awaitsName && m_points == 0;
        StartLine(DecodeNamedEntities(line.token[line.count == 3 ? 1 : 2]), output);
        return;
    }
    if (!m_lineOpen && element.isWaypoint) {
        m_isFileName = false;
        StartLine("waypoint", output);
    }
    if (!hasContent) return;
    if (element.isPoint) {
        SetLatLon(line.token[1], line.token[2]);
        m_pointOpen = true;
        NoteJoined(element);
    } else if (m_pointOpen && element.isElevation) {
        m_elevation = line.token[1];
    } else if (m_pointOpen && element.isTime) {
        if (!SetDateTime(line.token[1]) && !isCut) m_leftOut.Add(line.token[0]);
    } else if (m_pointOpen && !isCut) {
        m_leftOut.Add(line.token[0]);
    }
}

/// Counts a track or a run of waypoints whose points go to a line that another element has named.
void CGpxConverter::NoteJoined(GpxElement const& point) {
    bool const isJoined = point.isWaypoint ? m_isFileName : m_awaitsName && m_hasLine;
    if (isJoined) ++m_source.report.joined.count;
    m_awaitsName = false;
    m_isFileName = false;
}

ConvertedSource CGpxConverter::TakeSource() {
    ImportReport& report = m_source.report;
    ReportPoints(m_points, m_source.rows, m_pointsLeftOut, report);
    m_leftOut.Report(report);
    return std::move(m_source);
}

void CGpxConverter::StartLine(std::string_view name, CReplacementFile& output) {
    output.Write("Line  ");
    output.Write(name);
    output.Write(" \n");
    ResetPoint();
    m_lineOpen = true;
    m_hasLine = true;
    m_awaitsName = false;
}

void CGpxConverter::SetLatLon(std::string_view first, std::string_view second) {
    SetCoordinate(first);
    SetCoordinate(second);
}

void CGpxConverter::SetCoordinate(std::string_view attribute) {
    GpxTokens parts;
    parts.Split(attribute, kAttributeDelimiters);
    if (parts.count != 2) return;
    std::string_view const value = WithoutQuotes(parts.token[1]);
    if (parts.token[0] == "lat") m_latitude = value;
    if (parts.token[0] == "lon") m_longitude = value;
}

bool CGpxConverter::SetDateTime(std::string_view text) {
    GpxTokens parts;
    parts.Split(text, kTimeDelimiters);
    if (parts.count < 2) return false;
    m_date = parts.token[0];
    m_time = parts.token[1];
    return true;
}

void CGpxConverter::ResetPoint() {
    for (std::string* const value : {&m_latitude, &m_longitude, &m_elevation, &m_date, &m_time}) value->clear();
}

Status ImportGpxFile(ImportJob& job) {
    return RunConvertedImport(job, kTemporaryName, ConvertBy<CGpxConverter>, ConvertBy<CGpxTable>);
}

Status InspectGpxFile(std::string const& path, InspectionOptions const& options, Inspection& inspection) {
    InspectionOptions told = options;
    told.separator = ',';
    told.headerLine = 1;
    if (!told.labelColumn) told.labelColumn = CGpxTable::kLine;
    told.findsMarkers = false;
    told.textColumns.insert(told.textColumns.end(), {CGpxTable::kLine, CGpxTable::kName});
    Status status = InspectConvertedText(path, kTemporaryName, ConvertBy<CGpxTable>, told, inspection);
    if (!status) return status;
    // A position has more digits than a single holds, and other files of a survey have other elevations.
    ColumnTextSettings& settings = inspection.settings;
    for (std::size_t i = 0; i < settings.columns.size(); ++i) {
        int const source = settings.columnReadings[i].source;
        NorvaChannelStruct& column = settings.columns[i];
        bool const isNumber = source >= CGpxTable::kLatitude && source <= CGpxTable::kElevation;
        if (!isNumber || column.dataType == DataType::kText) continue;
        column.dataType = DataType::kDouble;
        auto const found = std::ranges::find(inspection.findings, column.name, &InspectionFinding::subject);
        if (found != inspection.findings.end()) found->choice = "double";
    }
    return {};
}

Status PreviewGpxFile(std::string const& path, TextPreview& preview) {
    return PreviewConvertedText(path, kTemporaryName, ConvertBy<CGpxConverter>, preview);
}

}  // namespace norva
