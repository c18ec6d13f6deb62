#include "norva/command_toolkit.h"

#include "common/command_error.h"

#include <charconv>

namespace norva {

namespace {

constexpr int kFileBar = 4055;  // of the progress window

}  // namespace

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
        bool const isNamed = request.text.find(m_file) != std::string::npos;
        if (m_openDialogs == 0) m_console.Complain(isNamed ? request.text : m_file + ": " + request.text);
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
    if (!m_console.ShowsBar()) return;
    if (CControl const* const bar = window.FindControl(kFileBar)) m_console.JobPercent(bar->position);
}

void CCommandToolkit::OwnerNotice(std::string_view /*first*/, std::string_view second) {
    ThrowIfInterrupted();
    int percent = 0;
    std::from_chars(second.data(), second.data() + second.size(), percent);
    m_console.JobPercent(percent);
}

}  // namespace norva
