#include "Server/DataModel/Exchange/Worker.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <mutex>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>

extern char** environ;

namespace Vs::Exchange {

namespace {

constexpr uint64_t kMegabyte = 1 << 20;
constexpr long kFewMegabytes = 4;
constexpr int kPollInterval = 40; // ms
// Progress that moves less than this is noise.
constexpr double kLeastMove = 1e-4;
// The share of a processor, as a divisor, below which a process counts as asleep.
constexpr int kLeastShare = 50;

std::string signalText(int signal)
{
    const char* text = sigdescr_np(signal);
    std::string result = text ? text : "signal " + std::to_string(signal);
    for (char& c : result)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return result;
}

/// Processes whose work is done, and whose memory the system still takes apart. Nobody waits for that, since
/// it takes as long as the reading of a small file; each is collected when a later one comes or goes. Those
/// of the end of the program are the system's to collect.
class DepartingProcesses
{
public:
    static DepartingProcesses& get()
    {
        static auto& processes = *new DepartingProcesses;
        return processes;
    }

    void add(pid_t process)
    {
        const std::lock_guard lock(m_mutex);
        m_processes.push_back(process);
        std::erase_if(m_processes, [](pid_t one) { return waitpid(one, nullptr, WNOHANG) != 0; });
    }
    void wait()
    {
        const std::lock_guard lock(m_mutex);
        for (const pid_t process : std::exchange(m_processes, {}))
            while (waitpid(process, nullptr, 0) < 0 && errno == EINTR)
                ;
    }

private:
    std::mutex m_mutex;
    std::vector<pid_t> m_processes;
};

std::string seconds(std::chrono::milliseconds time)
{
    return std::to_string(std::chrono::duration_cast<std::chrono::seconds>(time).count()) + " seconds";
}

} // namespace

WorkerLimits WorkerLimits::forFile(uint64_t bytes)
{
    WorkerLimits limits;
    const auto megabytes = static_cast<long>(bytes / kMegabyte);
    limits.stalled += std::chrono::seconds(2 * megabytes);
    // Of a few megabytes, no step takes long even on a processor that many share.
    limits.patience += std::chrono::seconds(10 * std::max(0L, megabytes - kFewMegabytes));
    limits.total += std::chrono::seconds(30 * megabytes);
    return limits;
}

Worker::~Worker()
{
    if (m_process > 0)
        kill(End::Cancelled, {});
}

std::string Worker::programPath() const
{
    Dl_info here;
    dladdr(reinterpret_cast<void*>(&signalText), &here);
    return (std::filesystem::path(here.dli_fname).parent_path().parent_path() / "bin" / m_program).string();
}

std::string Worker::role() const
{
    return !m_arguments.empty() && m_arguments.front() == "export" ? "writer" : "reader";
}

void Worker::start()
{
    if (m_process >= 0 || m_end != End::Running)
        return;
    m_started = m_moved = Clock::now();
    int pipe[2];
    if (pipe2(pipe, O_CLOEXEC) != 0) {
        m_end = End::Failed;
        m_fault = "the " + role() + " can't be started: " + std::strerror(errno);
        return;
    }
    const std::string path = programPath();
    std::vector<char*> arguments{const_cast<char*>(path.c_str())};
    for (std::string& argument : m_arguments)
        arguments.push_back(argument.data());
    const std::string memory = "--memory=" + std::to_string(m_limits.memory);
    arguments.push_back(const_cast<char*>(memory.c_str()));
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    // The kernel prints whatever it likes, in our user's way.
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, pipe[1], kWorkerPipe);
    // A group of its own: Ctrl-C is for this program, which then ends the worker in its own way.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    sigset_t all, none;
    sigfillset(&all);
    sigemptyset(&none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    const int error = posix_spawn(&m_process, path.c_str(), &actions, &attributes, arguments.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    close(pipe[1]);
    if (error != 0) {
        close(pipe[0]);
        m_process = -1;
        m_end = End::Failed;
        m_fault = "the worker " + path + " can't be started: " + std::strerror(error);
        return;
    }
    fcntl(pipe[0], F_SETFL, O_NONBLOCK);
    m_pipe = pipe[0];
}

void Worker::readMessages()
{
    char buffer[65536];
    ssize_t got;
    while ((got = read(m_pipe, buffer, sizeof buffer)) > 0 || (got < 0 && errno == EINTR))
        if (got > 0)
            m_reader.add({buffer, static_cast<size_t>(got)});
    const bool ended = got == 0 || (got < 0 && errno != EAGAIN);
    bool moved = false;
    while (const auto message = m_reader.next()) {
        switch (message->kind) {
        case WorkerMessage::Kind::Progress:
            if (message->fraction > m_fraction + kLeastMove || message->text != m_step)
                moved = true;
            m_fraction = std::max(m_fraction, std::min(message->fraction, 1.0));
            m_step = message->text;
            break;
        case WorkerMessage::Kind::Warning:
            m_warnings.push_back(message->text);
            break;
        case WorkerMessage::Kind::Error:
            m_error = message->text;
            break;
        case WorkerMessage::Kind::Other:
            m_others.push_back(message->text);
            break;
        case WorkerMessage::Kind::Done:
            m_done = true;
            break;
        }
    }
    if (moved) {
        m_moved = Clock::now();
        m_movedWork = processorTime();
    }
    if (m_done)
        leave();
    else if (ended || m_reader.broken())
        reap();
}

// Its result is complete.
void Worker::leave()
{
    close(std::exchange(m_pipe, -1));
    DepartingProcesses::get().add(std::exchange(m_process, -1));
    m_end = End::Done;
}

void Worker::waitForDeparting()
{
    DepartingProcesses::get().wait();
}

// The pipe has ended: so has the worker, or it is about to.
void Worker::reap()
{
    close(std::exchange(m_pipe, -1));
    const int process = std::exchange(m_process, -1);
    if (m_reader.broken())
        ::kill(process, SIGKILL);
    int status = 0;
    pid_t waited;
    do
        waited = waitpid(process, &status, 0);
    while (waited < 0 && errno == EINTR);
    // Where somebody ignores the ends of children, all that is known is what the worker said.
    const bool known = waited == process;
    if (!m_error.empty()) {
        m_end = m_error.starts_with("memory:") ? End::Exhausted : End::Failed;
        m_fault = m_end == End::Exhausted
                      ? "the " + role() + " needed more memory than there is while " + m_step
                      : m_error;
    } else {
        m_end = End::Crashed;
        std::string how;
        if (known && WIFSIGNALED(status))
            how = " (" + signalText(WTERMSIG(status)) + ")";
        else if (known)
            how = " (exit code " + std::to_string(WEXITSTATUS(status)) + ")";
        m_fault = "the " + role() + " crashed" + how + " while " + m_step;
    }
}

void Worker::kill(End why, std::string fault)
{
    ::kill(m_process, SIGKILL);
    reap();
    m_end = why;
    m_fault = std::move(fault);
}

std::chrono::milliseconds Worker::processorTime() const
{
    clockid_t clock;
    timespec time;
    if (clock_getcpuclockid(m_process, &clock) != 0 || clock_gettime(clock, &time) != 0)
        return m_movedWork;
    return std::chrono::seconds(time.tv_sec) + std::chrono::milliseconds(time.tv_nsec / 1'000'000);
}

void Worker::checkLimits(Clock::time_point now)
{
    const auto waited = now - m_moved;
    const auto running = now - m_started;
    if (waited < std::min(m_limits.stalled, m_limits.patience) && running < m_limits.total)
        return;
    const auto work = processorTime();
    const auto worked = work - m_movedWork;
    // What hardly works at all isn't busy: it waits for something that won't come.
    const bool asleep = worked < waited / kLeastShare;
    if (waited > m_limits.patience || (waited > m_limits.stalled && (asleep || worked > m_limits.stalled)))
        kill(End::Stalled, "the " + role() + " was ended after " +
                               seconds(std::chrono::duration_cast<std::chrono::milliseconds>(waited)) +
                               " without progress while " + m_step);
    else if (running > m_limits.total && work > m_limits.total)
        kill(End::Stalled,
             "the " + role() + " was ended after " + seconds(m_limits.total) + " while " + m_step);
}

void Worker::run(std::span<Worker* const> workers, const Watch& watch)
{
    const size_t atOnce = std::max(1u, std::thread::hardware_concurrency());
    size_t next = 0;
    std::vector<Worker*> running;
    for (;;) {
        while (running.size() < atOnce && next < workers.size()) {
            Worker* worker = workers[next++];
            worker->start();
            if (worker->m_end == End::Running)
                running.push_back(worker);
        }
        if (running.empty())
            return;
        std::vector<pollfd> pipes;
        for (const Worker* worker : running)
            pipes.push_back({worker->m_pipe, POLLIN, 0});
        poll(pipes.data(), pipes.size(), kPollInterval);
        const Clock::time_point now = Clock::now();
        for (size_t i = 0; i < running.size(); ++i) {
            if (pipes[i].revents != 0)
                running[i]->readMessages();
            if (running[i]->m_end == End::Running)
                running[i]->checkLimits(now);
        }
        if (watch && !watch()) {
            for (Worker* worker : running)
                if (worker->m_end == End::Running)
                    worker->kill(End::Cancelled, "cancelled");
            for (; next < workers.size(); ++next)
                workers[next]->m_end = End::Cancelled;
        }
        std::erase_if(running, [](const Worker* worker) { return worker->m_end != End::Running; });
    }
}

} // namespace Vs::Exchange
