#include "common/column_template.h"

#include "common/command_error.h"
#include "common/set_channels_dialog.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace norva {

namespace {

namespace fs = std::filesystem;
using namespace set_channels;

constexpr int kCheckedRows = 5;

std::string SelectedItem(CControl const& combo) {
    return combo.selected.empty() ? "" : combo.items[static_cast<std::size_t>(combo.selected.front())];
}

int SkipOf(CDialogHand const& hand) {
    std::string const text = SelectedItem(hand.Control(kSkipCombo));
    return text.empty() ? 0 : std::stoi(text);
}

std::vector<std::string> HeaderLines(CDialogHand const& hand) {
    return hand.Control(kHeaderList).items;
}

/// The line that names every column, in their order.
int FindHeaderLine(std::vector<std::string> const& lines, std::vector<std::string> const& titles) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
        std::size_t at = 0;
        bool const namesAll = std::ranges::all_of(titles, [&](std::string const& title) {
            at = lines[i].find(title, at);
            bool const found = !title.empty() && at != std::string::npos;
            if (found) at += title.size();
            return found;
        });
        if (namesAll) return static_cast<int>(i) + 1;
    }
    return 0;
}

bool HoldsOnly(std::string_view token, std::string_view characters) {
    return !token.empty() && token.find_first_not_of(characters) == std::string_view::npos;
}

/// Whether a column of this type could hold the token as it is meant.
bool Suits(std::string_view token, ColumnTemplate::Column const& column) {
    if (column.type == "text" || column.type == "skip" || token == "*") return true;
    if (column.type == "short" || column.type == "long") return HoldsOnly(token, "+-0123456789");
    if (column.type == "float" || column.type == "double") return HoldsOnly(token, "+-.0123456789eE");
    if (column.type == "geographic") return HoldsOnly(token, "+-.:0123456789");
    // Dates and times have their separators where their template has them, as far as both go.
    for (std::size_t i = 0; i < std::min(token.size(), column.format.size()); ++i) {
        std::string_view const separators = "/-:. ";
        bool const isSeparator = separators.find(token[i]) != std::string_view::npos;
        if (isSeparator != (separators.find(column.format[i]) != std::string_view::npos)) return false;
    }
    return HoldsOnly(token, "/-:.+0123456789");
}

std::string ColumnText(std::size_t index, ColumnTemplate::Column const& column) {
    return "column " + std::to_string(index + 1) + (column.name.empty() ? "" : " \"" + column.name + "\"");
}

/// The selected column of the preview; the same again at the end.
class CColumnKeeper {
public:
    explicit CColumnKeeper(CDialogHand& hand) : m_hand(hand), m_column(hand.Control(kGrid).column) {}
    CColumnKeeper(CColumnKeeper const&) = delete;
    CColumnKeeper& operator=(CColumnKeeper const&) = delete;
    ~CColumnKeeper() {
        try {
            if (m_column >= 0) m_hand.SelectColumn(kGrid, m_column);
        } catch (CommandError const&) {
            m_column = -1;  // it is gone
        }
    }

private:
    CDialogHand& m_hand;
    int m_column;
};

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

nlohmann::ordered_json JsonOf(ColumnTemplate const& columns) {
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (ColumnTemplate::Column const& column : columns.columns) {
        nlohmann::ordered_json one = {{"type", column.type}, {"name", column.name}, {"units", column.units}};
        if (!column.format.empty()) one["format"] = column.format;
        if (column.width > 0) one["width"] = column.width;
        list.push_back(std::move(one));
    }
    nlohmann::ordered_json json = {{"norva", "column template"}, {"version", 1}, {"skip", columns.skip}};
    if (columns.headerLine > 0) json["header"] = {{"line", columns.headerLine}, {"text", columns.headerText}};
    if (columns.labelColumn > 0) json["labelColumn"] = columns.labelColumn;
    json["columns"] = std::move(list);
    return json;
}

