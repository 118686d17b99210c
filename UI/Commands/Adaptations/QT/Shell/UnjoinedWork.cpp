#include "UI/Commands/Adaptations/QT/Shell/UnjoinedWork.h"

#include <QCoreApplication>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <unistd.h>

namespace Vu::Commands::UnjoinedWork {
namespace {

/// Enough that a few files on one dead disk don't delay those on others.
constexpr int kMostThreads = 8;

class Workers
{
public:
    static Workers& get()
    {
        // Never destroyed: its threads may still hold it when the program ends.
        static auto* const workers = [] {
            qAddPostRoutine([] { get().end(); });
            return new Workers;
        }();
        return *workers;
    }

    void add(Reading reading)
    {
        const std::lock_guard lock(m_mutex);
        m_waiting.push_back(std::move(reading));
        if (m_free < m_waiting.size() && m_threads < kMostThreads) {
            ++m_threads;
            std::thread([this] { run(); }).detach();
        }
        m_changed.notify_one();
    }

private:
    void run()
    {
        std::unique_lock lock(m_mutex);
        for (;;) {
            ++m_free;
            m_changed.wait(lock, [this] { return !m_waiting.empty() && !m_over; });
            --m_free;
            const Reading reading = std::move(m_waiting.front());
            m_waiting.pop_front();
            lock.unlock();
            use(reading());
            lock.lock();
        }
    }
    void use(const Then& then)
    {
        const std::lock_guard ending(m_ending);
        if (m_over)
            for (;;)
                pause(); // What it would touch is being destroyed.
        if (then)
            then();
    }
    void end()
    {
        const std::scoped_lock locks(m_mutex, m_ending);
        m_over = true;
    }

    std::mutex m_mutex;
    std::mutex m_ending; ///< Held while a result is being used.
    std::condition_variable m_changed;
    std::deque<Reading> m_waiting;
    int m_threads = 0;
    size_t m_free = 0;
    bool m_over = false; ///< Changed with both locked.
};

} // namespace

void start(Reading reading)
{
    Workers::get().add(std::move(reading));
}

} // namespace Vu::Commands::UnjoinedWork
