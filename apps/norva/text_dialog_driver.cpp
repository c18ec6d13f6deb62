#include "common/command_error.h"
#include "dialog_drivers.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <map>

namespace norva {

namespace {

// Controls of "Import: Set Channels".
constexpr int kHeaderList = 4018;
constexpr int kSkipCombo = 4073;
constexpr int kDelimiters = 4047;
constexpr int kLabelCheck = 4025;
constexpr int kWidthEdit = 4061;
constexpr int kDateCombo = 4063;
constexpr int kTimeCombo = 4065;
char const* const kGrid = "Data Preview";

std::map<std::string, int> const kTypeRadios = {
    {"text", 4019}, {"float", 4020}, {"double", 4021},     {"short", 4022}, {"long", 4023},
    {"date", 4062}, {"time", 4064},  {"geographic", 4083}, {"skip", 4024},
};

bool EqualIgnoringCase(std::string_view first, std::string_view second) {
    return std::equal(first.begin(), first.end(), second.begin(), second.end(), [](char a, char b) {
        return std::toupper(static_cast<unsigned char>(a)) == std::toupper(static_cast<unsigned char>(b));
    });
}

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
    if (!option.type.empty()) hand.Click(kTypeRadios.at(option.type));
    if (option.width) hand.Set(kWidthEdit, std::to_string(*option.width));
    if (option.dateTemplate) {
        bool const date = hand.Control(4062).checked;
        if (!date && !hand.Control(4064).checked) {
            throw CommandError("column " + option.column + ": a template goes with the types date and time");
        }
        ChooseTemplate(hand, date ? kDateCombo : kTimeCombo, *option.dateTemplate);
    }
    if (option.name) hand.Set("Name:", *option.name);
    if (option.units) hand.Set("Units:", *option.units);
}

}  // namespace

int FindNamed(std::vector<std::string> const& names, std::string const& wanted, int first, std::string const& what) {
    auto found = std::find(names.begin(), names.end(), wanted);
    if (found == names.end()) {
        found = std::find_if(names.begin(), names.end(),
                             [&wanted](std::string const& name) { return EqualIgnoringCase(name, wanted); });
    }
    if (found != names.end()) return static_cast<int>(found - names.begin());
    int number = 0;
    auto const [end, error] = std::from_chars(wanted.data(), wanted.data() + wanted.size(), number);
    if (error == std::errc{} && end == wanted.data() + wanted.size() && number >= first &&
        number - first < static_cast<int>(names.size())) {
        return number - first;
    }
    std::string known;
    for (std::string const& name : names) {
        if (known.size() > 200) {
            known += ", ...";
            break;
        }
        known += (known.empty() ? "" : ", ") + name;
    }
    throw CommandError("there is no " + what + " '" + wanted + "' (there are: " + known + ")");
}

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

void SetColumns(CDialogHand& hand, ImportOptions const& options) {
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
    hand.Click(kButtonOk);
}

}  // namespace norva
