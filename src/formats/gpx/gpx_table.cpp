#include "formats/gpx/gpx_table.h"

#include "exchange/exception_guard.h"
#include "formats/gpx/gpx_markup.h"
#include "inspection/number_text.h"
#include "platform/text.h"

#include <algorithm>
#include <cstdio>

namespace norva {

namespace {

/// The value of an attribute of a tag, without its quotes.
std::string_view AttributeOf(std::string_view tag, std::string_view name) {
    for (std::size_t at = tag.find(name); at != std::string_view::npos; at = tag.find(name, at + 1)) {
        bool const isWord = at > 0 && std::string_view(" \t\r\n").find(tag[at - 1]) != std::string_view::npos;
        std::string_view rest = TrimLeft(tag.substr(at + name.size()));
        if (!isWord || !rest.starts_with('=')) continue;
        rest = TrimLeft(rest.substr(1));
        if (rest.empty() || (rest.front() != '"' && rest.front() != '\''))
            return rest.substr(0, rest.find_first_of(" \t\r\n>"));
        return Trim(rest.substr(1, rest.find(rest.front(), 1) - 1));
    }
    return {};
}

/// Text of a cell: on one line, and never the separator or the end of one.
void AppendQuoted(std::string& row, std::string_view text) {
    row += '"';
    for (char const c : text) {
        if (c == '"') row += '"';
        row += c == '\n' || c == '\r' || c == '\t' ? ' ' : c;
    }
    row += '"';
}

/// A number as it stands, or nothing where it is none: the text is not to break the row.
std::string_view NumberOrNothing(std::string_view text) {
    NumberText number;
    bool const isNumber = ScanNumberText(text, DecimalMarks::Point, number) && number.length == text.size();
    return isNumber ? text : std::string_view();
}

}  // namespace

struct CGpxTable::Element {
    std::string_view name;
    std::string_view tag;  ///< the start tag
    std::string_view text;
    bool isEnd = false;
    bool hasText = false;

