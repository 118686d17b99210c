#include "Services/Itemhub/Http/Workers.h"

#include <chrono>
#include <system_error>

namespace Itemhub::Http {

namespace {

constexpr std::chrono::seconds kIdleTime{30};

} // namespace

Workers::Workers(size_t most) : m_most(most) {}

Workers::~Workers()
{
    stop();
}

void Workers::add(std::function<void()> job)
{
    joinEnded();
    const std::lock_guard lock(m_mutex);
    m_jobs.push_back(std::move(job));
    if (m_jobs.size() > m_free && m_threads.size() < m_most) {
        try {
            std::thread thread([this] { work(); });
            const auto id = thread.get_id();
            m_threads.emplace(id, std::move(thread));
        } catch (const std::system_error&) {
            // The system can't create more threads; the existing ones do the work one after the other.
            if (m_threads.empty())
                throw;
        }
    }
    m_wake.notify_one();
}

void Workers::work()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        ++m_free;
        m_wake.wait_for(lock, kIdleTime, [this] { return m_stopped || !m_jobs.empty(); });
        --m_free;
        if (m_jobs.empty())
            break;
        const std::function<void()> job = std::move(m_jobs.front());
        m_jobs.pop_front();
        lock.unlock();
        job();
        lock.lock();
    }
    // stop has taken the threads already.
    if (const auto self = m_threads.find(std::this_thread::get_id()); self != m_threads.end()) {
        m_ended.push_back(std::move(self->second));
        m_threads.erase(self);
    }
}

void Workers::joinEnded()
{
    std::vector<std::thread> ended;
    {
        const std::lock_guard lock(m_mutex);
        ended.swap(m_ended);
    }
    for (std::thread& thread : ended)
        thread.join();
}

void Workers::stop()
{
    std::unordered_map<std::thread::id, std::thread> threads;
    {
        const std::lock_guard lock(m_mutex);
        m_stopped = true;
        threads.swap(m_threads);
    }
    m_wake.notify_all();
    for (auto& [id, thread] : threads)
        thread.join();
    joinEnded();
}

} // namespace Itemhub::Http
