#include "common/dialog_hand.h"

#include "common/command_error.h"

#include <algorithm>
#include <cctype>
#include <charconv>

namespace norva {

CControl const& CDialogHand::Control(ControlName const& name) const {
    std::string why;
    CControl const* const control = ResolveControl(m_dialog, name, why);
    if (control == nullptr) throw CommandError("\"" + m_dialog.Title() + "\": " + why);
    return *control;
}

void CDialogHand::Do(ScriptAction const& action) {
    std::vector<DialogEvent> events;
    std::string why;
    std::size_t const said = m_messages.size();
    bool done = EventsOf(m_dialog, action, events, why);
    for (std::size_t i = 0; done && i < events.size(); ++i) {
        if (onEvent) onEvent(events[i]);
        done = m_dialog.Perform(events[i], why);
    }
    if (!done) throw CommandError("\"" + m_dialog.Title() + "\": " + why);
    if (m_messages.size() > said) throw CommandError(m_messages.back());
}

void CDialogHand::Click(ControlName const& control) {
    Do({.kind = ScriptAction::Kind::Click, .control = control});
}

void CDialogHand::Check(ControlName const& control, bool on) {
    if (Control(control).checked != on) Click(control);
}

void CDialogHand::Set(ControlName const& control, std::string const& text) {
    Do({.kind = ScriptAction::Kind::Set, .control = control, .value = text});
}

void CDialogHand::Choose(ControlName const& control, int index) {
    Do({.kind = ScriptAction::Kind::Set, .control = control, .value = index});
}

void CDialogHand::SelectRow(ControlName const& control, int row) {
    Do({.kind = ScriptAction::Kind::SelectRow, .control = control, .row = row});
}

void CDialogHand::SelectColumn(ControlName const& control, int column) {
    Do({.kind = ScriptAction::Kind::SelectColumn, .control = control, .column = column});
}

void CDialogHand::DoubleClick(ControlName const& control, int row) {
    Do({.kind = ScriptAction::Kind::DoubleClick, .control = control, .row = row});
}

void CDialogHand::EditCell(ControlName const& control, int row, int column, std::string const& text) {
    Do({.kind = ScriptAction::Kind::EditCell, .control = control, .row = row, .column = column, .value = text});
}

void CDialogHand::Tick(ControlName const& control, int row, bool on) {
    Do({.kind = ScriptAction::Kind::Tick, .control = control, .row = row, .on = on});
}

bool EqualIgnoringCase(std::string_view first, std::string_view second) {
    return std::equal(first.begin(), first.end(), second.begin(), second.end(), [](char a, char b) {
        return std::toupper(static_cast<unsigned char>(a)) == std::toupper(static_cast<unsigned char>(b));
    });
}

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

}  // namespace norva
