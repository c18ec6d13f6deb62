// What the actions of a script mean for the controls of a dialog.

#include "norva/scripted_toolkit.h"
#include "ui/control_names.h"

#include <algorithm>

namespace norva {

namespace {

using Kind = DialogEvent::Kind;

/// What a script can name by its label: not what only says something.
bool IsActedOn(CControl const& control) {
    return control.kind != ControlKind::Static && control.kind != ControlKind::Group &&
           control.kind != ControlKind::Progress;
}

CControl const* ResolveNumber(CDialog const& dialog, int number, std::string& why) {
    if (CControl const* control = dialog.FindControl(number)) return control;
    if (number == kButtonOk) {
        if (CControl const* control = dialog.FindControl(dialog.Template().defaultButton)) return control;
    }
    why = NameOf(dialog) + " has no control " + std::to_string(number);
    return nullptr;
}

CControl const* ResolveLabel(CDialog const& dialog, std::string const& label, std::string& why) {
    CControl const* found = nullptr;
    for (CControl const& control : dialog.Controls()) {
        if (label.empty() || !IsActedOn(control) || control.Label() != label) continue;
        if (found != nullptr) {
            why = NameOf(dialog) + " has several controls " + Quoted(label) + ": name one by its number, " +
                  std::to_string(found->id) + " or " + std::to_string(control.id);
            return nullptr;
        }
        found = &control;
    }
    if (found == nullptr) why = NameOf(dialog) + " has no control " + Quoted(label);
    return found;
}

bool AddChoice(CControl const& control, ScriptAction const& action, std::vector<DialogEvent>& events,
               std::string& why) {
    DialogEvent event{.kind = Kind::Choice, .control = control.id};
    if (auto const* index = std::get_if<int>(&action.value)) {
        event.row = *index;
    } else if (auto const* text = std::get_if<std::string>(&action.value)) {
        auto const found = std::ranges::find(control.items, *text);
        if (found == control.items.end()) {
            why = NameOf(control) + " has no entry " + Quoted(*text);
            return false;
        }
        event.row = static_cast<int>(found - control.items.begin());
    } else {
        why = NameOf(control) + " is set to the text or the index of an entry";
        return false;
    }
    events.push_back(event);
    return true;
}

bool AddCheck(CControl const& control, ScriptAction const& action, std::vector<DialogEvent>& events, std::string& why) {
    auto const* on = std::get_if<bool>(&action.value);
    if (on == nullptr) {
        why = NameOf(control) + " is set to true or false";
        return false;
    }
    if (!control.enabled || !control.visible) {
        why = NameOf(control) + (control.enabled ? " is hidden" : " is disabled");
        return false;
    }
    if (control.checked != *on) events.push_back({.kind = Kind::Click, .control = control.id});
    return true;
}

bool AddText(CControl const& control, ScriptAction const& action, std::vector<DialogEvent>& events, std::string& why) {
    DialogEvent event{.kind = Kind::Edit, .control = control.id};
    if (auto const* text = std::get_if<std::string>(&action.value)) {
        event.text = *text;
    } else if (auto const* number = std::get_if<int>(&action.value)) {
        event.text = std::to_string(*number);
    } else {
        why = NameOf(control) + " is set to a text";
        return false;
    }
    events.push_back(std::move(event));
    return true;
}

bool AddSet(CControl const& control, ScriptAction const& action, std::vector<DialogEvent>& events, std::string& why) {
    switch (control.kind) {
        case ControlKind::Combo:
            return AddChoice(control, action, events, why);
        case ControlKind::Check:
            return AddCheck(control, action, events, why);
        case ControlKind::Edit:
            return AddText(control, action, events, why);
        default:
            break;
    }
    why = NameOf(control) + " cannot be set";
    return false;
}

void AddRows(CControl const& control, ScriptAction const& action, std::vector<DialogEvent>& events) {
    auto modifier = DialogEvent::Modifier::None;
    for (int row : action.rows) {
        events.push_back({.kind = Kind::Select, .control = control.id, .row = row, .modifier = modifier});
        modifier = DialogEvent::Modifier::Ctrl;
    }
}

}  // namespace

CControl const* ResolveControl(CDialog const& dialog, ControlName const& name, std::string& why) {
    if (auto const* number = std::get_if<int>(&name)) return ResolveNumber(dialog, *number, why);
    return ResolveLabel(dialog, std::get<std::string>(name), why);
}

bool EventsOf(CDialog const& dialog, ScriptAction const& action, std::vector<DialogEvent>& events, std::string& why) {
    using ActionKind = ScriptAction::Kind;
    if (action.kind == ActionKind::Close) {
        events.push_back({.kind = Kind::Close});
        return true;
    }
    CControl const* const control = ResolveControl(dialog, action.control, why);
    if (control == nullptr) return false;
    DialogEvent event{.control = control->id, .row = action.row, .column = action.column, .modifier = action.modifier};
    switch (action.kind) {
        case ActionKind::Set:
            return AddSet(*control, action, events, why);
        case ActionKind::SelectRows:
            AddRows(*control, action, events);
            return true;
        case ActionKind::Click:
            event.kind = Kind::Click;
            break;
        case ActionKind::SelectRow:
            event.kind = Kind::Select;
            break;
        case ActionKind::SelectColumn:
            event.kind = Kind::SelectColumn;
            break;
        case ActionKind::DoubleClick:
            event.kind = Kind::DoubleClick;
            break;
        case ActionKind::EditCell: {
            auto const* text = std::get_if<std::string>(&action.value);
            if (text == nullptr) {
                why = "a cell of " + NameOf(*control) + " is edited to a text";
                return false;
            }
            event.kind = Kind::EditCell;
            event.text = *text;
            break;
        }
        case ActionKind::Tick:
            event.kind = Kind::Tick;
            event.on = action.on;
            break;
        case ActionKind::Close:
            break;
    }
    events.push_back(std::move(event));
    return true;
}

}  // namespace norva
