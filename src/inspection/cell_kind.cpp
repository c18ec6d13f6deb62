#include "inspection/cell_kind.h"

#include "inspection/unit_words.h"
#include "platform/text.h"

#include <algorithm>
#include <array>

namespace norva {

namespace {

bool EqualsWord(std::string_view text, std::string_view upper) {
    if (text.size() != upper.size()) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char const c = text[i] >= 'a' && text[i] <= 'z' ? static_cast<char>(text[i] - 32) : text[i];
        if (c != upper[i]) return false;
    }
    return true;
}

bool TryNumber(std::string_view text, CellRules const& rules, std::string_view suffix, CellRead& read) {
    char const c = text.front();
    if (!IsDigit(c) && c != '-' && c != '.' && c != '+' && c != ',') return false;
    if (!ScanNumberText(text, rules.marks, read.number)) return false;
    if (read.number.length != text.size() && (suffix.empty() || text.substr(read.number.length) != suffix))
        return false;
    read.kind = CellKind::Number;
    return true;
}

bool TryDate(std::string_view text, CellRead& read) {
    if (!read.lastDate.Read(text, read.when.date)) return false;
    read.kind = CellKind::Date;
    return true;
}

bool TryTime(std::string_view text, CellRead& read) {
    if (!ReadTimeText(text, read.when.time)) return false;
    read.kind = CellKind::Time;
    return true;
}

bool TryDateTime(std::string_view text, CellRead& read) {
    if (!ReadDateTimeText(text, read.when, read.lastDate)) return false;
    read.kind = CellKind::DateTime;
    return true;
}

bool TryPosition(std::string_view text, CellRules const& rules, CellRead& read) {
    if (!ReadPositionText(text, rules.readsBlanks, read.position)) return false;
    read.kind = CellKind::Position;
    return true;
}

bool TryMissing(std::string_view text, CellRead& read) {
    if (!IsMissingMark(text, read.mark)) return false;
    read.kind = CellKind::Missing;
    return true;
}

}  // namespace

bool IsMissingMark(std::string_view text, MissingMark& mark) {
    if (text.empty()) {
        mark = MissingMark::Empty;
        return true;
    }
    if (text.size() > 5) {
        mark = MissingMark::Star;
        return text.find_first_not_of('*') == std::string_view::npos;
    }
    struct Word {
        std::string_view upper;
        MissingMark mark;
    };
    static constexpr Word kWords[] = {
        {"NAN", MissingMark::NaN},     {"N/A", MissingMark::NSlashA},  {"NA", MissingMark::NA},
        {"#N/A", MissingMark::HashNA}, {"NULL", MissingMark::Null},    {"NONE", MissingMark::None},
        {"-", MissingMark::Dash},      {"--", MissingMark::TwoDashes}, {"---", MissingMark::ThreeDashes},
        {"?", MissingMark::Question},  {"INF", MissingMark::Inf}};
    switch (text.front()) {
        case '*':
            mark = MissingMark::Star;
            return text.find_first_not_of('*') == std::string_view::npos;
        case 'n':
        case 'N':
        case '#':
        case '-':
        case '?':
        case 'i':
        case 'I':
            for (Word const& word : kWords) {
                if (!EqualsWord(text, word.upper)) continue;
                mark = word.mark;
                return true;
            }
            return false;
        default:
            return false;
    }
}

void ReadCell(std::string_view text, CellRules const& rules, CellKind expected, std::string_view suffix,
              CellRead& read) {
    if (text.empty()) {
        read.kind = CellKind::Missing;
        read.mark = MissingMark::Empty;
        return;
    }
    switch (expected) {
        case CellKind::Date:
            if (TryDate(text, read)) return;
            break;
        case CellKind::Time:
            if (TryTime(text, read)) return;
            break;
        case CellKind::DateTime:
            if (TryDateTime(text, read)) return;
            break;
        case CellKind::Position:
            if (TryPosition(text, rules, read)) return;
            break;
        default:
            break;
    }
    if (TryNumber(text, rules, suffix, read) || TryMissing(text, read)) return;
    // Everything else that is typed holds a digit, begins with one of few characters and is not long.
    if (text.size() <= 50 && std::any_of(text.begin(), text.end(), IsDigit)) {
        if (TryDate(text, read) || TryTime(text, read) || TryDateTime(text, read) || TryPosition(text, rules, read)) {
            return;
        }
    }
    read.kind = CellKind::Text;
}

bool IsNumberSuffix(std::string_view text) {
    return text == "*" || text == "%" || text == "+" || (text.size() <= 4 && IsUnitWord(text));
}

CellKind KindOf(ColumnLook::Kind kind) {
    static constexpr std::array kKinds = {CellKind::Missing, CellKind::Text,     CellKind::Number,  CellKind::Date,
                                          CellKind::Time,    CellKind::DateTime, CellKind::Position};
    return kKinds[static_cast<std::size_t>(kind)];
}

ColumnLook::Kind LookOf(CellKind kind) {
    return static_cast<ColumnLook::Kind>(kind);
}

}  // namespace norva
