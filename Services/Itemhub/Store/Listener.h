#pragma once

#include "Services/Itemhub/Store/Database.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

class QEventLoop;

namespace Itemhub::Store {

/// Receives notifications of the events that any process records, on a separate connection and thread, if the
/// database supports that. Otherwise this does nothing.
class Listener
{
public:
    /// @param heard is called on the thread; something may have been recorded
    Listener(const Database& database, std::function<void()> heard);
    ~Listener();

    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    /// Whether notifications are being received; otherwise events have to be polled for.
    [[nodiscard]] bool isListening() const { return m_isListening; }

private:
    void work();
    void listen();

    const Database& m_database;
    const std::function<void()> m_heard;
    std::atomic<bool> m_isListening = false;
    std::mutex m_mutex;
    std::condition_variable m_end;
    bool m_stopped = false;
    QEventLoop* m_loop = nullptr; ///< The thread's, while it listens.
    std::thread m_thread;
};

} // namespace Itemhub::Store
