#pragma once

#include "Server/Itemhub/ItemStore.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace Vs::Itemhub {

/// The thread that listens for events of the service while somebody is signed in, and notifies the sites.
class EventListener
{
public:
    static EventListener& get();

    /// Main thread.
    void start(std::shared_ptr<ItemStore> store, const std::string& account);
    /// Main thread. Waits until the thread has ended.
    void stop();

private:
    EventListener() = default;
    void loop(const std::shared_ptr<ItemStore>& store, const std::string& account);
    /// False when the thread should end.
    [[nodiscard]] bool pause(std::chrono::seconds time);

    std::thread m_thread;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::atomic<bool> m_ends = false;
};

} // namespace Vs::Itemhub
