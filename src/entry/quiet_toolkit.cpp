#include "entry/quiet_toolkit.h"

#include "exchange/progress_template.h"

#include <algorithm>

namespace norva {

using namespace ids::Progress;

int CQuietToolkit::RunModal(CDialog& dialog) {
    m_messages.push_back("\"" + dialog.Title() + "\" asks a person");
    dialog.Open();
    if (!dialog.IsEnded()) dialog.Abandon();
    return dialog.Result();
}

MessageAnswer CQuietToolkit::ShowMessage(MessageRequest const& request) {
    m_messages.push_back(request.text);
    return request.buttons == MessageButtons::Ok ? MessageAnswer::Ok : MessageAnswer::No;
}

bool CQuietToolkit::ChooseFileToOpen(FileRequest const& /*request*/, std::string& /*path*/) {
    return false;
}

bool CQuietToolkit::ChooseFileToSave(FileRequest const& /*request*/, std::string& /*path*/,
                                     std::string& /*extension*/) {
    return false;
}

void CQuietToolkit::WindowCreated(CModelessDialog& /*window*/) {}
void CQuietToolkit::WindowTitled(CModelessDialog& window) {
    WindowChanged(window, false);
}
void CQuietToolkit::WindowShown(CModelessDialog& /*window*/) {}

void CQuietToolkit::WindowChanged(CModelessDialog& window, bool /*now*/) {
    if (!m_progress) return;
    CControl const* const file = window.FindControl(kFileBar);
    CControl const* const channel = window.FindControl(kChannelBar);
    CControl const* const name = window.FindControl(kChannelText);
    if (file == nullptr || channel == nullptr || name == nullptr) return;
    ExchangeProgress progress;
    progress.step = window.Title();
    progress.channel = name->text;
    progress.percent = std::max(file->position, channel->position);
    if (!m_progress(progress)) throw OperationCancelled();
}

void CQuietToolkit::WindowDestroyed(CModelessDialog& /*window*/) {}
void CQuietToolkit::SetCursor(CursorShape /*shape*/) {}
void CQuietToolkit::ShowHelp(std::string const& /*topic*/) {}

}  // namespace norva
