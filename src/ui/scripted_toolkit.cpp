#include "norva/scripted_toolkit.h"

#include "norva/trace.h"
#include "platform/paths.h"
#include "ui/control_names.h"

#include <utility>

namespace norva {

namespace {

std::string Describe(MessageRequest const& request) {
    return "message " + Quoted(request.text) + " with the title " + Quoted(request.caption) +
           (request.buttons == MessageButtons::YesNo ? " and the buttons yes, no" : " and the button ok");
}

std::string Describe(char const* what, FileRequest const& request) {
    return std::string(what) + " dialog " + Quoted(request.title) + " with the filter " + Quoted(request.filter) +
           " and the name " + Quoted(request.initial);
}

MessageAnswer DefaultAnswer(MessageRequest const& request) {
    return request.buttons == MessageButtons::YesNo ? MessageAnswer::Yes : MessageAnswer::Ok;
}

MessageAnswer CancelAnswer(MessageRequest const& request) {
    return request.buttons == MessageButtons::YesNo ? MessageAnswer::No : MessageAnswer::Ok;
}

/// What a person presses who leaves a dialog as it came up.
ScriptAction DefaultAct(CDialog const& dialog) {
    ScriptAction action;
    CControl const* const button = dialog.FindControl(dialog.Template().defaultButton);
    action.control = button != nullptr && button->enabled && button->visible ? button->id : kButtonCancel;
    action.source = "the default button";
    return action;
}

}  // namespace

CScriptedToolkit::CScriptedToolkit(std::vector<ScriptAnswer> answers, bool defaults, CTrace* trace)
    : m_player(std::move(answers), defaults), m_trace(trace) {}

CScriptedToolkit::~CScriptedToolkit() = default;

void CScriptedToolkit::Answer(CDialog& dialog) {
    std::optional<ScriptAnswer> answer =
        m_player.Take(ScriptAnswer::Kind::Dialog, dialog.TemplateNumber(), {}, Describe(dialog));
    if (m_player.Failed()) return;
    if (!answer) {
        answer.emplace();
        answer->actions.push_back(DefaultAct(dialog));
        answer->source = "the default answer";
    }
    std::vector<DialogEvent> events;
    std::string why;
    for (ScriptAction const& action : answer->actions) {
        events.clear();
        bool done = EventsOf(dialog, action, events, why);
        for (std::size_t i = 0; done && i < events.size() && !m_player.Failed(); ++i) {
            done = Act(dialog, events[i], why);
        }
        // A dialog or message that came up inside this act may have failed already.
        if (m_player.Failed()) return;
        if (!done) {
            m_player.Fail("impossible: " + action.source + ": " + why + "\nshown: " + Describe(dialog) +
                          "\nexpected: " + answer->source);
            return;
        }
    }
    if (!dialog.IsEnded()) {
        m_player.Fail("still open after the last action\nshown: " + Describe(dialog) + "\nexpected: " + answer->source);
    }
}

void CScriptedToolkit::DialogShown(CDialog& /*dialog*/) {}

bool CScriptedToolkit::Act(CDialog& dialog, DialogEvent const& event, std::string& why) {
    return dialog.Perform(event, why);
}

void CScriptedToolkit::DialogGone(CDialog& /*dialog*/) {}

int CScriptedToolkit::RunModal(CDialog& dialog) {
    dialog.Open();
    if (dialog.IsEnded()) return dialog.Result();
    if (m_trace != nullptr) m_trace->DialogOpened(dialog);
    DialogShown(dialog);
    Answer(dialog);
    if (!dialog.IsEnded()) dialog.Abandon();
    DialogGone(dialog);
    if (m_trace != nullptr) m_trace->DialogClosed(dialog);
    return dialog.Result();
}

MessageAnswer CScriptedToolkit::ShowMessage(MessageRequest const& request) {
    std::optional<ScriptAnswer> const taken =
        m_player.Take(ScriptAnswer::Kind::Message, 0, request.text, Describe(request));
    MessageAnswer answer = m_player.Failed() ? CancelAnswer(request) : DefaultAnswer(request);
    if (taken) {
        if ((taken->answer == MessageAnswer::Ok) == (request.buttons == MessageButtons::Ok)) {
            answer = taken->answer;
        } else {
            m_player.Fail("shown: " + Describe(request) + "\nexpected: " + taken->source);
            answer = CancelAnswer(request);
        }
    }
    if (m_trace != nullptr) m_trace->Message(request, answer);
    return answer;
}

bool CScriptedToolkit::ChooseFile(ScriptAnswer::Kind kind, FileRequest const& request, std::string& path,
                                  std::string& extension) {
    char const* const what = kind == ScriptAnswer::Kind::Open ? "file-open" : "save";
    std::optional<ScriptAnswer> taken = m_player.Take(kind, 0, {}, Describe(what, request));
    if (m_player.Failed()) return false;
    if (!taken) {
        taken.emplace();
        if (!request.initial.empty()) taken->path = request.initial;
    }
    if (!taken->path) return false;
    path = taken->path->empty() ? std::string() : FullPath(*taken->path);
    extension = ReportedExtension(path, taken->extension, request.filter);
    return true;
}

bool CScriptedToolkit::ChooseFileToOpen(FileRequest const& request, std::string& path) {
    std::string unused;
    bool const chosen = ChooseFile(ScriptAnswer::Kind::Open, request, path, unused);
    if (m_trace != nullptr) m_trace->FileOpened(request, chosen ? &path : nullptr);
    return chosen;
}

bool CScriptedToolkit::ChooseFileToSave(FileRequest const& request, std::string& path, std::string& extension) {
    bool const chosen = ChooseFile(ScriptAnswer::Kind::Save, request, path, extension);
    if (m_trace != nullptr) m_trace->FileSaved(request, chosen ? &path : nullptr, chosen ? extension : "");
    return chosen;
}

void CScriptedToolkit::WindowCreated(CModelessDialog& window) {
    if (m_trace != nullptr) m_trace->Window(window, "created");
}

void CScriptedToolkit::WindowTitled(CModelessDialog& window) {
    if (m_trace != nullptr) m_trace->Window(window, "titled");
}

void CScriptedToolkit::WindowShown(CModelessDialog& window) {
    if (m_trace != nullptr) m_trace->Window(window, "shown");
}

void CScriptedToolkit::WindowChanged(CModelessDialog& /*window*/, bool /*now*/) {}

void CScriptedToolkit::WindowDestroyed(CModelessDialog& window) {
    if (m_trace != nullptr) m_trace->Window(window, "destroyed");
}

void CScriptedToolkit::ProgressText(std::string_view text) {
    if (m_trace != nullptr) m_trace->Text("progress", text);
}

void CScriptedToolkit::FileText(std::string_view text) {
    if (m_trace != nullptr) m_trace->Text("file-text", text);
}

void CScriptedToolkit::ChannelText(std::string_view text) {
    if (m_trace != nullptr) m_trace->Text("channel-text", text);
}

void CScriptedToolkit::OwnerNotice(std::string_view first, std::string_view second) {
    if (m_trace != nullptr) m_trace->Notice(first, second);
}

void CScriptedToolkit::SetCursor(CursorShape shape) {
    if (m_trace != nullptr) m_trace->Cursor(shape);
}

void CScriptedToolkit::ShowHelp(std::string const& topic) {
    if (m_trace != nullptr) m_trace->Help(topic);
}

}  // namespace norva
