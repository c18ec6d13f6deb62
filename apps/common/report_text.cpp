#include "common/report_text.h"

#include <charconv>

namespace norva {

namespace {

using Json = nlohmann::ordered_json;

std::string PlaceText(ReportPlace const& place) {
    std::string text = "line " + std::to_string(place.line);
    if (place.column > 0) text += ", column " + std::to_string(place.column);
    return place.text.empty() ? text : text + ": '" + place.text + "'";
}

Json FindingJson(ReportFinding const& finding) {
    Json places = Json::array();
    for (ReportPlace const& place : finding.places) {
        places.push_back({{"line", place.line}, {"column", place.column}, {"text", place.text}});
    }
    return {{"count", finding.count}, {"places", std::move(places)}};
}

Json ChannelJson(ReportChannel const& channel) {
    Json json = {{"name", channel.settings.name},
                 {"units", channel.settings.units},
                 {"type", ValueTypeText(channel.settings)},
                 {"column", channel.column},
                 {"values", channel.values},
                 {"minimum", channel.hasRange ? Json(channel.minimum) : Json()},
                 {"maximum", channel.hasRange ? Json(channel.maximum) : Json()}};
    for (ReportKind const* kind = kReportKinds; kind->name != nullptr; ++kind) {
        json[kind->name] = FindingJson(channel.*kind->finding);
    }
    return json;
}

std::string Escaped(std::string const& text) {
    // Bytes that are no UTF-8 would spoil the page.
    std::string const valid =
        Json::parse(Json(text).dump(-1, ' ', false, Json::error_handler_t::replace)).get<std::string>();
    std::string out;
    for (char const character : valid) {
        switch (character) {
            case '&':
                out += "&amp;";
                break;
            case '<':
                out += "&lt;";
                break;
            case '>':
                out += "&gt;";
                break;
            case '"':
                out += "&quot;";
                break;
            default:
                out += character;
        }
    }
    return out;
}

std::string NumberText(double value) {
    char buffer[64];
    return {buffer, std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 10).ptr};
}

std::string Cell(std::string const& text, char const* attributes = "") {
    return std::string("<td") + attributes + ">" + Escaped(text) + "</td>";
}
std::string CountCell(std::uint64_t count, bool isLoss = false) {
    return Cell(count == 0 ? "–" : std::to_string(count), isLoss && count > 0 ? " class=\"n bad\"" : " class=\"n\"");
}
std::string NamedRow(std::string const& name, std::string const& text) {
    return "<tr><th>" + Escaped(name) + "</th>" + Cell(text) + "</tr>\n";
}

std::string FindingRows(std::string const& where, std::string const& what, ReportFinding const& finding) {
    std::string rows;
    for (ReportPlace const& place : finding.places) {
        rows += "<tr>" + Cell(where) + Cell(what) + CountCell(place.line) + CountCell(place.column) + "<td><code>" +
                Escaped(place.text) + "</code></td></tr>\n";
    }
    if (!finding.places.empty() && finding.count > finding.places.size()) {
        rows += "<tr>" + Cell(where) + Cell(what) + "<td colspan=\"3\">and " +
                std::to_string(finding.count - finding.places.size()) + " more</td></tr>\n";
    }
    return rows;
}

char const* const kStyle = R"(body{font:15px/1.45 system-ui,sans-serif;color:#1d2733;max-width:70rem;margin:2rem auto;
padding:0 1rem}h1{font-size:1.6rem;margin-bottom:.2rem}h2{font-size:1.1rem;margin-top:2rem}
table{border-collapse:collapse;width:100%}th,td{text-align:left;padding:.3rem .6rem;border-bottom:1px solid #dde3ea;
vertical-align:top}thead th{background:#f2f5f8}.n{text-align:right;font-variant-numeric:tabular-nums}
.bad{color:#a4262c;font-weight:600}.verdict{padding:.8rem 1rem;border-radius:.4rem;background:#e6f4ea}
.verdict.loss{background:#fdecea}code{word-break:break-all;white-space:pre-wrap}
@media print{body{margin:0;max-width:none}})";

}  // namespace

Json ReportJson(ImportReport const& report) {
    Json json = {
        {"norva", "import report"},
        {"version", 1},
        {"library", report.norvaVersion},
        {"format", report.format},
        {"source", {{"path", report.sourcePath}, {"size", report.sourceSize}, {"sha256", report.sourceSha256}}}};
    Json& settings = json["settings"] = Json::object();
    for (ReportSetting const& setting : report.settings) settings[setting.name] = setting.value;
    Json& columns = json["columns"] = Json::array();
    for (NorvaChannelStruct const& column : report.columns) {
        bool const isSkipped = column.dataType == DataType::kSkipped;
        columns.push_back({{"name", column.name},
                           {"units", column.units},
                           {"type", isSkipped ? "skipped" : ValueTypeText(column)},
                           {"template", column.templateFormat}});
    }
    Json parts = Json::array();
    for (ReportPart const& part : report.parts) {
        parts.push_back({{"name", part.name}, {"count", part.count}, {"bytes", part.bytes}});
    }
    json["read"] = {{"unit", report.unit},
                    {"count", report.unitsRead},
                    {"bytes", report.bytesRead},
                    {"parts", std::move(parts)},
                    {"accounted", report.IsAccounted()}};
    json["losses"] = report.LossCount();
    json["locations"] = report.LocationCount();
    for (ReportRowKind const* kind = kReportRowKinds; kind->name != nullptr; ++kind) {
        json[kind->name] = FindingJson(report.*kind->finding);
    }
    Json& channels = json["channels"] = Json::array();
    for (ReportChannel const& channel : report.channels) channels.push_back(ChannelJson(channel));
    Json& lines = json["lines"] = Json::array();
    for (ReportLine const& line : report.lines) {
        lines.push_back({{"name", line.name},
                         {"locations", line.locations},
                         {"source_line", line.sourceLine},
                         {"repeated", line.isRepeated}});
    }
    return json;
}

std::string ReportHtml(ImportReport const& report) {
    std::string const name = report.sourcePath.substr(report.sourcePath.rfind('/') + 1);
    std::string out =
        "<!DOCTYPE html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>Import report: " + Escaped(name) +
        "</title>\n<style>" + kStyle + "</style></head><body>\n<h1>Import report</h1><p>" + Escaped(name) + "</p>\n";
    std::uint64_t const losses = report.LossCount();
    out += std::string("<p class=\"verdict") + (losses > 0 ? " loss" : "") + "\">";
    out += report.IsAccounted() ? "Every byte of the source is accounted for. "
                                : "The source is NOT fully accounted for. ";
    out += losses == 0
               ? "Nothing was lost or changed."
               : std::to_string(losses) + " values or rows did not reach the store as they stand in the source.";
    out += "</p>\n<h2>Source</h2><table>" + NamedRow("File", report.sourcePath) +
           NamedRow("Size", std::to_string(report.sourceSize) + " bytes") + NamedRow("SHA-256", report.sourceSha256) +
           NamedRow("Format", report.format);
    for (ReportSetting const& setting : report.settings) out += NamedRow(setting.name, setting.value);
    out += NamedRow("Library", "Norva Exchange " + report.norvaVersion) + "</table>\n";
    out += "<h2>What was read</h2><table><thead><tr><th>Part</th><th class=\"n\">" + Escaped(report.unit) +
           "</th><th class=\"n\">bytes</th></tr></thead>\n";
    for (ReportPart const& part : report.parts) {
        out += "<tr>" + Cell(part.name) + CountCell(part.count) + CountCell(part.bytes) + "</tr>\n";
    }
    out += "<tr><th>all</th>" + CountCell(report.unitsRead) + CountCell(report.bytesRead) + "</tr></table>\n";

    out +=
        "<h2>Channels</h2><table><thead><tr><th>Channel</th><th>Type</th><th class=\"n\">values</th>"
        "<th class=\"n\">minimum</th><th class=\"n\">maximum</th>";
    for (ReportKind const* kind = kReportKinds; kind->name != nullptr; ++kind) {
        std::string title = kind->name;
        for (char& character : title) character = character == '_' ? ' ' : character;
        out += "<th class=\"n\" title=\"" + Escaped(kind->text) + "\">" + title + "</th>";
    }
    out += "</tr></thead>\n";
    for (ReportChannel const& channel : report.channels) {
        std::string const units = channel.settings.units.empty() ? "" : " (" + channel.settings.units + ")";
        out += "<tr>" + Cell(channel.settings.name + units) + Cell(ValueTypeText(channel.settings)) +
               CountCell(channel.values) + Cell(channel.hasRange ? NumberText(channel.minimum) : "", " class=\"n\"") +
               Cell(channel.hasRange ? NumberText(channel.maximum) : "", " class=\"n\"");
        for (ReportKind const* kind = kReportKinds; kind->name != nullptr; ++kind) {
            out += CountCell((channel.*kind->finding).count, kind->isLoss);
        }
        out += "</tr>\n";
    }
    out += "</table>\n";

    std::string rows;
    std::string places;
    for (ReportRowKind const* kind = kReportRowKinds; kind->name != nullptr; ++kind) {
        ReportFinding const& finding = report.*kind->finding;
        if (finding.count > 0) rows += "<tr>" + Cell(kind->text) + CountCell(finding.count, kind->isLoss) + "</tr>\n";
        places += FindingRows("row", kind->text, finding);
    }
    if (!rows.empty()) out += "<h2>Rows</h2><table>\n" + rows + "</table>\n";
    for (ReportChannel const& channel : report.channels) {
        for (ReportKind const* kind = kReportKinds; kind->name != nullptr; ++kind) {
            places += FindingRows(channel.settings.name, kind->text, channel.*kind->finding);
        }
    }
    if (!places.empty()) {
        out +=
            "<h2>Places in the source</h2><table><thead><tr><th>Channel</th><th>What</th><th class=\"n\">line</th>"
            "<th class=\"n\">column</th><th>text</th></tr></thead>\n" +
            places + "</table>\n";
    }
    out +=
        "<h2>Lines</h2><table><thead><tr><th>Line</th><th class=\"n\">locations</th><th class=\"n\">first source line"
        "</th><th></th></tr></thead>\n";
    for (ReportLine const& line : report.lines) {
        out += "<tr>" + Cell(line.name) + CountCell(line.locations) + CountCell(line.sourceLine) +
               Cell(line.isRepeated ? "name stands before" : "", " class=\"bad\"") + "</tr>\n";
    }
    return out + "</table>\n</body></html>\n";
}

std::string Counted(std::uint64_t count, std::string const& noun, char const* plural) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : plural);
}

