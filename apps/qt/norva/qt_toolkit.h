#pragma once

#include "norva/toolkit.h"

#include <memory>

class QWidget;

namespace norva {

/// Shows the library's windows as windows of Qt, on the thread of the application's event loop:
///
///     CQtToolkit toolkit(&mainWindow);
///     CToolkitScope const scope(toolkit);
///     int const result = Import_Data_File(&store, name, nullptr, 0);
class CQtToolkit : public CToolkit {
public:
    /// Windows stand before `mainWindow`, which may be null and has to outlive the toolkit.
    explicit CQtToolkit(QWidget* mainWindow);
    CQtToolkit(CQtToolkit const&) = delete;
    CQtToolkit& operator=(CQtToolkit const&) = delete;
    ~CQtToolkit() override;

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
    /// Gives a wait cursor back that a failed run left.
    void CallEnded() override;
    void ShowHelp(std::string const& topic) override;

protected:
    /// What a new window stands before.
    QWidget* Parent() const;

private:
    struct Windows;

    QWidget* m_mainWindow;
    std::unique_ptr<Windows> m_windows;  ///< those that are modeless
    bool m_waiting = false;
};

}  // namespace norva
