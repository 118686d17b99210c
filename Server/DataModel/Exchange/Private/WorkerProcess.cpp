#include "Server/DataModel/Exchange/Private/WorkerProcess.h"

#include "Server/DataModel/Exchange/WorkerProtocol.h"

#include <cerrno>
#include <csignal>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>

extern char** environ;

namespace Vs::Exchange {

namespace {

using namespace std::chrono_literals;

// A process that was killed is gone at once, unless it waits for a disk that doesn't answer.
constexpr auto kDeathTakes = 2s;
constexpr auto kBetweenLooks = 1ms;

/// Processes that were killed, and whose memory the system still takes apart. Nobody waits for that, since it
/// takes as long as the reading of a small file; each is collected when a later one comes or goes. Those of
/// the end of the program are the system's to collect.
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

/// The state of a thread in its `stat` file stands behind its name, which may hold anything.
char stateIn(const std::filesystem::path& file)
{
    std::ifstream stream(file);
    const std::string text((std::istreambuf_iterator<char>(stream)), {});
    const size_t name = text.rfind(')');
    return name != std::string::npos && name + 2 < text.size() ? text[name + 2] : '?';
}

/// The attributes of the new process: a group of its own, so that Ctrl-C is for this program, which then ends
/// the worker in its own way; and no signal that is blocked or ignored here.
class Attributes
{
public:
    Attributes()
    {
        posix_spawnattr_init(&m_attributes);
        sigset_t all, none;
        sigfillset(&all);
        sigemptyset(&none);
        posix_spawnattr_setsigdefault(&m_attributes, &all);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        posix_spawnattr_setflags(&m_attributes,
                                 POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    }
    ~Attributes() { posix_spawnattr_destroy(&m_attributes); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    const posix_spawnattr_t* get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes;
};

/// Its descriptors: the pipe and nothing else. The kernel prints whatever it likes, in our user's way.
class Descriptors
{
public:
    explicit Descriptors(int pipe)
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_addopen(&m_actions, 0, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&m_actions, 1, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_addopen(&m_actions, 2, "/dev/null", O_WRONLY, 0);
        posix_spawn_file_actions_adddup2(&m_actions, pipe, kWorkerPipe);
        posix_spawn_file_actions_addclosefrom_np(&m_actions, kWorkerPipe + 1);
    }
    ~Descriptors() { posix_spawn_file_actions_destroy(&m_actions); }
    Descriptors(const Descriptors&) = delete;
    Descriptors& operator=(const Descriptors&) = delete;

    const posix_spawn_file_actions_t* get() const { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions;
};

} // namespace

WorkerProcess::~WorkerProcess()
{
    if (running())
        collect(0ms);
}

std::string WorkerProcess::pathOf(const std::string& program)
{
    Dl_info here;
    dladdr(reinterpret_cast<void*>(&stateIn), &here);
    return (std::filesystem::path(here.dli_fname).parent_path().parent_path() / "bin" / program).string();
}

int WorkerProcess::start(const std::string& path, std::vector<std::string> arguments)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return errno;
    std::vector<char*> words{const_cast<char*>(path.c_str())};
    for (std::string& argument : arguments)
        words.push_back(argument.data());
    words.push_back(nullptr);
    const int error = posix_spawn(&m_id, path.c_str(), Descriptors(ends[1]).get(), Attributes().get(),
                                  words.data(), environ);
    close(ends[1]);
    if (error != 0) {
        close(ends[0]);
        m_id = -1;
        return error;
    }
    fcntl(ends[0], F_SETFL, O_NONBLOCK);
    m_pipe = ends[0];
    return 0;
}

std::optional<std::chrono::milliseconds> WorkerProcess::processorTime() const
{
    clockid_t clock;
    timespec time;
    if (clock_getcpuclockid(m_id, &clock) != 0 || clock_gettime(clock, &time) != 0)
        return std::nullopt;
    return std::chrono::seconds(time.tv_sec) + std::chrono::milliseconds(time.tv_nsec / 1'000'000);
}

bool WorkerProcess::wantsProcessor() const
{
    std::error_code error;
    std::filesystem::directory_iterator thread("/proc/" + std::to_string(m_id) + "/task", error);
    for (; !error && thread != std::filesystem::directory_iterator(); thread.increment(error))
        if (const char state = stateIn(thread->path() / "stat"); state == 'R' || state == 'D')
            return true;
    return false;
}

bool WorkerProcess::endsWithin(std::chrono::milliseconds time) const
{
    const auto until = std::chrono::steady_clock::now() + time;
    for (;;) {
        siginfo_t info{};
        // It stays to be collected. Where somebody ignores the ends of children, it isn't there.
        if (waitid(P_PID, static_cast<id_t>(m_id), &info, WEXITED | WNOHANG | WNOWAIT) != 0 && errno != EINTR)
            return true;
        if (info.si_pid == m_id)
            return true;
        if (std::chrono::steady_clock::now() >= until)
            return false;
        std::this_thread::sleep_for(kBetweenLooks);
    }
}

std::optional<int> WorkerProcess::collect(std::chrono::milliseconds patience)
{
    closePipe();
    endsWithin(patience);
    // Even if it has ended, what it started may be there.
    ::kill(-m_id, SIGKILL);
    const bool ended = endsWithin(kDeathTakes);
    const int process = std::exchange(m_id, -1);
    int state = 0;
    if (ended && waitpid(process, &state, WNOHANG) == process)
        return state;
    if (!ended)
        DepartingProcesses::get().add(process);
    return std::nullopt;
}

void WorkerProcess::dismiss()
{
    closePipe();
    ::kill(-m_id, SIGKILL);
    DepartingProcesses::get().add(std::exchange(m_id, -1));
}

void WorkerProcess::waitForDismissed()
{
    DepartingProcesses::get().wait();
}

void WorkerProcess::closePipe()
{
    if (m_pipe >= 0)
        close(std::exchange(m_pipe, -1));
}

} // namespace Vs::Exchange
