#include "UI/Commands/Itemhub/ItemhubThreads.h"

#include "Server/Base/Task.h"
#include "Server/Itemhub/ItemhubUtilities.h"

#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

namespace Vu::Commands {
namespace {

/// Requests are cancelled by then.
constexpr std::chrono::seconds kMomentAtTheEnd(2);

struct Threads
{
    std::mutex mutex;
    std::condition_variable done;
    int running = 0;
    bool ended = false;
};

/// Never destroyed: a thread may still be ending when the program exits.
Threads& threads()
{
    static auto* const all = new Threads;
    return *all;
}

void work(const std::function<std::function<void()>()>& ask)
{
    std::function<void()> then;
    try {
        then = ask();
    } catch (const std::exception&) {
        // Whoever wants to know asks again.
    }
    const std::lock_guard lock(threads().mutex);
    if (then && !threads().ended)
        Vs::ItemhubUtilities::results().post(std::move(then));
    --threads().running;
    threads().done.notify_all();
}

} // namespace

void ItemhubThreads::run(std::function<std::function<void()>()> ask)
{
    {
        const std::lock_guard lock(threads().mutex);
        if (threads().ended)
            return;
        ++threads().running;
    }
    try {
        std::thread([ask = std::move(ask)] { work(ask); }).detach();
    } catch (...) {
        const std::lock_guard lock(threads().mutex);
        --threads().running;
        throw;
    }
}

void ItemhubThreads::end()
{
    std::unique_lock lock(threads().mutex);
    threads().ended = true;
    threads().done.wait_for(lock, kMomentAtTheEnd, [] { return threads().running == 0; });
}

} // namespace Vu::Commands
