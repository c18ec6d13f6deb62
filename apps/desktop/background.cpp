#include "background.h"

#include "control_views.h"

#include <utility>

namespace norva {

CBackground::CBackground() {
    m_thread.setMaxThreadCount(1);
}

CBackground::~CBackground() {
    Cancel();
    m_thread.clear();
    m_thread.waitForDone();
}

void CBackground::Start(std::function<void()> work, std::function<void()> then) {
    ++m_tasks;
    m_thread.start([this, work = std::move(work), then = std::move(then)] {
        work();
        QMetaObject::invokeMethod(
            this,
            [this, then] {
                --m_tasks;
                then();
            },
            Qt::QueuedConnection);
    });
}

ProgressCallback CBackground::Progress() {
    return [this](ExchangeProgress const& progress) {
        std::lock_guard const lock(m_mutex);
        m_step = ToQString(progress.channel.empty() ? progress.step : progress.channel);
        m_percent = progress.percent;
        return !m_isCancelled;
    };
}

QString CBackground::Step() const {
    std::lock_guard const lock(m_mutex);
    return m_step;
}

int CBackground::Percent() const {
    std::lock_guard const lock(m_mutex);
    return m_percent;
}

}  // namespace norva
