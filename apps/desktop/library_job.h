#pragma once

#include "desktop_toolkit.h"

#include <QString>

#include <atomic>
#include <functional>
#include <mutex>

namespace norva {

class CRunWindow;

/// How far a run of the library is, as its progress window says it.
struct RunProgress {
    QString title;
    QString file;
    QString channel;
    int filePercent = 0;
    int channelPercent = 0;
};

/// Runs an import or export on a thread of its own. Its dialogs, messages and file choices appear on the thread of the
/// application, which stays alive meanwhile; between them stands a window that tells how far it is and can stop it.
class CLibraryJob {
public:
    explicit CLibraryJob(CDesktopToolkit& toolkit, QWidget* parent);
    ~CLibraryJob();
    CLibraryJob(CLibraryJob const&) = delete;
    CLibraryJob& operator=(CLibraryJob const&) = delete;

    /// Returns what `operation`, run on the other thread, returned.
    int Run(std::function<int()> const& operation);
    bool IsRunning() const { return m_isRunning; }
    /// The run ends at its next step, with everything as it was before.
    void Cancel();
    bool IsCancelled() const { return m_isCancelled; }
    RunProgress Progress() const;

private:
    class CBridge;
    struct Cancelled {};

    CDesktopToolkit& m_toolkit;
    QWidget* m_parent;
    bool m_isRunning = false;
    std::atomic<bool> m_isCancelled{false};
    mutable std::mutex m_mutex;
    RunProgress m_progress;
    std::unique_ptr<CRunWindow> m_window;
};

}  // namespace norva
