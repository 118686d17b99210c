#pragma once

#include "Server/Skyvault/Drive.h"

#include <functional>
#include <memory>
#include <string>

namespace Vs::Cloud {

/// The one thread that talks to the drive, job after job, so that no drive is ever used by two threads and
/// the order of requests is that of the calls. It begins with the first job and ends with the process. Main
/// thread only, but for the jobs themselves.
class DriveThread
{
public:
    using Job = std::function<DriveResult(const DriveWatch&)>;
    using Done = std::function<void(const DriveResult&)>;

    static DriveThread& get();

    /// Runs a job and returns with its result. Meanwhile the window is kept alive and shows progress under
    /// the title, and Esc cancels. A job that still waits behind another one is then never begun.
    [[nodiscard]] DriveResult run(const std::wstring& title, Job job);
    /// Runs a job in the background. `done` is called on the main thread, from CloudCacheManager::results().
    void post(Job job, Done done);

    /// For a job of `run`, from its own thread: does something on the main thread, which waits for the job,
    /// and returns what came of it. False, with nothing done, if the job is cancelled meanwhile.
    [[nodiscard]] bool onMainThread(std::function<bool()> action);

    /// Cancels what runs, drops what waits, and ends the thread; for the end of the program.
    void stop();

private:
    DriveThread();
    ~DriveThread();
    struct Data;
    std::unique_ptr<Data> m_data;
};

} // namespace Vs::Cloud
