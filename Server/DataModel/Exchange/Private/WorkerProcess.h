#pragma once

#include "Server/Base/ChildProcess.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace Vs::Exchange {

/// A worker's process and our end of its pipe. It is not trusted: nothing here waits for it longer than a few
/// seconds, whatever it does, and it ends with this object.
class WorkerProcess
{
public:
    WorkerProcess() = default;
    ~WorkerProcess();
    WorkerProcess(const WorkerProcess&) = delete;
    WorkerProcess& operator=(const WorkerProcess&) = delete;

    /// The path of a program next to this one's libraries.
    [[nodiscard]] static std::string pathOf(const std::string& program);

    /// Runs the program at that path, with the other end of the pipe as its descriptor kWorkerPipe and its
    /// standard streams closed to it. Returns 0 or the error of the system.
    [[nodiscard]] int start(const std::string& path, std::vector<std::string> arguments);
    bool running() const { return m_process.exists(); }
    /// Never blocks; -1 when there is none.
    int pipe() const { return m_pipe; }

    /// The processor time that it and its descendants have used so far, except those that have ended; nothing
    /// if the system doesn't report it.
    std::optional<std::chrono::milliseconds> processorTime() const;
    /// Whether it currently has work to do: a thread of it or its descendants runs, or waits for a processor
    /// or the disk.
    bool wantsProcessor() const;

    /// Waits that long for it to end, then kills it and all its descendants. Returns the status as from
    /// waitpid, or nothing if that isn't known.
    std::optional<int> collect(std::chrono::milliseconds patience);
    /// Kills it without waiting until it is gone.
    void dismiss();
    /// Waits until all dismissed ones are gone.
    static void waitForDismissed();

private:
    void closePipe();

    ChildProcess m_process;
    int m_pipe = -1;
};

} // namespace Vs::Exchange
