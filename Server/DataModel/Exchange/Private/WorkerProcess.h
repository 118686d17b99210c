#pragma once

#include "Server/Base/ChildProcess.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace Vs::Exchange {

/// A worker's process and our end of its pipe. It is of no trust: nothing here waits for it longer than a
/// few seconds, whatever it does, and it goes with this object.
class WorkerProcess
{
public:
    WorkerProcess() = default;
    ~WorkerProcess();
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;

    /// The path of a program that stands beside this one's libraries.
    [[nodiscard]] static std::string pathOf(const std::string& program);

    /// Runs the program at that path, with the other end of the pipe as its descriptor kWorkerPipe and its
    /// standard streams closed to it. Returns 0 or the error of the system.
    [[nodiscard]] int start(const std::string& path, std::vector<std::string> arguments);
    bool running() const { return m_process.exists(); }
    /// Never blocks; -1 when there is none.
    int pipe() const { return m_pipe; }

    /// What it and those that it has started have used of all processors so far, without those that have
    /// ended; nothing if the system doesn't tell.
    std::optional<std::chrono::milliseconds> processorTime() const;
    /// Whether it has work to do at this moment: a thread of it or of those that it has started runs, waits
    /// for a processor or for the disk.
    bool wantsProcessor() const;

    /// Waits so long for its end, and ends it and all that it has started after that. Returns the state as
    /// of waitpid, or nothing if that isn't known.
    std::optional<int> collect(std::chrono::milliseconds patience);
    /// Ends it without waiting until it has gone.
    void dismiss();
    /// Waits until all that were dismissed have gone.
    static void waitForDismissed();

private:
    void closePipe();

    ChildProcess m_process;
    int m_pipe = -1;
};

} // namespace Vs::Exchange