ColumnTemplate FromJson(nlohmann::json const& json, std::string const& path) {
    if (!json.is_object() || json.value("norva", "") != "column template") Reject(path, "it does not say so");
    if (json.value("version", 0) != 1) Reject(path, "its version is not 1");
    ColumnTemplate result;
    result.skip = json.at("skip").get<int>();
    if (json.contains("header")) {
        result.headerLine = json["header"].at("line").get<int>();
        result.headerText = json["header"].at("text").get<std::string>();
    }
    result.labelColumn = json.value("labelColumn", 0);
    for (nlohmann::json const& one : json.at("columns")) {
        ColumnTemplate::Column column{one.at("type").get<std::string>(), one.value("name", ""), one.value("units", ""),
                                      one.value("format", ""), one.value("width", 0)};
        if (RadioOf(column.type) == 0) Reject(path, "there is no type \"" + column.type + "\"");
        result.columns.push_back(std::move(column));
    }
    auto const count = static_cast<int>(result.columns.size());
    if (result.skip < 0 || result.headerLine < 0 || result.labelColumn < 0 || result.labelColumn > count) {
        Reject(path, "a line or column number is out of range");
    }
    return result;
}

}  // namespace

ColumnTemplate CaptureTemplate(CDialogHand& hand) {
    CColumnKeeper const keeper(hand);
    ColumnTemplate result;
    result.skip = SkipOf(hand);
    std::vector<std::string> const titles = hand.Control(kGrid).columns;
    for (std::size_t i = 0; i < titles.size(); ++i) {
        hand.SelectColumn(kGrid, static_cast<int>(i));
        ColumnTemplate::Column column;
        for (auto const& [type, radio] : kTypes) {
            if (hand.Control(radio).checked) column.type = type;
        }
        column.name = hand.Control(kName).text;
        column.units = hand.Control(kUnits).text;
        if (column.type == "text") column.width = std::atoi(hand.Control(kWidthEdit).text.c_str());
        if (column.type == "date") column.format = SelectedItem(hand.Control(kDateCombo));
        if (column.type == "time") column.format = SelectedItem(hand.Control(kTimeCombo));
        if (hand.Control(kLabelCheck).checked) result.labelColumn = static_cast<int>(i) + 1;
        result.columns.push_back(std::move(column));
    }
    std::vector<std::string> const lines = HeaderLines(hand);
    result.headerLine = FindHeaderLine(lines, titles);
    if (result.headerLine > 0) result.headerText = lines[static_cast<std::size_t>(result.headerLine) - 1];
    return result;
}

std::vector<std::string> TemplateMisfits(ColumnTemplate const& columns, CDialogHand& hand) {
    int const before = SkipOf(hand);
    std::vector<std::string> misfits;
    if (before != columns.skip) {
        std::vector<std::string> const& offered = hand.Control(kSkipCombo).items;
        auto const row = std::ranges::find(offered, std::to_string(columns.skip));
        if (row == offered.end()) {
            return {std::to_string(columns.skip) + " lines cannot be skipped; the data begin after line " +
                    (offered.empty() ? "0" : offered.front())};
        }
        hand.Choose(kSkipCombo, static_cast<int>(row - offered.begin()));
    }
    if (columns.headerLine > 0) {
        std::vector<std::string> const lines = HeaderLines(hand);
        auto const line = static_cast<std::size_t>(columns.headerLine) - 1;
        if (line >= lines.size()) {
            misfits.push_back("there is no header line " + std::to_string(columns.headerLine) + " \"" +
                              columns.headerText + "\"");
        } else if (lines[line] != columns.headerText) {
            misfits.push_back("line " + std::to_string(columns.headerLine) + " is \"" + lines[line] + "\", not \"" +
                              columns.headerText + "\"");
        }
    }
    CControl const& grid = hand.Control(kGrid);
    if (grid.columns.size() != columns.columns.size()) {
        misfits.push_back("the rows have " + std::to_string(grid.columns.size()) + " columns, not " +
                          std::to_string(columns.columns.size()));
    } else {
        // The dialog of an instrument's log, which offers no rows to skip, knows that log's own dates and times.
        bool const isLog = !hand.Control(kSkipCombo).enabled;
        for (std::size_t i = 0; i < columns.columns.size(); ++i) {
            ColumnTemplate::Column const& column = columns.columns[i];
            if (isLog && !column.format.empty()) continue;
            for (std::size_t r = 0; r < std::min<std::size_t>(grid.rows.size(), kCheckedRows); ++r) {
                if (IsMarker(grid.rows[r]) || i >= grid.rows[r].size() || Suits(grid.rows[r][i], column)) continue;
                misfits.push_back("row " + std::to_string(r + 1) + ", " + ColumnText(i, column) + " holds \"" +
                                  grid.rows[r][i] + "\", which is no " + column.type +
                                  (column.format.empty() ? "" : " like " + column.format));
                break;
            }
        }
    }
    if (!misfits.empty() && SkipOf(hand) != before) hand.Set(kSkipCombo, std::to_string(before));
    return misfits;
}

