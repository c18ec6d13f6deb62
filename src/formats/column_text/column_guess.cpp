#include "formats/column_text/column_guess.h"

#include "platform/text.h"

#include <algorithm>

namespace norva {

namespace {

bool IsMadeOf(std::string_view text, std::string_view characters) {
    return text.find_first_not_of(characters) == std::string_view::npos;
}

/// What a class sets of a column; kUnchanged leaves a field alone.
constexpr int kUnchanged = -99;
struct ClassSettings {
    int dataType;
    int displayFormat;
    int decimalPlaces;
    int templateFormat;
};

ClassSettings SettingsOf(ColumnClass columnClass) {
    switch (columnClass) {
        case ColumnClass::Date:
            return {DataType::kDouble, DisplayFormat::kDate, kUnchanged, 0};
        case ColumnClass::Time:
            return {DataType::kDouble, DisplayFormat::kTime, 3, 2};
        case ColumnClass::Geographic:
            return {DataType::kDouble, DisplayFormat::kGeographic, 3, 0};
        case ColumnClass::Short:
            return {DataType::kShort, DisplayFormat::kFixed, kUnchanged, kUnchanged};
        case ColumnClass::Long:
            return {DataType::kLong, DisplayFormat::kFixed, kUnchanged, kUnchanged};
        case ColumnClass::Float:
            return {DataType::kFloat, DisplayFormat::kFixed, 4, kUnchanged};
        case ColumnClass::Double:
            return {DataType::kDouble, DisplayFormat::kFixed, 6, kUnchanged};
        case ColumnClass::FloatExponent:
            return {DataType::kFloat, DisplayFormat::kExponent, 4, kUnchanged};
        case ColumnClass::DoubleExponent:
            return {DataType::kDouble, DisplayFormat::kExponent, 4, kUnchanged};
        case ColumnClass::Text:
            return {DataType::kText, kUnchanged, kUnchanged, kUnchanged};
        case ColumnClass::None:
            break;
    }
    return {DataType::kFloat, DisplayFormat::kFixed, kUnchanged, kUnchanged};
}

void SetUnlessUnchanged(int& field, int value) {
    if (value != kUnchanged) field = value;
}

}  // namespace

ColumnClass ClassifyToken(std::string_view token) {
    bool const hasExponent = Contains(token, "E");
    if (std::ranges::count(token, '/') >= 2) return ColumnClass::Date;
    if (std::ranges::count(token, '-') >= 2 && !hasExponent) return ColumnClass::Date;
    if (Contains(token, ":")) return ColumnClass::Time;
    auto const points = std::ranges::count(token, '.');
    if (points >= 2) return ColumnClass::Geographic;
    if (points == 0) {
        if (!IsMadeOf(token, "+-0123456789")) return ColumnClass::None;
        return token.size() >= 6 ? ColumnClass::Long : ColumnClass::Short;
    }
    if (!IsMadeOf(token, "+-0123456789.E")) return ColumnClass::None;
    bool const isLong = token.size() - token.find('.') - 1 >= 6;
    if (hasExponent) return isLong ? ColumnClass::DoubleExponent : ColumnClass::FloatExponent;
    return isLong ? ColumnClass::Double : ColumnClass::Float;
}

std::vector<ColumnClass> GuessColumns(TokenRows const& rows, std::vector<std::string> const& labels,
                                      std::vector<NorvaChannelStruct>& columns) {
    columns.assign(labels.size(), {});
    for (std::size_t i = 0; i < labels.size(); ++i) columns[i].name = labels[i];

    std::vector<ColumnClass> classes(labels.size(), ColumnClass::None);
    std::vector<bool> isDecided(labels.size());
    std::string token;
    for (std::vector<std::string> const& row : rows) {
        if (row.size() <= 2) continue;  // a marker line, as a rule
        for (std::size_t i = 0; i < std::min(row.size(), labels.size()); ++i) {
            if (isDecided[i]) continue;
            ToUpper(row[i], token);
            ColumnClass const found = ClassifyToken(token);
            if (found != ColumnClass::None) {
                classes[i] = found;
                isDecided[i] = true;
            } else if (!IsMadeOf(token, "0123456789.+-E") && token != "*") {
                classes[i] = ColumnClass::Text;
                columns[i].dataType = DataType::kText;
                columns[i].arraySize = std::max(columns[i].arraySize, static_cast<int>(token.size()));
            }
        }
    }
    return classes;
}

void ApplyClass(ColumnClass columnClass, NorvaChannelStruct& column) {
    ClassSettings const settings = SettingsOf(columnClass);
    column.dataType = settings.dataType;
    SetUnlessUnchanged(column.displayFormat, settings.displayFormat);
    SetUnlessUnchanged(column.decimalPlaces, settings.decimalPlaces);
    SetUnlessUnchanged(column.templateFormat, settings.templateFormat);
}

int MatchDateTemplate(std::vector<std::string> const& templates, std::string_view token) {
    auto const fits = [token](std::string const& text) {
        return text.size() == token.size() && text.find('/') == token.find('/');
    };
    auto const found = std::ranges::find_if(templates, fits);
    return found == templates.end() ? -1 : static_cast<int>(found - templates.begin());
}

int MatchTimeTemplate(std::vector<std::string> const& templates, std::string_view token) {
    auto const fits = [token](std::string const& text) {
        return (Contains(text, ".") && Contains(token, ".")) ||
               (text.size() == token.size() && text.find(':') == token.find(':'));
    };
    auto const found = std::ranges::find_if(templates, fits);
    return found == templates.end() ? -1 : static_cast<int>(found - templates.begin());
}

}  // namespace norva
