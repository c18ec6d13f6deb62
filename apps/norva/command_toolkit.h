#pragma once

#include "common/dialog_hand.h"
#include "norva/console.h"
#include "norva/scripted_toolkit.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace norva {

/// Answers the library's windows from the options of a command. What a driver cannot do cancels its dialog and
/// becomes the command's error.
class CCommandToolkit : public CToolkit {
public:
    using Driver = std::function<void(CDialogHand& hand)>;

    /// What the library says is shown with the name of `file`.
    CCommandToolkit(CConsole& console, std::string file) : m_console(console), m_file(std::move(file)) {}

    void OnDialog(int dialogTemplate, Driver driver) { m_drivers[dialogTemplate] = std::move(driver); }
    void SetOpenPath(std::string path) { m_openPath = std::move(path); }
    void SetSavePath(std::string path) { m_savePath = std::move(path); }
    /// Answers the question that contains `part`; other questions are answered by Yes.
    void OnQuestion(std::string part, bool yes) { m_questions[std::move(part)] = yes; }

    /// Everything the library said, without the questions answered by OnQuestion.
    std::vector<std::string> const& Messages() const { return m_messages; }
    /// Why a dialog could not be answered; empty when all could.
    std::string const& WhyFailed() const { return m_failure; }

    int RunModal(CDialog& dialog) override;
    MessageAnswer ShowMessage(MessageRequest const& request) override;
    bool ChooseFileToOpen(FileRequest const& request, std::string& path) override;
    bool ChooseFileToSave(FileRequest const& request, std::string& path, std::string& extension) override;
    void WindowCreated(CModelessDialog& window) override;
    void WindowTitled(CModelessDialog& window) override;
    void WindowShown(CModelessDialog& window) override;
    void WindowChanged(CModelessDialog& window, bool now) override;
    void WindowDestroyed(CModelessDialog& window) override;
    void OwnerNotice(std::string_view first, std::string_view second) override;
    void SetCursor(CursorShape shape) override;
    void ShowHelp(std::string const& topic) override;

private:
    CConsole& m_console;
    std::string m_file;
    std::map<int, Driver> m_drivers;
    std::map<std::string, bool> m_questions;
    std::string m_openPath;
    std::string m_savePath;
    std::vector<std::string> m_messages;
    int m_openDialogs = 0;
    std::string m_failure;
};

}  // namespace norva
