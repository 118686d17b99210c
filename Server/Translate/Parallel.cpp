#include "Server/Translate/Parallel.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace Vs::Translate {

void forEachInParallel(size_t count, const std::function<void(size_t)>& job)
{
    std::atomic<size_t> next = 0;
    std::exception_ptr fault;
    std::mutex mutex;
    const auto work = [&] {
        try {
            for (size_t i; (i = next++) < count;)
                job(i);
        } catch (...) {
            const std::lock_guard lock(mutex);
            fault = std::current_exception();
        }
    };
    std::vector<std::thread> others;
    const size_t processors = std::max(1u, std::thread::hardware_concurrency());
    try {
        while (others.size() + 1 < std::min(processors, count))
            others.emplace_back(work);
    } catch (const std::system_error&) {
        // If the system grants no more threads, the existing ones do the work.
    }
    work();
    for (std::thread& thread : others)
        thread.join();
    if (fault)
        std::rethrow_exception(fault);
}

} // namespace Vs::Translate
