#pragma once

#include "Services/Itemhub/Store/Listener.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace Itemhub::Routes {

/// Wakes those who wait for events. What this process notes wakes them at once; of what other processes note
/// the database tells, or it is looked for a few times a second, once for all who wait, and only while
/// somebody does. Thread-safe.
class EventWatch
{
public:
    /// @param most so many may wait at the same time
    EventWatch(const Store::Database& database, size_t most);
    ~EventWatch();

    EventWatch(const EventWatch&) = delete;
    EventWatch& operator=(const EventWatch&) = delete;

    /// Holds a waiter's place.
    class Place
    {
    public:
        explicit Place(EventWatch& watch);
        ~Place();

        Place(const Place&) = delete;
        Place& operator=(const Place&) = delete;

        [[nodiscard]] explicit operator bool() const { return m_granted; }

    private:
        EventWatch& m_watch;
        bool m_granted;
    };

    /// Waits until the last serial, of any tenant, is another one than that. @returns the last serial
    qint64 waitBeyond(qint64 serial, std::chrono::milliseconds time);
    void wake(); ///< Something may have been noted.
    void stop(); ///< Nobody waits any longer.

private:
    void look();

    const Store::Database& m_database;
    const size_t m_most;
    std::mutex m_mutex;
    std::condition_variable m_news, m_work;
    std::thread m_thread; ///< Begun by the first waiter.
    size_t m_places = 0, m_waiting = 0;
    qint64 m_serial = 0;
    bool m_hurry = false, m_stopped = false;
    std::unique_ptr<Store::Listener> m_listener; ///< Begun by the first waiter.
};

} // namespace Itemhub::Routes
