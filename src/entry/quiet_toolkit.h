#pragma once

#include "norva/exchange.h"
#include "norva/toolkit.h"

#include <string>
#include <vector>

namespace norva {

/// Stands where no window is to be shown: keeps what the library says, and turns its progress window into calls of the
/// host's callback. A window that asks is cancelled; the settings of a request leave none to ask.
class CQuietToolkit : public CToolkit {
public:
    CQuietToolkit(ProgressCallback const& progress, std::vector<std::string>& messages)
        : m_progress(progress), m_messages(messages) {}

    int RunModal(CDialog& dialog) override;
    MessageAnswer ShowMessage(MessageRequest const& request) override;
    bool ChooseFileToOpen(FileRequest const& request, std::string& path) override;
    bool ChooseFileToSave(FileRequest const& request, std::string& path, std::string& extension) override;
    void WindowCreated(CModelessDialog& window) override;
    void WindowTitled(CModelessDialog& window) override;
    void WindowShown(CModelessDialog& window) override;
    void WindowChanged(CModelessDialog& window, bool now) override;
    void WindowDestroyed(CModelessDialog& window) override;
    void SetCursor(CursorShape shape) override;
    void ShowHelp(std::string const& topic) override;

private:
    ProgressCallback const& m_progress;
    std::vector<std::string>& m_messages;
};

}  // namespace norva
