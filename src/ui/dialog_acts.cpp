// What a person can do to the controls of a dialog, once for every skin.

#include "norva/dialog.h"
#include "ui/control_names.h"
#include "ui/json_text.h"

#include <algorithm>
#include <numeric>

namespace norva {

namespace {

using Kind = DialogEvent::Kind;
using Modifier = DialogEvent::Modifier;

bool IsList(CControl const& control) {
    return control.kind == ControlKind::List || control.kind == ControlKind::Report;
}

/// Whether controls of that kind take such an act at all.
bool Takes(CControl const& control, Kind act) {
    switch (act) {
        case Kind::Click:
            return control.kind == ControlKind::Button || control.kind == ControlKind::Check ||
                   control.kind == ControlKind::Radio;
        case Kind::Choice:
            return control.kind == ControlKind::Combo;
        case Kind::Edit:
            return control.kind == ControlKind::Edit;
        case Kind::Select:
        case Kind::DoubleClick:
            return IsList(control);
        case Kind::SelectColumn:
            return control.kind == ControlKind::Grid;
        case Kind::EditCell:
            return control.kind == ControlKind::Report;
        case Kind::Tick:
            return control.kind == ControlKind::Report && control.node->checkBoxes;
        case Kind::Close:
            return false;
    }
    return false;
}

std::string_view ActName(Kind act) {
    switch (act) {
        case Kind::Click:
            return "clicked";
        case Kind::Choice:
            return "chosen from";
        case Kind::Edit:
            return "typed into";
        case Kind::Select:
            return "selected in by row";
        case Kind::SelectColumn:
            return "selected in by column";
        case Kind::DoubleClick:
            return "double-clicked";
        case Kind::EditCell:
            return "edited in place";
        case Kind::Tick:
            return "ticked";
        case Kind::Close:
            break;
    }
    return "closed";
}

std::size_t CountCharacters(std::string_view text) {
    std::size_t count = 0;
    while (!text.empty()) {
        std::size_t bad = 1;
        std::size_t const length = Utf8Length(text, bad);
        text.remove_prefix(length > 0 ? length : bad);
        ++count;
    }
    return count;
}

bool CheckText(CControl const& control, std::string const& text, std::string& why) {
    if (text.find_first_of("\r\n") != std::string::npos) {
        why = NameOf(control) + " takes one line, not " + Quoted(text);
        return false;
    }
    int const limit = control.node->maxLength;
    if (control.kind == ControlKind::Edit && limit > 0 && CountCharacters(text) > static_cast<std::size_t>(limit)) {
        why = NameOf(control) + " takes " + std::to_string(limit) + " character" + (limit == 1 ? "" : "s") +
              " at most, not " + Quoted(text);
        return false;
    }
    return true;
}

bool CheckRange(CControl const& control, char const* what, int index, std::size_t count, std::string& why) {
    if (index >= 0 && static_cast<std::size_t>(index) < count) return true;
    why = NameOf(control) + " has no " + what + " " + std::to_string(index) + " (it has " + std::to_string(count) + ")";
    return false;
}

bool CheckRow(CControl const& control, int row, std::string& why) {
    return CheckRange(control, control.kind == ControlKind::Combo ? "entry" : "row", row,
                      static_cast<std::size_t>(control.RowCount()), why);
}

/// A plain click selects the row alone; Shift selects from the anchor on; Ctrl adds or removes the row.
void ClickRow(CControl& control, int row, Modifier modifier) {
    if (!control.node->multiple) modifier = Modifier::None;
    control.selectedWithModifier = modifier != Modifier::None;
    std::vector<int>& selected = control.selected;
    if (modifier == Modifier::Shift) {
        if (control.anchor < 0 || control.anchor >= control.RowCount()) control.anchor = row;
        auto const [first, last] = std::minmax(control.anchor, row);
        selected.resize(static_cast<std::size_t>(last - first) + 1);
        std::iota(selected.begin(), selected.end(), first);
    } else if (modifier == Modifier::Ctrl) {
        auto const place = std::ranges::lower_bound(selected, row);
        if (place != selected.end() && *place == row) {
            selected.erase(place);
        } else {
            selected.insert(place, row);
        }
        control.anchor = row;
    } else {
        selected.assign(1, row);
        control.anchor = row;
    }
    control.caret = row;
}

}  // namespace

bool CDialog::Apply(CControl& control, DialogEvent const& event, std::string& why, bool& quiet) {
    switch (event.kind) {
        case Kind::Click:
            if (control.kind == ControlKind::Check) control.checked = !control.checked;
            if (control.kind == ControlKind::Radio) CheckRadio(control.id, control.id);
            return true;
        case Kind::Choice:
            if (!CheckRow(control, event.row, why)) return false;
            control.selected.assign(1, event.row);
            return true;
        case Kind::Edit:
            if (control.node->readOnly) {
                why = NameOf(control) + " is read-only";
                return false;
            }
            if (!CheckText(control, event.text, why)) return false;
            control.text = event.text;
            return true;
        case Kind::Select:
            if (!CheckRow(control, event.row, why)) return false;
            ClickRow(control, event.row, event.modifier);
            return true;
        case Kind::DoubleClick:
            return CheckRow(control, event.row, why);
        case Kind::SelectColumn:
            if (!CheckRange(control, "column", event.column, control.columns.size(), why)) return false;
            control.column = event.column;
            return true;
        case Kind::EditCell: {
            if (!CheckRow(control, event.row, why) ||
                !CheckRange(control, "column", event.column, control.columns.size(), why)) {
                return false;
            }
            if (std::ranges::find(control.node->editable, event.column) == control.node->editable.end()) {
                why = "the cells of column " + std::to_string(event.column) + " of " + NameOf(control) +
                      " cannot be edited";
                return false;
            }
            if (!CheckText(control, event.text, why)) return false;
            auto& cells = control.rows[static_cast<std::size_t>(event.row)];
            cells.resize(std::max(cells.size(), control.columns.size()));
            cells[static_cast<std::size_t>(event.column)] = event.text;
            return true;
        }
        case Kind::Tick: {
            if (!CheckRow(control, event.row, why)) return false;
            control.ticks.resize(control.rows.size());
            auto const row = static_cast<std::size_t>(event.row);
            quiet = control.ticks[row] == event.on;
            control.ticks[row] = event.on;
            return true;
        }
        case Kind::Close:
            break;
    }
    return true;
}

bool CDialog::Perform(DialogEvent const& event, std::string& why) {
    if (m_ended) {
        why = NameOf(*this) + " is closed";
        return false;
    }
    if (event.kind == Kind::Close) {
        OnEvent(event);
        return true;
    }
    CControl* const control = Find(event.control);
    if (control == nullptr) {
        why = NameOf(*this) + " has no control " + std::to_string(event.control);
        return false;
    }
    if (!Takes(*control, event.kind)) {
        why = NameOf(*control) + " cannot be " + std::string(ActName(event.kind));
        return false;
    }
    if (!control->enabled || !control->visible) {
        why = NameOf(*control) + (control->enabled ? " is hidden" : " is disabled");
        return false;
    }
    if (event.kind == Kind::DoubleClick) {
        // The first click of the two selects; what it brings about may take the row away.
        DialogEvent click = event;
        click.kind = Kind::Select;
        click.modifier = Modifier::None;
        if (!Perform(click, why)) return false;
        if (m_ended || event.row >= control->RowCount()) return true;
    }
    bool quiet = false;
    if (!Apply(*control, event, why, quiet)) return false;
    ++control->revision;
    if (!quiet) OnEvent(event);
    return true;
}

}  // namespace norva
