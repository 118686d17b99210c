#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace Vs::Exchange {

/// A worker as the system sees it. Whoever has it closes the descriptors and waits for the process.
struct WorkerProcess
{
    pid_t process = -1;
    int messages = -1; ///< Where it tells how it goes; doesn't block.
    int job = -1;      ///< Where one on standby takes its arguments from; -1 after that.

    bool running() const { return process > 0; }
};

/// The word that stands in place of arguments for a worker on standby: it loads what it needs, and waits for
/// its arguments on standard input. None come if that is closed: it ends then.
inline constexpr const char* kStandby = "standby";

/// Starts a worker in a process group of its own, with the signals and streams of a fresh one. Without
/// arguments it is put on standby. Not running, with errno, if the system refuses.
WorkerProcess spawnWorker(const std::string& path, const std::vector<std::string>& arguments);

/// Hands its arguments to a worker that is on standby. False if it has ended meanwhile.
bool sendJob(WorkerProcess& worker, const std::vector<std::string>& arguments);

/// What `sendJob` sent, read by the worker. Empty if nothing came.
std::vector<std::string> receiveJob(int descriptor);

/// Ends one on standby that nobody needs.
void dismiss(WorkerProcess& worker);

/// One worker that was started before it was known what for: `offer` gives it to whoever takes it first. An
/// offered one that isn't taken must be dropped before the program ends. Main thread.
class StandbyWorker
{
public:
    static void offer(const std::string& program, WorkerProcess worker);
    /// Not running if none of that program is on standby.
    static WorkerProcess take(const std::string& program);
    static void drop();
};

} // namespace Vs::Exchange
