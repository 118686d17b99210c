#pragma once

#include "Server/Skyvault/Drive.h"

#include <functional>
#include <memory>
#include <string>

namespace Vs::Cloud {

/// The single thread that talks to the drive, job by job, so that a drive is never used by two threads and
/// requests are sent in the order of the calls. It is started by the first job and ends with the process.
/// Main thread only, except for the jobs themselves.
class DriveThread
{
public:
    using Job = std::function<DriveResult(const DriveWatch&)>;
    using Done = std::function<void(const DriveResult&)>;

    static DriveThread& get();

    /// Runs a job and returns its result. Meanwhile the window stays responsive and shows progress with the
    /// title, and Esc cancels. A cancelled job that is still waiting behind another one is never started.
    [[nodiscard]] DriveResult run(const std::wstring& title, Job job);
    /// Runs a job in the background. `done` is called on the main thread, through
    /// CloudCacheManager::results().
    void post(Job job, Done done);

    /// For a job of `run`, from its own thread: runs something on the main thread, which is waiting for the
    /// job, and returns the result. False, without running it, if the job is cancelled meanwhile.
    [[nodiscard]] bool onMainThread(std::function<bool()> action);

    /// Cancels the running job, drops the waiting ones, and ends the thread; for program exit.
    void stop();

private:
    DriveThread();
    ~DriveThread();
    struct Data;
    std::unique_ptr<Data> m_data;
};

} // namespace Vs::Cloud
