#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

namespace Itemhub::Http {

/// Threads for connections. A connection occupies its thread as long as it is open, even while it only waits
/// for events; so as many are created as needed, up to a limit, and those that have been idle for a while
/// end. Thread-safe.
class Workers
{
public:
    explicit Workers(size_t most);
    ~Workers(); ///< Calls stop.

    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    /// Runs the job on the next available thread.
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
    std::vector<std::thread> m_ended; ///< Finished, waiting to be joined.
    size_t m_free = 0;
    bool m_stopped = false;
};

} // namespace Itemhub::Http
