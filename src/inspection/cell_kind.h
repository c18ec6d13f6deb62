#pragma once

#include "inspection/date_text.h"
#include "inspection/number_text.h"
#include "inspection/position_text.h"
#include "norva/settings.h"

#include <string_view>

/// What one cell of a text file reads as.
namespace norva {

enum class CellKind : unsigned char { Missing, Text, Number, Date, Time, DateTime, Position };
inline constexpr int kCellKinds = 7;

/// How a missing value is written; numbers that stand for one are not among these.
enum class MissingMark : unsigned char {
    Empty,
    Star,
    NaN,
    NSlashA,
    NA,
    HashNA,
    Null,
    None,
    Dash,
    TwoDashes,
    ThreeDashes,
    Question,
    Inf,
    Count
};

struct CellRead {
    CellKind kind = CellKind::Text;
    MissingMark mark = MissingMark::Empty;
    NumberText number;
    DateTimeText when;  ///< of dates and times as well
    PositionText position;
    CLastDate lastDate;  ///< of the cells that were read into this
};

/// Whether the cell is one of the marks; `mark` says which.
bool IsMissingMark(std::string_view text, MissingMark& mark);

struct CellRules {
    DecimalMarks marks = DecimalMarks::Point;
    bool readsBlanks = true;  ///< positions may hold blanks
};

/// What the cell reads as; the reading that `expected` names is tried first. `suffix` may stand behind a number.
void ReadCell(std::string_view text, CellRules const& rules, CellKind expected, std::string_view suffix,
              CellRead& read);

/// Whether the text is a sign or a unit that may stand behind every number of a column.
bool IsNumberSuffix(std::string_view text);

/// The kind of cell that a column is made of; Missing for an empty column.
CellKind KindOf(ColumnLook::Kind kind);
ColumnLook::Kind LookOf(CellKind kind);
inline bool IsTyped(CellKind kind) {
    return kind >= CellKind::Number;
}

}  // namespace norva
