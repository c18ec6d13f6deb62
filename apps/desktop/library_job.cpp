#include "library_job.h"

#include "control_views.h"
#include "run_window.h"

#include <QCoreApplication>
#include <QEventLoop>

#include <chrono>
#include <ctime>
#include <exception>
#include <thread>

namespace norva {

namespace {

/// Some milliseconds' grain, for next to nothing.
std::chrono::milliseconds CoarseTime() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return std::chrono::milliseconds(now.tv_sec * 1000 + now.tv_nsec / 1'000'000);
}

}  // namespace

/// The toolkit of the thread that works: asks the application's thread to show what it shows, and waits for it.
class CLibraryJob::CBridge : public CToolkit {
public:
    explicit CBridge(CLibraryJob& job) : m_job(job) {}

    int RunModal(CDialog& dialog) override {
        if (m_job.m_isCancelled) throw Cancelled();
        int result = 0;
        InApplication([&] { result = m_job.m_toolkit.RunModal(dialog); });
        return result;
    }
    MessageAnswer ShowMessage(MessageRequest const& request) override {
        MessageAnswer answer = request.buttons == MessageButtons::YesNo ? MessageAnswer::No : MessageAnswer::Ok;
        // What a stopped run has to say of its end is no news.
        if (!m_job.m_isCancelled) InApplication([&] { answer = m_job.m_toolkit.ShowMessage(request); });
        return answer;
    }
    bool ChooseFileToOpen(FileRequest const& request, std::string& path) override {
        bool isChosen = false;
        InApplication([&] { isChosen = m_job.m_toolkit.ChooseFileToOpen(request, path); });
        return isChosen;
    }
    bool ChooseFileToSave(FileRequest const& request, std::string& path, std::string& extension) override {
        bool isChosen = false;
        InApplication([&] { isChosen = m_job.m_toolkit.ChooseFileToSave(request, path, extension); });
        return isChosen;
    }
    void WindowCreated(CModelessDialog& window) override {
        Take(window);
        InApplication([this] {
            if (m_job.m_window == nullptr) m_job.m_window = std::make_unique<CRunWindow>(m_job, m_job.m_parent);
            m_job.m_window->show();
        });
    }
    void WindowTitled(CModelessDialog& window) override { Take(window); }
    void WindowShown(CModelessDialog& window) override { Take(window); }
    void WindowChanged(CModelessDialog& window, bool now) override {
        if (m_job.m_isCancelled) throw Cancelled();
        auto const time = CoarseTime();
        if (!now && time - m_taken < std::chrono::milliseconds(20)) return;
        m_taken = time;
        Take(window);
    }
    void WindowDestroyed(CModelessDialog& /*window*/) override {
        InApplication([this] { m_job.m_window.reset(); });
    }
    void OwnerNotice(std::string_view /*first*/, std::string_view /*second*/) override {
        if (m_job.m_isCancelled) throw Cancelled();
    }
    void SetCursor(CursorShape /*shape*/) override {}
    void ShowHelp(std::string const& topic) override {
        InApplication([&] { m_job.m_toolkit.ShowHelp(topic); });
    }

private:
    /// Runs `act` on the application's thread; what it throws is thrown here.
    template <typename Act>
    void InApplication(Act const& act) {
        std::exception_ptr failure;
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [&] {
                try {
                    act();
                } catch (...) {
                    failure = std::current_exception();
                }
            },
            Qt::BlockingQueuedConnection);
        if (failure) std::rethrow_exception(failure);
    }

    void Take(CModelessDialog& window) {
        RunProgress progress;
        progress.title = ToQString(window.Title());
        int bars = 0;
        int texts = 0;
        for (CControl const& control : window.Controls()) {
            if (control.kind == ControlKind::Progress) {
                (bars++ == 0 ? progress.filePercent : progress.channelPercent) = control.position;
            } else if (control.kind == ControlKind::Static) {
                (texts++ == 0 ? progress.file : progress.channel) = ToQString(control.text);
            }
        }
        std::lock_guard const lock(m_job.m_mutex);
        m_job.m_progress = std::move(progress);
    }

    CLibraryJob& m_job;
    std::chrono::milliseconds m_taken{};
};

CLibraryJob::CLibraryJob(CDesktopToolkit& toolkit, QWidget* parent) : m_toolkit(toolkit), m_parent(parent) {}
CLibraryJob::~CLibraryJob() = default;

int CLibraryJob::Run(std::function<int()> const& operation) {
    m_isRunning = true;
    m_isCancelled = false;
    m_progress = {};
    CToolkitScope const scope(m_toolkit);  // for the dialogs, which live on this thread
    int result = 0;
    QEventLoop loop;
    std::thread worker([&] {
        {
            CBridge bridge(*this);
            CToolkitScope const there(bridge);
            try {
                result = operation();
            } catch (Cancelled const&) {
                result = 0;
            }
        }
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });
    loop.exec();
    worker.join();
    m_window.reset();
    m_isRunning = false;
    return result;
}

void CLibraryJob::Cancel() {
    m_isCancelled = true;
}

RunProgress CLibraryJob::Progress() const {
    std::lock_guard const lock(m_mutex);
    return m_progress;
}

}  // namespace norva
