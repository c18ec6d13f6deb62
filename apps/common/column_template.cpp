#include "common/column_template.h"

#include "common/command_error.h"
#include "common/names.h"
#include "common/settings_json.h"
#include "common/text_file.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace norva {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kCheckedRows = 5;

/// The line that names every column, in their order.
int FindHeaderLine(std::vector<PreviewLine> const& lines, int count, std::vector<std::string> const& titles) {
    for (int i = 0; i < count; ++i) {
        std::string const& line = lines[static_cast<std::size_t>(i)].text;
        std::size_t at = 0;
        bool const namesAll = std::ranges::all_of(titles, [&](std::string const& title) {
            at = line.find(title, at);
            bool const found = !title.empty() && at != std::string::npos;
            if (found) at += title.size();
            return found;
        });
        if (namesAll) return i + 1;
    }
    return 0;
}

bool HoldsOnly(std::string_view token, std::string_view characters) {
    return !token.empty() && token.find_first_not_of(characters) == std::string_view::npos;
}

/// The templates of a column's type; null for other types than dates and times.
ValueTemplates const* TemplatesOf(ColumnType type) {
    if (type == ColumnType::Date) return &DateTemplates();
    return type == ColumnType::Time ? &TimeTemplates() : nullptr;
}

/// Name of a date's or time's template; empty for none.
std::string FormatName(NorvaChannelStruct const& column) {
    ValueTemplates const* const templates = TemplatesOf(TypeOf(column));
    int const place = templates != nullptr ? templates->IndexOf(column.templateFormat) : -1;
    return place < 0 ? "" : templates->names[static_cast<std::size_t>(place)];
}

/// Whether a column of this type could hold the value as it is meant.
bool Suits(std::string_view value, NorvaChannelStruct const& column) {
    if (value == "*") return true;
    switch (TypeOf(column)) {
        case ColumnType::Text:
        case ColumnType::Skipped:
            return true;
        case ColumnType::Short:
        case ColumnType::Long:
            return HoldsOnly(value, "+-0123456789");
        case ColumnType::Float:
        case ColumnType::Double:
            return HoldsOnly(value, "+-.0123456789eE");
        case ColumnType::Geographic:
            return HoldsOnly(value, "+-.:0123456789");
        default:
            break;
    }
    // Dates and times have their separators where their template has them, as far as both go.
    std::string const format = FormatName(column);
    for (std::size_t i = 0; i < std::min(value.size(), format.size()); ++i) {
        std::string_view const separators = "/-:. ";
        bool const isSeparator = separators.find(value[i]) != std::string_view::npos;
        if (isSeparator != (separators.find(format[i]) != std::string_view::npos)) return false;
    }
    return HoldsOnly(value, "/-:.+0123456789");
}

std::string ColumnText(std::size_t index, NorvaChannelStruct const& column) {
    return "column " + std::to_string(index + 1) + (column.name.empty() ? "" : " \"" + column.name + "\"");
}

fs::path UserFolder() {
    char const* const config = std::getenv("XDG_CONFIG_HOME");
    char const* const home = std::getenv("HOME");
    fs::path folder =
        config != nullptr && *config == '/' ? fs::path(config) : fs::path(home != nullptr ? home : ".") / ".config";
    return folder / "norva" / "templates";
}

/// Whether a row of the preview is the start of a line: the word "line" in any case stands in it.
bool IsMarker(std::vector<std::string> const& row) {
    return std::ranges::any_of(row, [](std::string const& cell) {
        constexpr std::string_view word = "line";
        auto const isSame = [](char c, char of) { return c == of || c + ('a' - 'A') == of; };
        return std::search(cell.begin(), cell.end(), word.begin(), word.end(), isSame) != cell.end();
    });
}

[[noreturn]] void Reject(std::string const& path, std::string const& why) {
    throw CommandError(path + ": is no column template: " + why);
}

/// The column that a template's file describes.
NorvaChannelStruct ColumnFromJson(nlohmann::json const& json, std::string const& path) {
    NorvaChannelStruct column;
    column.name = json.value("name", "");
    column.units = json.value("units", "");
    std::string const typeName = json.at("type").get<std::string>();
    std::optional<ColumnType> const type = FindColumnType(typeName);
    if (!type) Reject(path, "there is no type \"" + typeName + "\"");
    switch (*type) {
        case ColumnType::Text:
            column.dataType = DataType::kText;
            column.arraySize = std::max(json.value("width", 1), 1);
            break;
        case ColumnType::Float:
            break;
        case ColumnType::Short:
            column.dataType = DataType::kShort;
            break;
        case ColumnType::Long:
            column.dataType = DataType::kLong;
            break;
        case ColumnType::Skipped:
            column.dataType = DataType::kSkipped;
            break;
        default:
            column.dataType = DataType::kDouble;
    }
    if (*type == ColumnType::Date) column.displayFormat = DisplayFormat::kDate;
    if (*type == ColumnType::Time) column.displayFormat = DisplayFormat::kTime;
    if (*type == ColumnType::Geographic) column.displayFormat = DisplayFormat::kGeographic;
    ValueTemplates const* const templates = TemplatesOf(*type);
    std::string const format = json.value("format", "");
    if (templates != nullptr && !format.empty()) {
        auto const found = std::ranges::find(templates->names, format);
        if (found == templates->names.end()) Reject(path, "there is no format \"" + format + "\" of a " + typeName);
        column.templateFormat = templates->codes[static_cast<std::size_t>(found - templates->names.begin())];
    }
    return column;
}