void ApplyTemplate(ColumnTemplate const& columns, CDialogHand& hand) {
    std::vector<std::string> const misfits = TemplateMisfits(columns, hand);
    if (!misfits.empty()) {
        std::string text = "the template does not fit this file";
        for (std::string const& misfit : misfits) text += "\n  " + misfit;
        throw CommandError(text);
    }
    CColumnKeeper const keeper(hand);
    for (std::size_t i = 0; i < columns.columns.size(); ++i) {
        ColumnTemplate::Column const& column = columns.columns[i];
        bool const isLabel = static_cast<int>(i) + 1 == columns.labelColumn;
        hand.SelectColumn(kGrid, static_cast<int>(i));
        if (hand.Control(kLabelCheck).checked != isLabel) hand.Click(kLabelCheck);
        int const radio = RadioOf(column.type);
        if (!hand.Control(radio).checked) hand.Click(radio);
        // A text of this file that is longer than those of the template's is not to be cut.
        if (column.width > std::atoi(hand.Control(kWidthEdit).text.c_str())) {
            hand.Set(kWidthEdit, std::to_string(column.width));
        }
        if (!column.format.empty()) hand.Set(column.type == "date" ? kDateCombo : kTimeCombo, column.format);
        if (hand.Control(kName).text != column.name) hand.Set(kName, column.name);
        if (hand.Control(kUnits).text != column.units) hand.Set(kUnits, column.units);
    }
}

std::string TemplatePath(std::string const& nameOrPath) {
    if (nameOrPath.find('/') != std::string::npos || nameOrPath.ends_with(".json")) return nameOrPath;
    return (UserFolder() / (nameOrPath + ".json")).string();
}

ColumnTemplate ReadTemplate(std::string const& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        std::string known;
        for (std::string const& name : TemplateNames()) known += (known.empty() ? "" : ", ") + name;
        throw CommandError(path + ": there is no such column template" +
                           (known.empty() ? "" : " (yours are: " + known + ")"));
    }
    try {
        return FromJson(nlohmann::json::parse(in), path);
    } catch (nlohmann::json::exception const& error) {
        Reject(path, error.what());
    }
}

void WriteTemplate(std::string const& path, ColumnTemplate const& columns) {
    fs::path const target(path);
    std::error_code error;
    if (target.has_parent_path()) fs::create_directories(target.parent_path(), error);
    std::string const next = path + ".new";
    {
        std::ofstream out(next, std::ios::binary);
        out << JsonOf(columns).dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << "\n";
        out.close();
        if (!out) error = std::make_error_code(std::errc::io_error);
    }
    if (!error) fs::rename(next, target, error);
    if (!error) return;
    std::error_code ignored;
    fs::remove(next, ignored);
    throw CommandError(path + ": cannot be written: " + error.message());
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
