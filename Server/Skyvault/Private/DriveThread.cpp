#include "Server/Skyvault/Private/DriveThread.h"

#include "Server/Base/Progress.h"
#include "Server/Base/Require.h"
#include "Server/Base/Task.h"
#include "Server/Skyvault/CloudCacheManager.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <thread>
#include <tuple>

namespace Vs::Cloud {
namespace {

/// How often the main thread processes the window's events while it waits.
constexpr std::chrono::milliseconds kLook{20};

struct Work
{
    DriveThread::Job job;
    DriveThread::Done done; ///< For background work only.
    DriveResult result;
    bool begun = false;
    bool finished = false;
    std::atomic<bool> cancelled{false};
    std::atomic<std::uint64_t> bytes{0}, total{0};

    bool inForeground() const { return !done; }
    void execute();
};

void Work::execute()
{
    const DriveWatch watch{[this](std::uint64_t done, std::uint64_t all) {
        bytes = done;
        total = all;
        return !cancelled && !(inForeground() && Progress::cancelled());
    }};
    try {
        result = job(watch);
    } catch (const std::exception& error) {
        result = {CloudErrorState::BadAnswer, error.what()};
    }
    // What it captured is destroyed on this thread, the only one that may use drives.
    job = nullptr;
}

} // namespace

struct DriveThread::Data
{
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::shared_ptr<Work>> waiting;
    std::shared_ptr<Work> running;
    std::function<bool()> asked; ///< The running job's call to the main thread.
    bool answer = false;
    bool ends = false;
    std::thread thread;

    void loop();
    void add(const std::shared_ptr<Work>& work);
    /// Whether it was still waiting.
    bool takeOut(const std::shared_ptr<Work>& work);
    void doWhatIsAsked();
};

void DriveThread::Data::loop()
{
    std::unique_lock lock(mutex);
    for (;;) {
        changed.wait(lock, [&] { return ends || !waiting.empty(); });
        if (ends)
            return;
        running = waiting.front();
        waiting.pop_front();
        running->begun = true;
        const std::shared_ptr<Work> work = running;
        lock.unlock();
        work->execute();
        lock.lock();
        running.reset();
        work->finished = true;
        changed.notify_all();
        if (work->done && !ends) {
            lock.unlock();
            CloudCacheManager::results().post([work] { work->done(work->result); });
            lock.lock();
        }
    }
}

void DriveThread::Data::add(const std::shared_ptr<Work>& work)
{
    const std::lock_guard lock(mutex);
    if (!thread.joinable()) {
        ends = false;
        thread = std::thread([this] { loop(); });
    }
    waiting.push_back(work);
    changed.notify_all();
}

bool DriveThread::Data::takeOut(const std::shared_ptr<Work>& work)
{
    const std::lock_guard lock(mutex);
    return std::erase(waiting, work) > 0;
}

void DriveThread::Data::doWhatIsAsked()
{
    std::function<bool()> action;
    {
        const std::lock_guard lock(mutex);
        action = asked;
    }
    if (!action)
        return;
    const bool done = action();
    const std::lock_guard lock(mutex);
    answer = done;
    asked = nullptr;
    changed.notify_all();
}

DriveThread& DriveThread::get()
{
    // The results are created first, so that they outlive the thread.
    std::ignore = CloudCacheManager::results();
    static DriveThread thread;
    return thread;
}

DriveThread::DriveThread() : m_data(std::make_unique<Data>()) {}

DriveThread::~DriveThread()
{
    stop();
}

DriveResult DriveThread::run(const std::wstring& title, Job job)
{
    assertMainThread();
    const auto work = std::make_shared<Work>();
    work->job = std::move(job);
    ProgressScope scope(title);
    m_data->add(work);
    std::unique_lock lock(m_data->mutex);
    while (!m_data->changed.wait_for(lock, kLook, [&] { return work->finished; })) {
        lock.unlock();
        m_data->doWhatIsAsked();
        const std::uint64_t total = work->total;
        const bool goesOn =
            scope.update(total > 0 ? static_cast<double>(work->bytes) / static_cast<double>(total) : 0);
        if (!goesOn) {
            work->cancelled = true;
            if (m_data->takeOut(work))
                return {CloudErrorState::Cancelled, {}};
        }
        lock.lock();
    }
    return work->result;
}

void DriveThread::post(Job job, Done done)
{
    assertMainThread();
    const auto work = std::make_shared<Work>();
    work->job = std::move(job);
    work->done = std::move(done);
    m_data->add(work);
}

bool DriveThread::onMainThread(std::function<bool()> action)
{
    std::unique_lock lock(m_data->mutex);
    const std::shared_ptr<Work> work = m_data->running;
    m_data->answer = false;
    m_data->asked = std::move(action);
    while (m_data->asked && work && !work->cancelled && !m_data->ends)
        m_data->changed.wait_for(lock, kLook);
    m_data->asked = nullptr;
    return m_data->answer;
}

void DriveThread::stop()
{
    {
        const std::lock_guard lock(m_data->mutex);
        m_data->ends = true;
        m_data->waiting.clear();
        if (m_data->running)
            m_data->running->cancelled = true;
        m_data->changed.notify_all();
    }
    if (m_data->thread.joinable())
        m_data->thread.join();
}

} // namespace Vs::Cloud
