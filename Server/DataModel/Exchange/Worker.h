#pragma once

#include "Server/DataModel/Exchange/Private/WorkerProcess.h"
#include "Server/DataModel/Exchange/WorkerProtocol.h"

#include <chrono>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace Vs::Exchange {

/// How long a worker may take, and how much it may use. It is judged by the processor time that it got, so
/// that an honest file is given up neither on a busy machine nor on one with many processors. The wall clock
/// alone decides only about one that has nothing to do, and at four times `patience` or `total`.
struct WorkerLimits
{
    std::chrono::milliseconds stalled{8'000}; ///< Without any progress.
    std::chrono::milliseconds total{240'000};
    uint64_t memory = 0; ///< Bytes of address space; 0 for a fair share of the machine's.
    /// Without any progress, by the wall clock, if it got at least an eighth of that as processor time: a
    /// person waits no longer.
    std::chrono::milliseconds patience{14'000};
    uint64_t written = uint64_t(4) << 30; ///< Bytes of its result.

    /// Limits that fit an honest file of that size: more for bigger ones.
    static WorkerLimits forFile(uint64_t bytes);
};

/// One job in a separate process, so that whatever a foreign file does to the kernel can't affect this
/// program.
class Worker
{
public:
    enum class End {
        Running,
        Done,
        Failed,    ///< The worker reported an error.
        Crashed,   ///< It was killed by a signal.
        Stalled,   ///< It made no progress, or took too long, and was killed.
        Exhausted, ///< It exceeded its memory limit.
        Cancelled,
    };

    /// `program` is the name of one next to this program's libraries (see `workerOf`); the arguments follow
    /// it.
    Worker(std::string program, std::vector<std::string> arguments, WorkerLimits limits)
        : m_program(std::move(program)), m_arguments(std::move(arguments)), m_limits(limits)
    {
    }
    ~Worker() = default;
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    End end() const { return m_end; }
    double fraction() const { return m_fraction; }
    /// What it is doing, or was doing when it ended: "reading the file".
    const std::string& step() const { return m_step; }
    const std::vector<std::string>& warnings() const { return m_warnings; }
    /// The other files on which its work depends; an empty path represents one whose name it doesn't know.
    const std::vector<std::string>& others() const { return m_others; }
    /// The cause of any end but Done, as a clause without a subject's name: "the reader crashed (segmentation
    /// fault) while transferring shapes". UTF-8.
    const std::string& fault() const { return m_fault; }

    /// Starts the work, if it hasn't started; it must then be run, or end with this object.
    void start();

    /// Shows the progress of all and returns false to cancel. Called at least twenty times a second.
    using Watch = std::function<bool()>;
    /// Runs the workers in parallel, at most as many at once as there are processors, until all have ended.
    /// They share the memory; one for which its share is too small is tried again alone, with all of it.
    static void run(std::span<Worker* const> workers, const Watch& watch);

    /// A worker counts as ended as soon as its result exists; this waits until the processes of all such have
    /// ended, too.
    static void waitForDeparting();

private:
    using Clock = std::chrono::steady_clock;
    class Crew;

    void start(uint64_t memory);
    void startAgain(uint64_t memory);
    std::string role() const;
    void readMessages();
    void take(const WorkerMessage& message);
    void takeProgress(const WorkerMessage& message);
    void keepText(std::vector<std::string>& list, const std::string& text);
    void noteProgress();
    void checkLimits(Clock::time_point now);
    bool isAsleep(Clock::time_point now, std::chrono::milliseconds worked);
    void kill(End why, std::string fault);
    void leave();
    void reap();

    std::string m_program;
    std::vector<std::string> m_arguments;
    WorkerLimits m_limits;
    uint64_t m_memory = 0; ///< The limit that it was started with.
    End m_end = End::Running;
    WorkerProcess m_process;
    WorkerMessageReader m_reader;
    bool m_done = false;
    double m_fraction = 0;
    std::string m_step = "starting";
    int m_steps = 0;
    size_t m_texts = 0; ///< Bytes of its messages.
    std::string m_error;
    std::string m_fault;
    std::vector<std::string> m_warnings;
    std::vector<std::string> m_others;
    Clock::time_point m_started;
    Clock::time_point m_moved;
    Clock::time_point m_wanted;               ///< When it was last seen to have work to do.
    std::chrono::milliseconds m_movedWork{0}; ///< Processor time at the last progress.
};

} // namespace Vs::Exchange