    explicit Element(std::string_view line) {
        if (!line.starts_with('<')) return;
        isEnd = line.starts_with("</");
        line.remove_prefix(isEnd ? 2 : 1);
        name = line.substr(0, line.find_first_of(" \t\r\n/>"));
        std::size_t const close = line.find('>');
        tag = line.substr(0, close);
        if (isEnd || close == std::string_view::npos) return;
        text = line.substr(close + 1);
        text = Trim(text.substr(0, text.rfind("</")));
        hasText = !text.empty();
    }
};

Status CGpxTable::ConvertToXYZ(std::string const& gpxPath, std::string const& outputPath) {
    CGpxLayout file;
    if (!file.Open(gpxPath)) return Shown(Status::FileFailure("open", gpxPath, file.Error()));
    if (!m_output.Open(outputPath)) return Shown(Status::FileFailure("create", outputPath, m_output.Error()));
    m_output.Write(kTitles);
    std::string_view line;
    while (m_output.Error() == 0 && file.Next(line)) {
        Element const element(line);
        if (!element.name.empty()) Take(element, file.IsCut());
    }
    if (file.Error() != 0) return Shown(Status::FileFailure("read", gpxPath, file.Error()));
    if (m_source.rows == 0) return Shown(Status::Failure("There are no points in the file", gpxPath));
    m_source.report.bytesRead = file.BytesRead();
    if (!file.Size(m_source.report.sourceSize)) return Shown(Status::FileFailure("read", gpxPath, file.Error()));
    if (!m_output.Commit(false)) return Shown(Status::FileFailure("write", outputPath, m_output.Error()));
    return {};
}

void CGpxTable::Take(Element const& element, bool isCut) {
    bool const isTrack = element.name == "trk" || element.name == "rte";
    bool const isPoint = element.name == "trkpt" || element.name == "rtept" || element.name == "wpt";
    if (isTrack) {
        m_isInTrack = !element.isEnd;
        m_isInPoint = false;
        m_lineName.clear();
        m_label.clear();
        m_kind = element.name == "trk" ? "Track" : "Route";
        if (!element.isEnd) ++m_tracks;
    } else if (isPoint && element.isEnd) {
        if (m_isInPoint) EndPoint();
    } else if (isPoint) {
        StartPoint(element);
    } else if (!element.hasText) {
        return;
    } else if (isCut) {
        if (m_isInPoint || element.name == "name") m_leftOut.Add(element.name);
    } else if (m_isInPoint) {
        TakeValue(element);
    } else if (m_isInTrack && element.name == "name" && m_lineName.empty()) {
        m_lineName = DecodeNamedEntities(element.text);
    }
}

void CGpxTable::StartPoint(Element const& element) {
    ++m_points;
    if (m_isInPoint) ++m_pointsLeftOut;
    if (element.name == "wpt" && (m_isInTrack || m_kind != "Waypoints")) {
        m_isInTrack = false;
        m_kind = "Waypoints";
        m_label.clear();
    }
    m_isInPoint = true;
    m_latitude = NumberOrNothing(AttributeOf(element.tag, "lat"));
    m_longitude = NumberOrNothing(AttributeOf(element.tag, "lon"));
    m_elevation.clear();
    m_date.clear();
    m_time.clear();
    m_name.clear();
}

void CGpxTable::EndPoint() {
    m_isInPoint = false;
    if (m_latitude.empty() && m_longitude.empty()) {
        ++m_pointsLeftOut;
        return;
    }
    if (m_label.empty()) StartLine();
    m_row.clear();
    AppendQuoted(m_row, m_label);
    for (std::string const* const value : {&m_latitude, &m_longitude, &m_elevation, &m_date, &m_time}) {
        m_row += ',';
        m_row += *value;
    }
    m_row += ',';
    if (!m_name.empty()) AppendQuoted(m_row, m_name);
    m_row += '\n';
    m_output.Write(m_row);
    ++m_source.rows;
    m_hasElevation = m_hasElevation || !m_elevation.empty();
    m_hasTime = m_hasTime || !m_date.empty();
    m_hasName = m_hasName || !m_name.empty();
}

void CGpxTable::TakeValue(Element const& element) {
    if (element.name == "ele" && m_elevation.empty() && !NumberOrNothing(element.text).empty()) {
        m_elevation = element.text;
    } else if (element.name == "time" && m_date.empty()) {
        SetTime(element.text);
    } else if (element.name == "name" && m_name.empty()) {
        m_name = DecodeNamedEntities(element.text);
    } else {
        m_leftOut.Add(element.name);
    }
}

void CGpxTable::SetTime(std::string_view text) {
    DateTimeText when;
    if (!ReadDateTimeText(text, when, m_lastDate) || (when.date.orders & kYearFirst) == 0) return m_leftOut.Add("time");
    if (when.zoneMinutes == 0) {
        std::string_view const clock = text.substr(text.find_first_of("Tt ") + 1);
        m_date = text.substr(0, text.find_first_of("Tt "));
        m_time = clock.substr(0, clock.find_first_not_of("0123456789:."));
        return;
    }
    std::int64_t dayNumber = 0;
    double seconds = 0;
    ToUtc(when, kYearFirst, dayNumber, seconds);
    Day const day = DayOfNumber(dayNumber);
    auto const whole = static_cast<int>(seconds);
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%04d-%02d-%02d", day.year, day.month, day.day);
    m_date = buffer;
    std::string_view const fraction = text.substr(std::min(text.size(), text.find('.')));
    std::snprintf(buffer, sizeof buffer, "%02d:%02d:%02d", whole / 3600, whole / 60 % 60, whole % 60);
    m_time = buffer;
    m_time += fraction.substr(0, fraction.find_first_not_of(".0123456789"));
}

void CGpxTable::StartLine() {
    std::string wanted = m_lineName;
    if (wanted.empty()) {
        wanted = m_isInTrack ? m_kind + " " + std::to_string(m_tracks) : "Waypoints";
        if (m_isInTrack) ++m_unnamed;
    }
    m_label = wanted;
    for (int n = 2; !m_labels.insert(m_label).second; ++n) m_label = wanted + "_" + std::to_string(n);
    if (m_label != wanted) ++m_renamed;
}

ConvertedSource CGpxTable::TakeSource() {
    ImportReport& report = m_source.report;
    ReportPoints(m_points, m_source.rows, m_pointsLeftOut, report);
    m_leftOut.Report(report);
    std::string evidence = "tracks, routes and runs of waypoints, by their names";
    if (m_unnamed > 0) evidence += "; " + std::to_string(m_unnamed) + " without a name";
    if (m_renamed > 0) evidence += "; " + std::to_string(m_renamed) + " of a name that came before";
    m_source.findings.push_back({"lines", std::to_string(m_labels.size()), std::move(evidence), false, {}});
    if (std::string const values = m_leftOut.Names(); !values.empty())
        m_source.findings.push_back({"points", "", "values that no column takes are left out: " + values, false, {}});
    if (!m_hasElevation) m_source.unused.push_back(kElevation);
    if (!m_hasTime) m_source.unused.insert(m_source.unused.end(), {kDate, kTime});
    if (!m_hasName) m_source.unused.push_back(kName);
    return std::move(m_source);
}

}  // namespace norva
