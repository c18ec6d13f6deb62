#include "ui/control_names.h"

#include "ui/json_text.h"

namespace norva {

namespace {

constexpr std::size_t kShownEntries = 8;

template <typename Entries, typename Append>
void AppendSome(std::string& out, Entries const& entries, Append append) {
    for (std::size_t i = 0; i < entries.size() && i < kShownEntries; ++i) {
        out += i == 0 ? " " : ", ";
        append(entries[i]);
    }
    if (entries.size() > kShownEntries) out += ", ... (" + std::to_string(entries.size()) + ")";
}

void AppendTexts(std::string& out, std::vector<std::string> const& texts) {
    AppendSome(out, texts, [&](std::string const& text) { AppendJsonText(out, text); });
}

void AppendState(std::string& out, CControl const& control) {
    switch (control.kind) {
        case ControlKind::Static:
        case ControlKind::Edit:
            out += ": " + Quoted(control.text);
            break;
        case ControlKind::Check:
        case ControlKind::Radio:
            out += control.checked ? ": on" : ": off";
            break;
        case ControlKind::Combo:
        case ControlKind::List:
            out += ": items";
            AppendTexts(out, control.items);
            break;
        case ControlKind::Report:
        case ControlKind::Grid:
            out += ": columns";
            AppendTexts(out, control.columns);
            out += ", " + std::to_string(control.rows.size()) + " rows";
            if (control.column >= 0) out += ", column " + std::to_string(control.column) + " selected";
            break;
        case ControlKind::Progress:
            out += ": " + std::to_string(control.position);
            break;
        case ControlKind::Button:
        case ControlKind::Group:
            break;
    }
    if (!control.selected.empty()) {
        out += ", selected";
        AppendSome(out, control.selected, [&](int row) { out += std::to_string(row); });
    }
}

}  // namespace

std::string_view KindName(ControlKind kind) {
    switch (kind) {
        case ControlKind::Static:
            return "static";
        case ControlKind::Edit:
            return "edit";
        case ControlKind::Button:
            return "button";
        case ControlKind::Group:
            return "group";
        case ControlKind::Check:
            return "check";
        case ControlKind::Radio:
            return "radio";
        case ControlKind::Combo:
            return "combo";
        case ControlKind::List:
        case ControlKind::Report:
            return "list";
        case ControlKind::Grid:
            return "grid";
        case ControlKind::Progress:
            return "progress";
    }
    return "";
}

std::string Quoted(std::string_view text) {
    std::string out;
    AppendJsonText(out, text);
    return out;
}

std::string NameOf(CControl const& control) {
    std::string name{KindName(control.kind)};
    name += " " + std::to_string(control.id);
    if (!control.Label().empty()) name += " " + Quoted(control.Label());
    return name;
}

std::string NameOf(CDialog const& dialog) {
    return "dialog " + std::to_string(dialog.TemplateNumber()) + " " + Quoted(dialog.Title());
}

std::string Describe(CDialog const& dialog) {
    std::string out = NameOf(dialog) + " with the controls";
    for (CControl const& control : dialog.Controls()) {
        out += "\n    " + NameOf(control);
        if (!control.enabled) out += " (disabled)";
        if (!control.visible) out += " (hidden)";
        AppendState(out, control);
    }
    return out;
}

}  // namespace norva
