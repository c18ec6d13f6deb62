#include "recorder.h"

namespace norva {

namespace {

using Json = nlohmann::ordered_json;

/// A list, edit or combo box is named by its label, which says more to a reader; buttons have fixed numbers.
Json NameOf(CDialog const& dialog, int id) {
    CControl const* const control = dialog.FindControl(id);
    if (control == nullptr || control->Label().empty() || control->kind == ControlKind::Button) return id;
    int sameLabel = 0;
    for (CControl const& other : dialog.Controls()) sameLabel += other.Label() == control->Label() ? 1 : 0;
    return sameLabel == 1 ? Json(std::string(control->Label())) : Json(id);
}

Json ActionOf(CDialog const& dialog, DialogEvent const& event) {
    Json const name = NameOf(dialog, event.control);
    switch (event.kind) {
        case DialogEvent::Kind::Click:
            return {{"click", name}};
        case DialogEvent::Kind::Choice: {
            CControl const* const combo = dialog.FindControl(event.control);
            auto const row = static_cast<std::size_t>(event.row);
            if (combo == nullptr || row >= combo->items.size()) return {{"set", name}, {"to", event.row}};
            return {{"set", name}, {"to", combo->items[row]}};
        }
        case DialogEvent::Kind::Edit:
            return {{"set", name}, {"to", event.text}};
        case DialogEvent::Kind::Select: {
            Json action = {{"select", name}, {"row", event.row}};
            if (event.modifier == DialogEvent::Modifier::Shift) action["with"] = "shift";
            if (event.modifier == DialogEvent::Modifier::Ctrl) action["with"] = "ctrl";
            return action;
        }
        case DialogEvent::Kind::SelectColumn:
            return {{"select", name}, {"column", event.column}};
        case DialogEvent::Kind::DoubleClick:
            return {{"double", name}, {"row", event.row}};
        case DialogEvent::Kind::EditCell:
            return {{"edit", name}, {"row", event.row}, {"column", event.column}, {"to", event.text}};
        case DialogEvent::Kind::Tick:
            return {{"tick", name}, {"row", event.row}, {"on", event.on}};
        case DialogEvent::Kind::Close:
            break;
    }
    return {{"close", true}};
}

}  // namespace

CRecorder::CRecorder(bool isImport) {
    m_script["operation"] = isImport ? "import" : "export";
    if (isImport) m_script["level"] = 1;
    if (!isImport) m_script["store"] = "{input}";
    m_script["answers"] = Json::array();
}

std::size_t CRecorder::BeginDialog(CDialog const& dialog) {
    m_script["answers"].push_back({{"dialog", dialog.TemplateNumber()}, {"do", Json::array()}});
    return m_script["answers"].size() - 1;
}

void CRecorder::Act(std::size_t entry, CDialog const& dialog, DialogEvent const& event) {
    m_script["answers"][entry]["do"].push_back(ActionOf(dialog, event));
}

void CRecorder::Message(MessageRequest const& request, MessageAnswer answer) {
    char const* const name = answer == MessageAnswer::Ok ? "ok" : answer == MessageAnswer::Yes ? "yes" : "no";
    m_script["answers"].push_back({{"message", request.text}, {"answer", name}});
}

void CRecorder::Open(std::string const* path) {
    m_script["answers"].push_back({{"open", path != nullptr ? Json("{input}") : Json(nullptr)}});
}

void CRecorder::Save(std::string const* path, std::string_view extension) {
    Json answer = {{"save", path != nullptr ? Json("{output}") : Json(nullptr)}};
    if (path != nullptr && !extension.empty()) answer["extension"] = std::string(extension);
    m_script["answers"].push_back(std::move(answer));
}

std::string CRecorder::Text() const {
    return m_script.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

}  // namespace norva
