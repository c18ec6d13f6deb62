#pragma once

#include "norva/exchange.h"

#include <QObject>
#include <QString>
#include <QThreadPool>

#include <atomic>
#include <functional>
#include <mutex>

namespace norva {

/// Work on one thread beside the application's, one piece after the other.
class CBackground : public QObject {
public:
    CBackground();
    /// Waits for what runs, after Cancel().
    ~CBackground() override;

    /// Runs `work` on the other thread, then `then` on this one, unless this object is gone by then.
    void Start(std::function<void()> work, std::function<void()> then);
    bool IsBusy() const { return m_tasks > 0; }

    /// From now on Progress() says no; what is started later may run again.
    void Cancel() { m_isCancelled = true; }
    void Resume() { m_isCancelled = false; }
    bool IsCancelled() const { return m_isCancelled; }

    /// For runs of the library on the other thread. It outlives them.
    ProgressCallback Progress();
    QString Step() const;
    int Percent() const;

private:
    int m_tasks = 0;
    std::atomic<bool> m_isCancelled{false};
    mutable std::mutex m_mutex;
    QString m_step;
    int m_percent = 0;
    QThreadPool m_thread;
};

}  // namespace norva
