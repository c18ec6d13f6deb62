#include "common/column_template.h"
#include "common/command_error.h"
#include "common/set_channels_dialog.h"
#include "dialog_drivers.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <map>

namespace norva {

namespace {

using namespace set_channels;

std::string_view WithoutUnits(std::string_view title) {
    std::string_view name = title.substr(0, title.find_first_of(":("));
    while (!name.empty() && name.back() == ' ') name.remove_suffix(1);
    return name;
}

/// Column of the preview: by its title, by the name part of its title, by its 1-based number.
int FindColumn(CDialogHand const& hand, std::string const& wanted) {
    std::vector<std::string> const& titles = hand.Control(kGrid).columns;
    std::vector<std::string> names;
    for (std::size_t i = 0; i < titles.size(); ++i) {
        if (EqualIgnoringCase(titles[i], wanted)) return static_cast<int>(i);
        names.emplace_back(WithoutUnits(titles[i]));
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (EqualIgnoringCase(names[i], wanted)) return static_cast<int>(i);
    }
    return FindNamed(names, wanted, 1, "column");
}

/// Chooses a template by its text or its code.
void ChooseTemplate(CDialogHand& hand, int combo, std::string const& wanted) {
    std::vector<std::string> const& items = hand.Control(combo).items;
    hand.Choose(combo, FindNamed(items, wanted, 0, "template"));
}

void SetColumn(CDialogHand& hand, ColumnOption const& option) {
    hand.SelectColumn(kGrid, FindColumn(hand, option.column));
    if (!option.type.empty()) hand.Click(RadioOf(option.type));
    if (option.width) hand.Set(kWidthEdit, std::to_string(*option.width));
    if (option.dateTemplate) {
        bool const date = hand.Control(kDateRadio).checked;
        if (!date && !hand.Control(kTimeRadio).checked) {
            throw CommandError("column " + option.column + ": a template goes with the types date and time");
        }
        ChooseTemplate(hand, date ? kDateCombo : kTimeCombo, *option.dateTemplate);
    }
    if (option.name) hand.Set(kName, *option.name);
    if (option.units) hand.Set(kUnits, *option.units);
}

}  // namespace

void ChooseFormat(CDialogHand& hand, std::string const& label) {
    hand.SelectRow("Formats", FindNamed(hand.Control("Formats").items, label, 1, "format"));
    hand.Click(kButtonOk);
}

void SetDelimiters(CDialogHand& hand, std::string const& delimiters) {
    std::map<char, int> const boxes = {{'\t', 4048}, {' ', 4049}, {';', 4050}, {',', 4052}};
    std::string other;
    for (auto const& [character, box] : boxes) hand.Check(box, delimiters.find(character) != std::string::npos);
    for (char const character : delimiters) {
        if (!boxes.contains(character)) other += character;
    }
    if (other.size() > 1) throw CommandError("--delimiters: only one character besides , ; tab and space");
    hand.Check(4051, !other.empty());
    if (!other.empty()) hand.Set(4054, other);
    hand.Click(kButtonOk);
}

void SetColumns(CDialogHand& hand, ImportOptions const& options, ColumnTemplate* chosen) {
    if (!options.columnTemplate.empty()) ApplyTemplate(ReadTemplate(TemplatePath(options.columnTemplate)), hand);
    if (options.skip) hand.Set(kSkipCombo, std::to_string(*options.skip));
    if (!options.delimiters.empty()) hand.Click(kDelimiters);
    if (options.headerLine) {
        int const line = *options.headerLine;
        if (line > hand.Control(kHeaderList).RowCount()) hand.Set(kSkipCombo, std::to_string(line));
        hand.DoubleClick(kHeaderList, line - 1);
    }
    for (ColumnOption const& column : options.columns) SetColumn(hand, column);
    if (!options.labelColumn.empty()) {
        hand.SelectColumn(kGrid, FindColumn(hand, options.labelColumn));
        hand.Check(kLabelCheck, true);
    }
    if (chosen != nullptr) *chosen = CaptureTemplate(hand);
    hand.Click(kButtonOk);
}

}  // namespace norva
