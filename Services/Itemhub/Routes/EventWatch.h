#pragma once

#include "Services/Itemhub/Store/Listener.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

namespace Itemhub::Routes {

/// Wakes those who wait for events. Events of this process wake them at once; those of other processes are
/// announced by the database, or polled for a few times a second, once for all waiters and only while there
/// are any. Thread-safe.
class EventWatch
{
public:
    /// @param most how many may wait at the same time
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

    /// Waits until the last serial of any tenant exceeds the given one. @returns the last serial
    qint64 waitBeyond(qint64 serial, std::chrono::milliseconds time);
    void wake(); ///< Something may have been noted.
    void stop(); ///< Ends all waits.

private:
    void look();

    const Store::Database& m_database;
    const size_t m_most;
    std::mutex m_mutex;
    std::condition_variable m_news, m_work;
    std::thread m_thread; ///< Started by the first waiter.
    size_t m_places = 0, m_waiting = 0;
    qint64 m_serial = 0;
    bool m_hurry = false, m_stopped = false;
    std::unique_ptr<Store::Listener> m_listener; ///< Created by the first waiter.
};

} // namespace Itemhub::Routes