/// A proposal is kept whole: its reading would not come back from types and names.
nlohmann::ordered_json ProposalTemplateJson(ColumnTemplate const& columns) {
    return {{"norva", "column template"},
            {"version", 2},
            {"header", {{"line", columns.headerLine}, {"text", columns.headerText}}},
            {"settings", SettingsJson(columns.settings)}};
}

ColumnTemplate ProposalTemplateFromJson(nlohmann::json const& json, std::string const& path) {
    ImportSettings settings = SettingsFromJson(json.at("settings"));
    auto* const columns = std::get_if<ColumnTextSettings>(&settings);
    if (columns == nullptr || !columns->reading || columns->columns.empty() ||
        columns->columnReadings.size() != columns->columns.size()) {
        Reject(path, "its settings are no proposal for a text");
    }
    return {std::move(*columns), json.at("header").at("line").get<int>(),
            json.at("header").at("text").get<std::string>()};
}

/// A step of ApplyTemplate.
void Require(Status const& status) {
    if (!status) throw CommandError(status.Reason().empty() ? status.Text() : status.Reason());
}

}  // namespace

ColumnTemplate TemplateOf(CColumnTextDraft const& draft) {
    ColumnTemplate result;
    result.settings = draft.Settings();
    std::vector<PreviewLine> const& lines = draft.Preview().lines;
    result.headerLine = FindHeaderLine(lines, draft.HeaderCount(), draft.Titles());
    if (result.headerLine > 0) result.headerText = lines[static_cast<std::size_t>(result.headerLine) - 1].text;
    return result;
}

std::vector<std::string> TemplateMisfits(ColumnTemplate const& columns, CColumnTextDraft const& draft) {
    CColumnTextDraft trial = draft;
    std::vector<NorvaChannelStruct> const& wanted = columns.settings.columns;
    if (trial.Settings().skip != columns.settings.skip) {
        if (Status const status = trial.SetSkip(columns.settings.skip); !status) return {status.Reason()};
    }
    std::vector<std::string> misfits;
    if (columns.headerLine > trial.HeaderCount()) {
        misfits.push_back("there is no header line " + std::to_string(columns.headerLine) + " \"" + columns.headerText +
                          "\"");
    } else if (columns.headerLine > 0) {
        std::string const& line = trial.Preview().lines[static_cast<std::size_t>(columns.headerLine) - 1].text;
        if (line != columns.headerText) {
            misfits.push_back("line " + std::to_string(columns.headerLine) + " is \"" + line + "\", not \"" +
                              columns.headerText + "\"");
        }
    }
    if (trial.Titles().size() != wanted.size()) {
        misfits.push_back("the rows have " + std::to_string(trial.Titles().size()) + " columns, not " +
                          std::to_string(wanted.size()));
        return misfits;
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        // An instrument's log has dates and times of its own.
        std::string const format = FormatName(wanted[i]);
        if (trial.Preview().isSeaSpy && !format.empty()) continue;
        for (std::size_t r = 0; r < std::min(trial.Rows().size(), kCheckedRows); ++r) {
            std::vector<std::string> const& row = trial.Rows()[r];
            if (IsMarker(row) || i >= row.size() || Suits(row[i], wanted[i])) continue;
            misfits.push_back("row " + std::to_string(r + 1) + ", " + ColumnText(i, wanted[i]) + " holds \"" + row[i] +
                              "\", which is no " + std::string(ColumnTypeName(TypeOf(wanted[i]))) +
                              (format.empty() ? "" : " like " + format));
            break;
        }
    }
    return misfits;
}

