#pragma once

#include "norva/qt_toolkit.h"
#include "recorder.h"

#include <optional>
#include <string>

namespace norva {

/// The windows of the desktop program: dropped files answer the first ones, a recorder writes the answers down, and the
/// column dialog has buttons for templates.
class CDesktopToolkit : public CQtToolkit {
public:
    using CQtToolkit::CQtToolkit;

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

private:
    bool ChoosePresetFormat(CDialog& dialog);

    CRecorder* m_recorder = nullptr;
    std::optional<std::string> m_nextFormat;
    std::optional<std::string> m_nextOpen;
};

}  // namespace norva
