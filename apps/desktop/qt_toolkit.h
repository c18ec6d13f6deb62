#pragma once

#include "norva/toolkit.h"
#include "qt_dialog.h"
#include "recorder.h"

#include <QFileDialog>
#include <QPointer>

#include <map>
#include <memory>
#include <optional>

namespace norva {

/// The filter of a file dialog as Qt writes it: "Text (*.xyz *.txt)".
QStringList QtFilters(std::string_view filter);
/// Extension of the first pattern of a Qt filter; empty for none.
std::string ExtensionOfQtFilter(QString const& filter);

/// Shows the library's windows as real ones.
class CQtToolkit : public CToolkit {
public:
    explicit CQtToolkit(QWidget* mainWindow);
    ~CQtToolkit() override;

    /// Answers the next format list and open dialog without asking (a dropped file).
    void PresetImport(std::string format, std::string path) {
        m_nextFormat = std::move(format);
        m_nextOpen = std::move(path);
    }
    void ForgetPreset() {
        m_nextFormat.reset();
        m_nextOpen.reset();
    }

    /// Writes down what the person answers; null for nobody. Not owned.
    void SetRecorder(CRecorder* recorder) { m_recorder = recorder; }

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

protected:
    QWidget* Parent() const;

private:
    QWidget* m_mainWindow;
    CRecorder* m_recorder = nullptr;
    bool ChoosePresetFormat(CDialog& dialog);

    std::optional<std::string> m_nextFormat;
    std::optional<std::string> m_nextOpen;
    std::map<CModelessDialog*, std::unique_ptr<CQtDialog>> m_windows;
    bool m_waiting = false;
};

}  // namespace norva
