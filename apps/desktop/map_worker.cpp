#include "map_worker.h"

#include <utility>

namespace norva {

namespace {

constexpr long kReadingsAtOnce = 1'000'000;  ///< longer maps are drawn from some readings first
constexpr long kReadingsOfPreview = 300'000;

}  // namespace

CMapWorker::CMapWorker(std::function<void(MapPicture)> deliver)
    : m_deliver(std::move(deliver)), m_thread([this] { Run(); }) {}

CMapWorker::~CMapWorker() {
    {
        std::lock_guard const lock(m_mutex);
        m_isEnding = true;
        m_stop = true;
    }
    m_wake.notify_all();
    m_thread.join();
}

void CMapWorker::SetSource(MapSource source, long readings) {
    std::lock_guard const lock(m_mutex);
    m_nextSource = std::move(source);
    m_readings = readings;
    m_stop = true;
    m_wake.notify_all();
}

void CMapWorker::SetColours(ColourChoice const& choice) {
    std::lock_guard const lock(m_mutex);
    if (choice == m_choice) return;
    m_choice = choice;
    m_isWished = true;
    m_wake.notify_all();
}

void CMapWorker::SetView(MapView const& view) {
    std::lock_guard const lock(m_mutex);
    m_view = view;
    m_isWished = true;
    m_wake.notify_all();
}

void CMapWorker::Wait() {
    std::unique_lock lock(m_mutex);
    m_idle.wait(lock, [this] { return !m_isBusy && !m_isWished && !m_nextSource; });
}

void CMapWorker::Draw(std::shared_ptr<CMapData const> const& data, std::unique_lock<std::mutex>& lock) {
    MapPicture picture;
    picture.data = data;
    picture.view = m_view;
    picture.generation = m_generation;
    ColourChoice const choice = m_choice;
    m_isWished = false;
    lock.unlock();
    if (data != nullptr) {
        if (data != m_classified || !(choice == m_classifiedBy)) {
            m_scale = CColourScale(choice, data->SortedSample());
            m_classes = ClassesOf(*data, m_scale);
            m_classified = data;
            m_classifiedBy = choice;
        }
        picture.scale = m_scale;
        picture.image = DrawMap(*data, m_classes, picture.view, m_stop);
    }
    if (!m_stop) m_deliver(std::move(picture));
    lock.lock();
}

void CMapWorker::Run() {
    std::unique_lock lock(m_mutex);
    while (true) {
        m_isBusy = false;
        if (!m_isWished && !m_nextSource) m_idle.notify_all();
        m_wake.wait(lock, [this] { return m_isEnding || m_isWished || m_nextSource; });
        if (m_isEnding) return;
        m_isBusy = true;
        m_stop = false;
        if (!m_nextSource) {
            Draw(m_data, lock);
            continue;
        }
        MapSource const source = *std::exchange(m_nextSource, std::nullopt);
        long const readings = m_readings;
        m_generation = source.generation;
        m_data.reset();
        lock.unlock();
        std::shared_ptr<CMapData const> preview;
        if (readings > kReadingsAtOnce) {
            preview = CMapData::Read(source, static_cast<int>(readings / kReadingsOfPreview), m_stop);
        }
        lock.lock();
        if (preview != nullptr && !m_stop) Draw(preview, lock);
        preview.reset();
        lock.unlock();
        std::shared_ptr<CMapData const> data = m_stop ? nullptr : CMapData::Read(source, 1, m_stop);
        lock.lock();
        if (m_stop) continue;
        m_data = std::move(data);
        Draw(m_data, lock);
    }
}

}  // namespace norva
