#include "desktop_toolkit.h"

#include "file_choice.h"
#include "norva/scripted_toolkit.h"
#include "qt_dialog.h"
#include "template_buttons.h"

#include <algorithm>
#include <utility>

namespace norva {

namespace {

constexpr char const* kFormatDialog = "Import Formats";

}  // namespace

bool CDesktopToolkit::ChoosePresetFormat(CDialog& dialog) {
    if (!m_nextFormat || dialog.Title() != kFormatDialog) return false;
    std::string const format = *std::exchange(m_nextFormat, std::nullopt);
    std::string why;
    CControl const* const list = ResolveControl(dialog, "Formats", why);
    if (list == nullptr) return false;
    auto const found = std::find(list->items.begin(), list->items.end(), format);
    if (found == list->items.end()) return false;
    DialogEvent choose;
    choose.kind = DialogEvent::Kind::DoubleClick;
    choose.control = list->id;
    choose.row = static_cast<int>(found - list->items.begin());
    if (m_recorder != nullptr) m_recorder->Act(m_recorder->BeginDialog(dialog), dialog, choose);
    return dialog.Perform(choose, why) && dialog.IsEnded();
}

int CDesktopToolkit::RunModal(CDialog& dialog) {
    dialog.Open();
    if (dialog.IsEnded() || ChoosePresetFormat(dialog)) return dialog.Result();
    CQtDialog window(dialog, Parent());
    std::size_t const entry = m_recorder != nullptr ? m_recorder->BeginDialog(dialog) : 0;
    if (m_recorder != nullptr) {
        window.onEvent = [this, &dialog, entry](DialogEvent const& event) { m_recorder->Act(entry, dialog, event); };
    }
    if (auto* const columns = dynamic_cast<CColumnTextDialog*>(&dialog)) AddTemplateButtons(window, *columns);
    window.exec();
    return dialog.Result();
}

MessageAnswer CDesktopToolkit::ShowMessage(MessageRequest const& request) {
    MessageAnswer const answer = CQtToolkit::ShowMessage(request);
    if (m_recorder != nullptr) m_recorder->Message(request, answer);
    return answer;
}

bool CDesktopToolkit::ChooseFileToOpen(FileRequest const& request, std::string& path) {
    bool const isPreset = m_nextOpen.has_value();
    if (isPreset) path = *std::exchange(m_nextOpen, std::nullopt);
    FileRequest inFolder = request;
    if (inFolder.initial.empty()) inFolder.initial = LastFolder().toStdString();
    bool const isChosen = isPreset || CQtToolkit::ChooseFileToOpen(inFolder, path);
    if (isChosen) RememberFolderOf(QString::fromStdString(path));
    if (m_recorder != nullptr) m_recorder->Open(isChosen ? &path : nullptr);
    return isChosen;
}

bool CDesktopToolkit::ChooseFileToSave(FileRequest const& request, std::string& path, std::string& extension) {
    FileRequest inFolder = request;
    if (inFolder.initial.empty()) inFolder.initial = (LastFolder() + '/').toStdString();
    bool const isChosen = CQtToolkit::ChooseFileToSave(inFolder, path, extension);
    if (isChosen) RememberFolderOf(QString::fromStdString(path));
    if (m_recorder != nullptr) m_recorder->Save(isChosen ? &path : nullptr, isChosen ? extension : std::string());
    return isChosen;
}

}  // namespace norva
