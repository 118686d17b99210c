#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

namespace Itemhub::Http {

/// Threads for connections. A connection holds its thread while it stands, also when it only listens for
/// events; so there are as many as are needed, up to a limit, and those that have had nothing to do for a
/// while end. Thread-safe.
class Workers
{
public:
    explicit Workers(size_t most);
    ~Workers(); ///< As stop.

    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    /// Runs the job on the next free thread.
    void add(std::function<void()> job);
    /// Waits until all jobs are done.
    void stop();

private:
    void work();
    void joinEnded();

    const size_t m_most;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_jobs;
    std::unordered_map<std::thread::id, std::thread> m_threads;
    std::vector<std::thread> m_ended; ///< They have left their loop and wait to be joined.
    size_t m_free = 0;
    bool m_stopped = false;
};

} // namespace Itemhub::Http
