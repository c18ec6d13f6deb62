#include "norva/command_toolkit.h"

#include "common/command_error.h"

#include <charconv>

namespace norva {

namespace {

constexpr int kFileBar = 4055;  // of the progress window

}  // namespace

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
    for (std::size_t i = 0; done && i < events.size(); ++i) done = m_dialog.Perform(events[i], why);
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

int CCommandToolkit::RunModal(CDialog& dialog) {
    dialog.Open();
    if (dialog.IsEnded()) return dialog.Result();
    auto const driver = m_drivers.find(dialog.TemplateNumber());
    std::string why;
    ++m_openDialogs;
    try {
        CDialogHand hand(dialog, m_messages);
        if (driver != m_drivers.end()) {
            driver->second(hand);
        } else {
            hand.Click(dialog.Template().defaultButton);
        }
        if (!dialog.IsEnded()) why = "the dialog \"" + dialog.Title() + "\" stays open";
    } catch (CommandError const& error) {
        why = error.what();
    }
    --m_openDialogs;
    if (!why.empty() && m_failure.empty()) m_failure = why;
    if (!dialog.IsEnded()) dialog.Abandon();
    return dialog.Result();
}

MessageAnswer CCommandToolkit::ShowMessage(MessageRequest const& request) {
    if (request.buttons == MessageButtons::YesNo) {
        for (auto const& [part, yes] : m_questions) {
            if (request.text.find(part) == std::string::npos) continue;
            return yes ? MessageAnswer::Yes : MessageAnswer::No;
        }
    }
    if (!WasInterrupted()) {
        m_messages.push_back(request.text);
        if (m_openDialogs == 0) m_console.Complain(request.text);
    }
    return request.buttons == MessageButtons::YesNo ? MessageAnswer::Yes : MessageAnswer::Ok;
}

bool CCommandToolkit::ChooseFileToOpen(FileRequest const& /*request*/, std::string& path) {
    path = m_openPath;
    return true;
}

bool CCommandToolkit::ChooseFileToSave(FileRequest const& request, std::string& path, std::string& extension) {
    path = m_savePath;
    extension = ReportedExtension(path, {}, request.filter);
    return true;
}

void CCommandToolkit::WindowCreated(CModelessDialog& /*window*/) {}
void CCommandToolkit::WindowTitled(CModelessDialog& /*window*/) {}
void CCommandToolkit::WindowShown(CModelessDialog& /*window*/) {}
void CCommandToolkit::WindowDestroyed(CModelessDialog& /*window*/) {}
void CCommandToolkit::SetCursor(CursorShape /*shape*/) {}
void CCommandToolkit::ShowHelp(std::string const& /*topic*/) {}

void CCommandToolkit::WindowChanged(CModelessDialog& window, bool /*now*/) {
    ThrowIfInterrupted();
    if (CControl const* const bar = window.FindControl(kFileBar)) m_console.JobPercent(bar->position);
}

void CCommandToolkit::OwnerNotice(std::string_view /*first*/, std::string_view second) {
    ThrowIfInterrupted();
    int percent = 0;
    std::from_chars(second.data(), second.data() + second.size(), percent);
    m_console.JobPercent(percent);
}

}  // namespace norva