std::string ReportSummary(ImportReport const& report) {
    std::string text = Counted(report.unitsRead, report.unit.substr(0, report.unit.size() - 1)) + " read";
    char const* separator = ": ";
    for (ReportPart const& part : report.parts) {
        if (part.count == 0) continue;
        text += separator + part.name + " " + std::to_string(part.count);
        separator = ", ";
    }
    text += report.IsAccounted() ? "; " : "; NOT ALL BYTES ACCOUNTED FOR; ";
    std::uint64_t const losses = report.LossCount();
    text += losses == 0 ? "nothing lost" : Counted(losses, "loss", "es");
    auto const add = [&text](std::string const& what, ReportFinding const& finding) {
        if (finding.count == 0) return;
        text += "\n  " + what + ": " + std::to_string(finding.count);
        if (!finding.places.empty()) text += ", first at " + PlaceText(finding.places.front());
    };
    for (ReportRowKind const* kind = kReportRowKinds; kind->name != nullptr; ++kind) {
        if (kind->isLoss) add(kind->text, report.*kind->finding);
    }
    for (ReportChannel const& channel : report.channels) {
        for (ReportKind const* kind = kReportKinds; kind->name != nullptr; ++kind) {
            if (kind->isLoss || kind->finding == &ReportChannel::backwards) {
                add(channel.settings.name + ": " + kind->text, channel.*kind->finding);
            }
        }
    }
    if (report.RepeatedLines() > 0) {
        text += "\n  lines whose name stands before: " + std::to_string(report.RepeatedLines());
    }
    return text;
}

std::string ReportSummary(ExportReport const& report) {
    std::string text = Counted(report.lines, "line") + ", " + Counted(report.locations, "location") + " written";
    auto const left = [&text](std::uint64_t count, std::string const& noun) {
        if (count > 0) text += ", " + Counted(count, noun) + " left out";
    };
    left(report.hiddenLines, "hidden line");
    left(report.deletedLocations, "deleted location");
    if (report.changedNames > 0) text += ", " + Counted(report.changedNames, "name") + " changed";
    std::uint64_t const losses = report.LossCount();
    text += losses == 0 ? "; nothing lost" : "; " + Counted(losses, "loss", "es");
    for (ExportReportChannel const& channel : report.channels) {
        for (ExportKind const* kind = kExportKinds; kind->name != nullptr; ++kind) {
            std::uint64_t const count = channel.*kind->count;
            if (count > 0) text += "\n  " + channel.name + ": " + kind->text + ": " + std::to_string(count);
        }
    }
    if (report.rowsBeyond > 0) {
        text += "\n  rows and columns that readers of such a sheet do not show: " + std::to_string(report.rowsBeyond);
    }
    return text;
}

}  // namespace norva
