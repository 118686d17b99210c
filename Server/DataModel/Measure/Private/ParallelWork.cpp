#include "Server/DataModel/Measure/Private/ParallelWork.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <vector>

namespace Vs {

bool runInParallel(ProgressScope& progress, double from, double to, size_t count,
                   const std::function<void(size_t)>& job)
{
    constexpr std::chrono::milliseconds kRefresh(20);
    if (!progress.update(from))
        return false;
    std::atomic<size_t> next = 0, done = 0;
    std::atomic<bool> stopped = false;
    std::mutex mutex;
    std::condition_variable ended;
    std::exception_ptr thrown;
    size_t running = std::min<size_t>(std::max(1u, std::thread::hardware_concurrency()), count);
    const auto work = [&] {
        for (size_t i = next++; i < count && !stopped; i = next++) {
            try {
                job(i);
            } catch (...) {
                const std::lock_guard lock(mutex);
                thrown = std::current_exception();
                stopped = true;
            }
            ++done;
        }
        const std::lock_guard lock(mutex);
        --running;
        ended.notify_one();
    };
    std::vector<std::jthread> threads;
    for (size_t i = running; i > 0; --i)
        threads.emplace_back(work);
    bool goesOn = true;
    for (std::unique_lock lock(mutex); !ended.wait_for(lock, kRefresh, [&] { return running == 0; });) {
        lock.unlock();
        goesOn = progress.update(from + (to - from) * double(done) / double(count)) && goesOn;
        stopped = stopped || !goesOn;
        lock.lock();
    }
    threads.clear();
    if (thrown)
        std::rethrow_exception(thrown);
    return goesOn;
}

} // namespace Vs
