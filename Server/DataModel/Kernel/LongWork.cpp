#include "Server/DataModel/Kernel/LongWork.h"

#include "Server/Base/Progress.h"
#include "Server/Base/Require.h"
#include "Server/DataModel/Kernel/CrashGuard.h"
#include "Server/DataModel/Kernel/MemoryStop.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace Vs::Kernel {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// Most changes are done before anybody could have read a progress message.
constexpr auto kQuiet = 400ms;
constexpr auto kBetweenLooks = 40ms;
constexpr auto kLongest = 2min;
/// How long the kernel has to stop by itself, and then by failing allocations, which also cleans up what it
/// made.
constexpr Clock::duration kGrace = 500ms, kUnwinding = 3s;

class StopSign : public Message_ProgressIndicator
{
public:
    void stop() { m_stopped = true; }
    double done() const { return m_done; }

private:
    Standard_Boolean UserBreak() override { return m_stopped; }
    void Show(const Message_ProgressScope&, const Standard_Boolean) override { m_done = GetPosition(); }

    std::atomic<bool> m_stopped = false;
    std::atomic<double> m_done = 0;
};

/// The work on its thread.
class Worker
{
public:
    explicit Worker(const std::function<void()>& work)
        : m_thread([this, &work] {
              const CrashGuard::Guarded guarded(m_guard);
              try {
                  const MemoryStop::Heeded heeded(m_memory);
                  work();
              } catch (const MemoryStop::Stopped&) {
                  // Whoever stopped it knows.
              } catch (...) {
                  m_thrown = std::current_exception();
              }
              const std::lock_guard lock(m_mutex);
              m_done = true;
              m_ended.notify_all();
          })
    {
    }
    ~Worker()
    {
        if (stands())
            m_thread.detach();
        else
            m_thread.join();
    }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    bool isOverWithin(Clock::duration time)
    {
        std::unique_lock lock(m_mutex);
        return m_ended.wait_for(lock, time, [this] { return m_done; }) || stands();
    }
    /// It ends as soon as it asks for memory.
    void refuseMemory() { m_memory.stop(); }
    /// It is blocked for good.
    void stop() { m_guard.stop(m_thread.native_handle()); }
    bool stands() const { return m_guard.stands(); }
    /// After the end.
    const std::exception_ptr& thrown() const { return m_thrown; }

private:
    CrashGuard m_guard;
    MemoryStop m_memory;
    std::mutex m_mutex;
    std::condition_variable m_ended;
    bool m_done = false;
    std::exception_ptr m_thrown;
    std::thread m_thread; ///< Last, as it uses the others.
};

/// Whether the work is over by itself; else why it is to be stopped.
std::optional<EditFault> watch(Worker& worker, const StopSign& sign, const std::function<bool(double)>& goOn)
{
    const auto begin = Clock::now();
    while (!worker.isOverWithin(kBetweenLooks)) {
        if (goOn && !goOn(sign.done()))
            return EditFault::Cancelled;
        if (Clock::now() - begin > kLongest)
            return EditFault::TooLong;
    }
    return std::nullopt;
}

} // namespace

void keepForever(std::shared_ptr<void> thing)
{
    static std::mutex mutex;
    static auto* const kept = new std::vector<std::shared_ptr<void>>;
    const std::lock_guard lock(mutex);
    kept->push_back(std::move(thing));
}

LongWorkEnd runLongWork(const std::wstring& title, const LongWorkBody& work)
{
    assertMainThread();
    const auto begin = Clock::now();
    const Progress::CancelScope cancellable;
    std::optional<ProgressScope> progress;
    const auto goOn = [&](double done) {
        if (!progress && Clock::now() - begin > kQuiet)
            progress.emplace(title);
        return progress ? progress->update(done) : !Progress::cancelled();
    };
    return runGuardedWork(goOn, work);
}

LongWorkEnd runGuardedWork(const std::function<bool(double)>& goOn, const LongWorkBody& work)
{
    require(work != nullptr, "there is work to be done");
    const Handle(StopSign) sign = new StopSign;
    const std::function<void()> own = [&] { work(sign); };
    Worker worker(own);
    LongWorkEnd end;
    end.fault = watch(worker, *sign, goOn);
    if (end.fault) {
        sign->stop();
        if (!worker.isOverWithin(kGrace))
            worker.refuseMemory();

        for (Clock::duration wait = kUnwinding; !worker.isOverWithin(wait); wait = kBetweenLooks)
            worker.stop();
    }
    end.abandoned = worker.stands();
    if (end.abandoned && !end.fault)
        end.fault = EditFault::Crashed;
    if (!end.fault && worker.thrown())
        std::rethrow_exception(worker.thrown());
    return end;
}

} // namespace Vs::Kernel
