#include "common/settings_json.h"

#include "common/command_error.h"
#include "norva/contents.h"

#include <array>
#include <string>

// The functions that the JSON library looks for beside the types.
namespace norva {

namespace {

using Json = nlohmann::ordered_json;

/// In the order of ImportSettings.
constexpr std::array<char const*, std::variant_size_v<ImportSettings>> kKinds = {"",    "column text",    "SeaSPY",
                                                                                 "CG3", "binary records", "GBN"};

template <typename T>
Json OptionalJson(std::optional<T> const& value) {
    return value ? Json(*value) : Json();
}

template <typename T>
void Take(nlohmann::json const& json, char const* name, T& value) {
    json.at(name).get_to(value);
}
template <typename T>
void Take(nlohmann::json const& json, char const* name, std::optional<T>& value) {
    nlohmann::json const& found = json.at(name);
    value = found.is_null() ? std::nullopt : std::optional<T>(found.get<T>());
}

Json ColumnsJson(std::vector<NorvaChannelStruct> const& columns) {
    Json list = Json::array();
    for (NorvaChannelStruct const& column : columns) {
        list.push_back({{"name", column.name},
                        {"units", column.units},
                        {"data_type", column.dataType},
                        {"record_type", column.recordType},
                        {"array_size", column.arraySize},
                        {"display_format", column.displayFormat},
                        {"decimals", column.decimalPlaces},
                        {"template", column.templateFormat}});
    }
    return list;
}

std::vector<NorvaChannelStruct> ColumnsFromJson(nlohmann::json const& list) {
    std::vector<NorvaChannelStruct> columns;
    for (nlohmann::json const& json : list) {
        NorvaChannelStruct& column = columns.emplace_back();
        Take(json, "name", column.name);
        Take(json, "units", column.units);
        Take(json, "data_type", column.dataType);
        Take(json, "record_type", column.recordType);
        Take(json, "array_size", column.arraySize);
        Take(json, "display_format", column.displayFormat);
        Take(json, "decimals", column.decimalPlaces);
        Take(json, "template", column.templateFormat);
    }
    return columns;
}

Json MembersJson(std::monostate /*settings*/) {
    return Json::object();
}

Json MembersJson(ColumnTextSettings const& settings) {
    return {
        {"skip", settings.skip}, {"label_column", settings.labelColumn}, {"columns", ColumnsJson(settings.columns)}};
}

Json MembersJson(SeaSpySettings const& settings) {
    return {{"interpolated", settings.interpolated}, {"columns", ColumnsJson(settings.columns)}};
}

Json MembersJson(Cg3Settings const& settings) {
    return {{"columns", OptionalJson(settings.columns)},
            {"date_format", settings.dateFormat},
            {"time_format", settings.timeFormat},
            {"sort_by_time", settings.sortByTime}};
}

Json MembersJson(RecordSettings const& settings) {
    Json channels = Json::array();
    for (RecordChannel const& channel : settings.channels) {
        channels.push_back({{"name", channel.name},
                            {"units", channel.units},
                            {"format", RecordFormatName(channel.format)},
                            {"data_type", channel.dataType}});
    }
    return {{"records", OptionalJson(settings.records)},
            {"points_per_line", OptionalJson(settings.pointsPerLine)},
            {"fiducial", settings.fiducial},
            {"frequency", settings.frequency},
            {"channels", std::move(channels)}};
}

Json MembersJson(GbnSettings const& settings) {
    Json changes = Json::array();
    for (GbnSettings::Channel const& change : settings.changes) {
        changes.push_back({{"number", change.number},
                           {"name", OptionalJson(change.name)},
                           {"units", OptionalJson(change.units)},
                           {"data_type", OptionalJson(change.dataType)}});
    }
    Json lineNames = Json::array();
    for (GbnSettings::Line const& line : settings.lineNames) {
        lineNames.push_back({{"number", line.number}, {"name", line.name}});
    }
    return {{"lines", OptionalJson(settings.lines)},
            {"channels", OptionalJson(settings.channels)},
            {"fiducial", settings.fiducial},
            {"changes", std::move(changes)},
            {"line_names", std::move(lineNames)}};
}

ColumnTextSettings ColumnTextFromJson(nlohmann::json const& json) {
    ColumnTextSettings settings;
    Take(json, "skip", settings.skip);
    Take(json, "label_column", settings.labelColumn);
    settings.columns = ColumnsFromJson(json.at("columns"));
    return settings;
}

SeaSpySettings SeaSpyFromJson(nlohmann::json const& json) {
    SeaSpySettings settings;
    Take(json, "interpolated", settings.interpolated);
    settings.columns = ColumnsFromJson(json.at("columns"));
    return settings;
}

Cg3Settings Cg3FromJson(nlohmann::json const& json) {
    Cg3Settings settings;
    Take(json, "columns", settings.columns);
    Take(json, "date_format", settings.dateFormat);
    Take(json, "time_format", settings.timeFormat);
    Take(json, "sort_by_time", settings.sortByTime);
    return settings;
}

RecordSettings RecordsFromJson(nlohmann::json const& json) {
    RecordSettings settings;
    Take(json, "records", settings.records);
    Take(json, "points_per_line", settings.pointsPerLine);
    Take(json, "fiducial", settings.fiducial);
    Take(json, "frequency", settings.frequency);
    for (nlohmann::json const& one : json.at("channels")) {
        RecordChannel& channel = settings.channels.emplace_back();
        Take(one, "name", channel.name);
        Take(one, "units", channel.units);
        std::string const format = one.at("format").get<std::string>();
        channel.format = FindRecordFormat(format).value_or(RecordChannel::Format::None);
        Take(one, "data_type", channel.dataType);
    }
    return settings;
}

GbnSettings GbnFromJson(nlohmann::json const& json) {
    GbnSettings settings;
    Take(json, "lines", settings.lines);
    Take(json, "channels", settings.channels);
    Take(json, "fiducial", settings.fiducial);
    for (nlohmann::json const& one : json.at("changes")) {
        GbnSettings::Channel& change = settings.changes.emplace_back();
        Take(one, "number", change.number);
        Take(one, "name", change.name);
        Take(one, "units", change.units);
        Take(one, "data_type", change.dataType);
    }
    for (nlohmann::json const& one : json.at("line_names")) {
        settings.lineNames.push_back({one.at("number").get<int>(), one.at("name").get<std::string>()});
    }
    return settings;
}

}  // namespace

Json SettingsJson(ImportSettings const& settings) {
    if (std::holds_alternative<std::monostate>(settings)) return {};
    Json json = {{"kind", kKinds[settings.index()]}};
    json.update(std::visit([](auto const& held) { return MembersJson(held); }, settings));
    return json;
}

ImportSettings SettingsFromJson(nlohmann::json const& json) {
    if (json.is_null()) return {};
    std::string const kind = json.at("kind").get<std::string>();
    if (kind == kKinds[1]) return ColumnTextFromJson(json);
    if (kind == kKinds[2]) return SeaSpyFromJson(json);
    if (kind == kKinds[3]) return Cg3FromJson(json);
    if (kind == kKinds[4]) return RecordsFromJson(json);
    if (kind == kKinds[5]) return GbnFromJson(json);
    throw CommandError("there are no settings of the kind \"" + kind + "\"");
}

}  // namespace norva
