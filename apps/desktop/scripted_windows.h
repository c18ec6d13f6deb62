#pragma once

#include "norva/scripted_toolkit.h"
#include "qt_dialog.h"

#include <map>
#include <memory>
#include <vector>

namespace norva {

/// Real windows that a script answers: its acts become key presses and mouse clicks on the widgets, and the dialog
/// hears of them as it hears of a person's. A script gives the same trace here as without windows.
class CScriptedWindows : public CScriptedToolkit {
public:
    CScriptedWindows(std::vector<ScriptAnswer> answers, bool defaults, CTrace* trace);
    ~CScriptedWindows() override;

    MessageAnswer ShowMessage(MessageRequest const& request) override;
    void WindowCreated(CModelessDialog& window) override;
    void WindowChanged(CModelessDialog& window, bool now) override;
    void WindowDestroyed(CModelessDialog& window) override;

protected:
    void DialogShown(CDialog& dialog) override;
    bool Act(CDialog& dialog, DialogEvent const& event, std::string& why) override;
    void DialogGone(CDialog& dialog) override;

private:
    std::map<CDialog const*, std::unique_ptr<CQtDialog>> m_windows;
};

}  // namespace norva
