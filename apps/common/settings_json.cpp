#include "common/settings_json.h"

#include "common/command_error.h"
#include "norva/contents.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace norva {

namespace {

using Json = nlohmann::ordered_json;

/// In the order of ImportSettings.
constexpr std::array<char const*, std::variant_size_v<ImportSettings>> kKinds = {"",    "column text",    "SeaSPY",
                                                                                 "CG3", "binary records", "GBN"};
// In the orders of their enumerations.
constexpr std::array<char const*, 4> kEncodings = {"UTF-8", "Latin-1", "UTF-16LE", "UTF-16BE"};
constexpr std::array<char const*, 7> kLooks = {"empty", "text", "number", "date", "time", "date and time", "position"};
constexpr std::array<char const*, 10> kForms = {"plain",       "date",          "time",         "date and time",
                                                "day of year", "compact date",  "compact time", "epoch seconds",
                                                "degrees",     "packed minutes"};

// The members of every struct by their names, for both directions.
template <typename Visitor>
void Visit(NorvaChannelStruct& column, Visitor visit) {
    visit("name", column.name);
    visit("units", column.units);
    visit("data_type", column.dataType);
    visit("record_type", column.recordType);
    visit("array_size", column.arraySize);
    visit("display_format", column.displayFormat);
    visit("decimals", column.decimalPlaces);
    visit("template", column.templateFormat);
}

template <typename Visitor>
void Visit(TextReading& reading, Visitor visit) {
    visit("encoding", reading.encoding);
    visit("separator", reading.separator);
    visit("quote", reading.quote);
    visit("backslash_quote", reading.backslashQuote);
    visit("quotes_every_row", reading.quotesEveryRow);
    visit("decimal_mark", reading.decimalMark);
    visit("width", reading.width);
    visit("trailing_separator", reading.trailingSeparator);
    visit("comment_marks", reading.commentMarks);
    visit("missing", reading.missing);
    visit("first_data_line", reading.firstDataLine);
    visit("first_marker_line", reading.firstMarkerLine);
    visit("header_text", reading.headerText);
    visit("marker_words", reading.markerWords);
}

template <typename Visitor>
void Visit(ColumnLook& look, Visitor visit) {
    visit("kind", look.kind);
    visit("usual_length", look.usualLength);
    visit("has_blanks", look.hasBlanks);
    visit("has_digits", look.hasDigits);
    visit("is_quoted", look.isQuoted);
    visit("suffix", look.suffix);
}

template <typename Visitor>
void Visit(ColumnReading& reading, Visitor visit) {
    visit("source", reading.source);
    visit("form", reading.form);
    visit("order", reading.order);
    visit("missing", reading.missing);
    visit("epoch_divisor", reading.epochDivisor);
}

template <typename Visitor>
void Visit(ColumnTextSettings& settings, Visitor visit) {
    visit("skip", settings.skip);
    visit("label_column", settings.labelColumn);
    visit("columns", settings.columns);
    visit("reading", settings.reading);
    visit("column_readings", settings.columnReadings);
    visit("looks", settings.looks);
}

template <typename Visitor>
void Visit(SeaSpySettings& settings, Visitor visit) {
    visit("interpolated", settings.interpolated);
    visit("columns", settings.columns);
}

template <typename Visitor>
void Visit(Cg3Settings& settings, Visitor visit) {
    visit("columns", settings.columns);
    visit("date_format", settings.dateFormat);
    visit("time_format", settings.timeFormat);
    visit("sort_by_time", settings.sortByTime);
}

template <typename Visitor>
void Visit(RecordChannel& channel, Visitor visit) {
    visit("name", channel.name);
    visit("units", channel.units);
    visit("format", channel.format);
    visit("data_type", channel.dataType);
}

template <typename Visitor>
void Visit(RecordSettings& settings, Visitor visit) {
    visit("records", settings.records);
    visit("points_per_line", settings.pointsPerLine);
    visit("fiducial", settings.fiducial);
    visit("frequency", settings.frequency);
    visit("channels", settings.channels);
}

template <typename Visitor>
void Visit(GbnSettings::Channel& channel, Visitor visit) {
    visit("number", channel.number);
    visit("name", channel.name);
    visit("units", channel.units);
    visit("data_type", channel.dataType);
}

template <typename Visitor>
void Visit(GbnSettings::Line& line, Visitor visit) {
    visit("number", line.number);
    visit("name", line.name);
}

template <typename Visitor>
void Visit(GbnSettings& settings, Visitor visit) {
    visit("lines", settings.lines);
    visit("channels", settings.channels);
    visit("fiducial", settings.fiducial);
    visit("changes", settings.changes);
    visit("line_names", settings.lineNames);
}

bool IsUtf8(std::string const& text) {
    try {
        return !Json(text).dump().empty();
    } catch (Json::type_error const&) {
        return false;
    }
}

/// A text that is no UTF-8 becomes an object that says its bytes, so that it comes back the same.
Json ToJson(std::string const& text) {
    if (IsUtf8(text)) return text;
    Json bytes = Json::array();
    for (char const byte : text) bytes.push_back(static_cast<unsigned char>(byte));
    return {{"bytes", std::move(bytes)}};
}
void FromJson(nlohmann::json const& json, std::string& text) {
    if (!json.is_object()) return json.get_to(text), void();
    text.clear();
    for (nlohmann::json const& byte : json.at("bytes")) text += static_cast<char>(byte.get<unsigned char>());
}

Json ToJson(char character) {
    return character == '\0' ? Json("") : ToJson(std::string(1, character));
}
void FromJson(nlohmann::json const& json, char& character) {
    std::string text;
    FromJson(json, text);
    character = text.empty() ? '\0' : text.front();
}

template <typename Enum, std::size_t N>
void FindName(nlohmann::json const& json, std::array<char const*, N> const& names, Enum& value) {
    std::string const name = json.get<std::string>();
    for (std::size_t i = 0; i < N; ++i) {
        if (name == names[i]) {
            value = static_cast<Enum>(i);
            return;
        }
    }
    throw CommandError("settings say \"" + name + "\", which is unknown");
}

Json ToJson(TextReading::Encoding value) {
    return kEncodings.at(static_cast<std::size_t>(value));
}
void FromJson(nlohmann::json const& json, TextReading::Encoding& value) {
    FindName(json, kEncodings, value);
}
Json ToJson(ColumnLook::Kind value) {
    return kLooks.at(static_cast<std::size_t>(value));
}
void FromJson(nlohmann::json const& json, ColumnLook::Kind& value) {
    FindName(json, kLooks, value);
}
Json ToJson(ColumnReading::Form value) {
    return kForms.at(static_cast<std::size_t>(value));
}
void FromJson(nlohmann::json const& json, ColumnReading::Form& value) {
    FindName(json, kForms, value);
}
Json ToJson(RecordChannel::Format value) {
    return RecordFormatName(value);
}
void FromJson(nlohmann::json const& json, RecordChannel::Format& value) {
    value = FindRecordFormat(json.get<std::string>()).value_or(RecordChannel::Format::None);
}

template <typename T>
requires std::is_arithmetic_v<T> Json ToJson(T value) {
    return value;
}
template <typename T>
requires std::is_arithmetic_v<T>
void FromJson(nlohmann::json const& json, T& value) {
    json.get_to(value);
}

template <typename T>
Json ToJson(std::vector<T> const& list);
template <typename T>
void FromJson(nlohmann::json const& json, std::vector<T>& list);
template <typename T>
Json ToJson(std::optional<T> const& value);
template <typename T>
void FromJson(nlohmann::json const& json, std::optional<T>& value);

/// A struct with members to visit.
template <typename T>
requires std::is_aggregate_v<T> Json ToJson(T const& value) {
    Json json = Json::object();
    T copy = value;
    Visit(copy, [&json](char const* name, auto const& member) { json[name] = ToJson(member); });
    return json;
}
template <typename T>
requires std::is_aggregate_v<T>
void FromJson(nlohmann::json const& json, T& value) {
    Visit(value, [&json](char const* name, auto& member) { FromJson(json.at(name), member); });
}

template <typename T>
Json ToJson(std::vector<T> const& list) {
    Json json = Json::array();
    for (T const& one : list) json.push_back(ToJson(one));
    return json;
}
template <typename T>
void FromJson(nlohmann::json const& json, std::vector<T>& list) {
    for (nlohmann::json const& one : json) FromJson(one, list.emplace_back());
}

template <typename T>
Json ToJson(std::optional<T> const& value) {
    return value ? ToJson(*value) : Json();
}
template <typename T>
void FromJson(nlohmann::json const& json, std::optional<T>& value) {
    if (!json.is_null()) FromJson(json, value.emplace());
}

template <std::size_t I = 1>
ImportSettings SettingsOfKind(nlohmann::json const& json, std::string const& kind) {
    if constexpr (I == std::variant_size_v<ImportSettings>) {
        throw CommandError("there are no settings of the kind \"" + kind + "\"");
    } else {
        if (kind != kKinds[I]) return SettingsOfKind<I + 1>(json, kind);
        std::variant_alternative_t<I, ImportSettings> settings;
        FromJson(json, settings);
        return settings;
    }
}

}  // namespace

Json SettingsJson(ImportSettings const& settings) {
    Json json;
    std::visit(
        [&](auto const& held) {
            if constexpr (!std::is_same_v<std::decay_t<decltype(held)>, std::monostate>) {
                json = {{"kind", kKinds[settings.index()]}};
                json.update(ToJson(held));
            }
        },
        settings);
    return json;
}

ImportSettings SettingsFromJson(nlohmann::json const& json) {
    if (json.is_null()) return {};
    return SettingsOfKind(json, json.at("kind").get<std::string>());
}

}  // namespace norva