void ApplyTemplate(ColumnTemplate const& columns, CColumnTextDraft& draft, TemplateFit fit) {
    if (columns.settings.reading) {
        throw CommandError("the template holds a proposal from a whole file, which the first rows alone do not take");
    }
    std::vector<std::string> misfits;
    if (fit == TemplateFit::Checked) misfits = TemplateMisfits(columns, draft);
    if (!misfits.empty()) {
        std::string text = "the template does not fit this file";
        for (std::string const& misfit : misfits) text += "\n  " + misfit;
        throw CommandError(text);
    }
    CColumnTextDraft next = draft;
    if (next.Settings().skip != columns.settings.skip) Require(next.SetSkip(columns.settings.skip));
    if (next.Settings().columns.size() != columns.settings.columns.size()) {
        throw CommandError("the rows have " + std::to_string(next.Settings().columns.size()) + " columns, not " +
                           std::to_string(columns.settings.columns.size()));
    }
    next.SetLabelColumn(columns.settings.labelColumn);
    for (int i = 0; i < next.ColumnCount(); ++i) {
        NorvaChannelStruct const& wanted = columns.settings.columns[static_cast<std::size_t>(i)];
        auto const now = [&]() -> NorvaChannelStruct const& {
            return next.Settings().columns[static_cast<std::size_t>(i)];
        };
        ColumnType const type = TypeOf(wanted);
        if (type != TypeOf(now())) Require(next.SetType(i, type));
        // A text of this file that is longer than those of the template's is not to be cut.
        if (type == ColumnType::Text && wanted.arraySize > now().arraySize) {
            Require(next.SetTextSize(i, wanted.arraySize));
        }
        if (TemplatesOf(type) != nullptr && wanted.templateFormat != -1) {
            Require(next.SetTemplate(i, wanted.templateFormat));
        }
        if (now().name != wanted.name) next.SetName(i, wanted.name);
        if (now().units != wanted.units) next.SetUnits(i, wanted.units);
    }
    draft = std::move(next);
}

nlohmann::ordered_json TemplateJson(ColumnTemplate const& columns) {
    if (columns.settings.reading) return ProposalTemplateJson(columns);
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (NorvaChannelStruct const& column : columns.settings.columns) {
        ColumnType const type = TypeOf(column);
        nlohmann::ordered_json one = {{"type", ColumnTypeName(type)}, {"name", column.name}, {"units", column.units}};
        if (std::string const format = FormatName(column); !format.empty()) one["format"] = format;
        if (type == ColumnType::Text) one["width"] = column.arraySize;
        list.push_back(std::move(one));
    }
    nlohmann::ordered_json json = {{"norva", "column template"}, {"version", 1}, {"skip", columns.settings.skip}};
    if (columns.headerLine > 0) json["header"] = {{"line", columns.headerLine}, {"text", columns.headerText}};
    if (columns.settings.labelColumn >= 0) json["labelColumn"] = columns.settings.labelColumn + 1;
    json["columns"] = std::move(list);
    return json;
}

ColumnTemplate TemplateFromJson(nlohmann::json const& json, std::string const& path) {
    if (!json.is_object() || json.value("norva", "") != "column template") Reject(path, "it does not say so");
    if (json.value("version", 0) == 2) return ProposalTemplateFromJson(json, path);
    if (json.value("version", 0) != 1) Reject(path, "its version is neither 1 nor 2");
    ColumnTemplate result;
    ColumnTextSettings& settings = result.settings;
    settings.skip = json.at("skip").get<int>();
    if (json.contains("header")) {
        result.headerLine = json["header"].at("line").get<int>();
        result.headerText = json["header"].at("text").get<std::string>();
    }
    settings.labelColumn = json.value("labelColumn", 0) - 1;
    for (nlohmann::json const& one : json.at("columns")) settings.columns.push_back(ColumnFromJson(one, path));
    bool const isInRange = settings.skip >= 0 && result.headerLine >= 0 && settings.labelColumn >= -1 &&
                           settings.labelColumn < static_cast<int>(settings.columns.size());
    if (!isInRange) Reject(path, "a line or column number is out of range");
    return result;
}

std::string TemplatePath(std::string const& nameOrPath) {
    if (nameOrPath.find('/') != std::string::npos || nameOrPath.ends_with(".json")) return nameOrPath;
    return (UserFolder() / (nameOrPath + ".json")).string();
}

ColumnTemplate ReadTemplate(std::string const& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        std::string const known = ListOf(TemplateNames());
        throw CommandError(path + ": there is no such column template" +
                           (known.empty() ? "" : " (yours are: " + known + ")"));
    }
    try {
        return TemplateFromJson(nlohmann::json::parse(in), path);
    } catch (nlohmann::json::exception const& error) {
        Reject(path, error.what());
    }
}

void WriteTemplate(std::string const& path, ColumnTemplate const& columns) {
    fs::path const target(path);
    std::error_code ignored;
    if (target.has_parent_path()) fs::create_directories(target.parent_path(), ignored);
    WriteTextFile(path, TemplateJson(columns).dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n");
}

std::vector<std::string> TemplateNames() {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_entry const& entry : fs::directory_iterator(UserFolder(), error)) {
        if (entry.path().extension() == ".json") names.push_back(entry.path().stem().string());
    }
    std::ranges::sort(names);
    return names;
}

}  // namespace norva
