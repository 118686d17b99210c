#pragma once

#include "Services/Itemhub/Store/Database.h"

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

class QEventLoop;

namespace Itemhub::Store {

/// Hears, by a connection and a thread of its own, of the events that any process notes, where the database
/// can tell. Where it can't, this does nothing.
class Listener
{
public:
    /// @param heard is called by the thread; something may have been noted
    Listener(const Database& database, std::function<void()> heard);
    ~Listener();

    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    /// Whether everything is heard at present; else somebody has to look.
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
    QEventLoop* m_loop = nullptr; ///< Of the thread, while it listens.
    std::thread m_thread;
};

} // namespace Itemhub::Store
