#pragma once

#include "map_picture.h"

#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace norva {

/// A picture of the map, and what it was made from.
struct MapPicture {
    std::shared_ptr<CMapData const> data;  ///< null: the store could not be read, or gives no positions
    CColourScale scale;
    MapView view;
    QImage image;
    unsigned generation = 0;  ///< of the source
};

/// Reads and draws maps on a thread of its own, always the newest wish first. A long map is first drawn from some of
/// its readings.
class CMapWorker {
public:
    /// `deliver` is called on the worker's thread.
    explicit CMapWorker(std::function<void(MapPicture)> deliver);
    CMapWorker(CMapWorker const&) = delete;
    CMapWorker& operator=(CMapWorker const&) = delete;
    ~CMapWorker();

    /// Other readings; what was read and wished before is forgotten.
    void SetSource(MapSource source, long readings);
    void SetColours(ColourChoice const& choice);
    /// Wishes a picture. Of several wishes only the last is fulfilled.
    void SetView(MapView const& view);
    /// Returns when everything wished has been delivered.
    void Wait();

private:
    void Run();
    void Draw(std::shared_ptr<CMapData const> const& data, std::unique_lock<std::mutex>& lock);

    std::function<void(MapPicture)> m_deliver;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::condition_variable m_idle;
    std::optional<MapSource> m_nextSource;
    long m_readings = 0;
    unsigned m_generation = 0;  ///< of the source that is drawn
    ColourChoice m_choice;
    MapView m_view;
    bool m_isWished = false;  ///< a picture
    bool m_isBusy = false;
    bool m_isEnding = false;
    std::atomic<bool> m_stop{false};  ///< what is being read or drawn is of no use any more
    std::shared_ptr<CMapData const> m_data;
    // Of the last drawing, on the worker's thread alone.
    std::shared_ptr<CMapData const> m_classified;
    ColourChoice m_classifiedBy;
    CColourScale m_scale;
    std::vector<std::int16_t> m_classes;
    std::thread m_thread;
};

}  // namespace norva
