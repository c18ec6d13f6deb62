#include "norva/trace.h"

#include "platform/numbers.h"
#include "ui/control_names.h"
#include "ui/json_text.h"

#include <utility>

namespace norva {

namespace {

void AppendValue(std::string& out, std::string_view value) {
    AppendJsonText(out, value);
}

void AppendValue(std::string& out, std::string const& value) {
    AppendJsonText(out, value);
}

void AppendValue(std::string& out, char const* value) {
    AppendJsonText(out, value);
}

void AppendValue(std::string& out, bool value) {
    out += value ? "true" : "false";
}

void AppendValue(std::string& out, int value) {
    AppendInteger(out, value);
}

void AppendValue(std::string& out, long long value) {
    AppendInteger(out, value);
}

void AppendValue(std::string& out, CTrace::Argument const& argument) {
    if (auto const* text = std::get_if<std::string>(&argument)) {
        AppendJsonText(out, *text);
    } else if (auto const* integer = std::get_if<long long>(&argument)) {
        AppendInteger(out, *integer);
    } else {
        AppendJsonNumber(out, std::get<double>(argument));
    }
}

template <typename Value>
void AppendValue(std::string& out, std::vector<Value> const& values) {
    out += '[';
    bool first = true;
    for (auto const& value : values) {
        if (!std::exchange(first, false)) out += ',';
        AppendValue(out, value);
    }
    out += ']';
}

/// `,"name":value`; the event's name always stands before.
template <typename Value>
void AppendField(std::string& out, std::string_view name, Value const& value) {
    out += ",\"";
    out += name;
    out += "\":";
    AppendValue(out, value);
}

void AppendPath(std::string& out, std::string const* path) {
    if (path != nullptr) {
        AppendField(out, "path", *path);
    } else {
        out += ",\"path\":null";
    }
}

void AppendControl(std::string& out, CControl const& control) {
    out += "{\"id\":";
    AppendInteger(out, control.id);
    AppendField(out, "label", control.Label());
    AppendField(out, "kind", KindName(control.kind));
    AppendField(out, "enabled", control.enabled);
    AppendField(out, "visible", control.visible);
    switch (control.kind) {
        case ControlKind::Static:
        case ControlKind::Edit:
            AppendField(out, "text", control.text);
            break;
        case ControlKind::Button:
        case ControlKind::Group:
            break;
        case ControlKind::Check:
        case ControlKind::Radio:
            AppendField(out, "checked", control.checked);
            break;
        case ControlKind::Combo: {
            AppendField(out, "items", control.items);
            AppendField(out, "selected", control.selected);
            bool const chosen = !control.selected.empty() && control.selected.front() < control.RowCount();
            AppendField(out, "text", chosen ? control.items[static_cast<std::size_t>(control.selected.front())] : "");
            break;
        }
        case ControlKind::List:
            AppendField(out, "items", control.items);
            AppendField(out, "selected", control.selected);
            break;
        case ControlKind::Report:
            AppendField(out, "columns", control.columns);
            AppendField(out, "rows", control.rows);
            AppendField(out, "selected", control.selected);
            if (control.node->checkBoxes) AppendField(out, "ticks", control.ticks);
            break;
        case ControlKind::Grid:
            AppendField(out, "columns", control.columns);
            AppendField(out, "rows", control.rows);
            if (control.column >= 0) {
                AppendField(out, "column", control.column);
            } else {
                out += ",\"column\":null";
            }
            break;
        case ControlKind::Progress:
            AppendField(out, "position", control.position);
            break;
    }
    out += '}';
}

void AppendControls(std::string& out, CDialog const& dialog) {
    out += ",\"controls\":[";
    bool first = true;
    for (CControl const& control : dialog.Controls()) {
        if (!std::exchange(first, false)) out += ',';
        AppendControl(out, control);
    }
    out += ']';
}

std::string_view NameOf(MessageIcon icon) {
    switch (icon) {
        case MessageIcon::None:
            break;
        case MessageIcon::Information:
            return "information";
        case MessageIcon::Question:
            return "question";
        case MessageIcon::Exclamation:
            return "exclamation";
    }
    return "none";
}

std::string_view NameOf(MessageAnswer answer) {
    switch (answer) {
        case MessageAnswer::Ok:
            break;
        case MessageAnswer::Yes:
            return "yes";
        case MessageAnswer::No:
            return "no";
    }
    return "ok";
}

void AppendHex(std::string& out, void const* buffer, std::size_t byteCount) {
    constexpr char kHex[] = "0123456789abcdef";
    auto const* const bytes = static_cast<unsigned char const*>(buffer);
    std::size_t const start = out.size();
    out.resize(start + 2 * byteCount);
    for (std::size_t i = 0; i < byteCount; ++i) {
        out[start + 2 * i] = kHex[bytes[i] >> 4];
        out[start + 2 * i + 1] = kHex[bytes[i] & 15];
    }
}

}  // namespace

CTrace::CTrace(Sink sink, bool withBytes) : m_sink(std::move(sink)), m_withBytes(withBytes) {}

void CTrace::Begin(std::string_view event) {
    m_line = "{\"event\":";
    AppendJsonText(m_line, event);
}

void CTrace::Emit() {
    m_line += "}\n";
    m_sink(m_line);
}

void CTrace::DialogOpened(CDialog const& dialog) {
    Begin("dialog");
    AppendField(m_line, "template", dialog.TemplateNumber());
    AppendField(m_line, "title", dialog.Title());
    AppendControls(m_line, dialog);
    Emit();
}

void CTrace::DialogClosed(CDialog const& dialog) {
    Begin("closed");
    AppendField(m_line, "template", dialog.TemplateNumber());
    AppendField(m_line, "result", dialog.Result());
    AppendControls(m_line, dialog);
    Emit();
}

void CTrace::Message(MessageRequest const& request, MessageAnswer answer) {
    Begin("message");
    AppendField(m_line, "text", request.text);
    AppendField(m_line, "caption", request.caption);
    AppendField(m_line, "buttons", request.buttons == MessageButtons::YesNo ? "yesno" : "ok");
    AppendField(m_line, "icon", NameOf(request.icon));
    AppendField(m_line, "answer", NameOf(answer));
    Emit();
}

void CTrace::BeginFile(std::string_view event, FileRequest const& request, std::string const* path) {
    Begin(event);
    AppendField(m_line, "title", request.title);
    AppendField(m_line, "filter", request.filter);
    AppendField(m_line, "flags", static_cast<long long>(request.flags));
    AppendField(m_line, "initial", request.initial);
    AppendPath(m_line, path);
}

void CTrace::FileOpened(FileRequest const& request, std::string const* path) {
    BeginFile("open", request, path);
    Emit();
}

void CTrace::FileSaved(FileRequest const& request, std::string const* path, std::string_view extension) {
    BeginFile("save", request, path);
    AppendField(m_line, "extension", extension);
    Emit();
}

void CTrace::Window(CDialog const& window, std::string_view state) {
    Begin("window");
    AppendField(m_line, "template", window.TemplateNumber());
    AppendField(m_line, "state", state);
    AppendField(m_line, "title", window.Title());
    Emit();
}

void CTrace::Text(std::string_view event, std::string_view text) {
    Begin(event);
    AppendField(m_line, "text", text);
    Emit();
}

void CTrace::Notice(std::string_view first, std::string_view second) {
    Begin("notice");
    AppendField(m_line, "texts", std::vector<std::string_view>{first, second});
    Emit();
}

void CTrace::Cursor(CursorShape shape) {
    Begin("cursor");
    AppendField(m_line, "shape", shape == CursorShape::Wait ? "wait" : "arrow");
    Emit();
}

void CTrace::Help(std::string_view topic) {
    Begin("help");
    AppendField(m_line, "topic", topic);
    Emit();
}

void CTrace::StoreCall(std::string_view call, std::vector<Argument> const& arguments, long long result) {
    Begin("store");
    AppendField(m_line, "call", call);
    AppendField(m_line, "args", arguments);
    AppendField(m_line, "result", result);
    Emit();
}

void CTrace::StoreWriteHuge(void const* buffer, std::size_t byteCount, long long result) {
    Begin("store");
    AppendField(m_line, "call", "WriteHuge");
    // The buffer itself is no argument that could be printed; its length stands for both.
    AppendField(m_line, "args", std::vector<long long>{static_cast<long long>(byteCount)});
    AppendField(m_line, "bytes", static_cast<long long>(byteCount));
    if (m_withBytes) {
        m_line += ",\"hex\":\"";
        AppendHex(m_line, buffer, byteCount);
        m_line += '"';
    }
    AppendField(m_line, "result", result);
    Emit();
}

void CTrace::Result(int value, std::string_view store) {
    Begin("result");
    AppendField(m_line, "value", value);
    AppendField(m_line, "store", store);
    Emit();
}

}  // namespace norva
