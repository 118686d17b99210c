#include "Server/DataModel/Exchange/Private/WorkerProcess.h"

#include "Server/Base/SystemCalls.h"
#include "Server/DataModel/Exchange/WorkerProtocol.h"

#include <cerrno>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

namespace Vs::Exchange {

namespace {

using namespace std::chrono_literals;

// A killed process is gone at once, unless it waits for a disk that doesn't answer.
constexpr auto kDeathTakes = 2s;

/// Killed processes whose memory the system is still releasing. Nobody waits for that, since it takes as long
/// as reading a small file; each is reaped when a later one starts or ends. Those left at the end of the
/// program are for the system to reap.
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
            persistent([&] { return waitpid(process, nullptr, 0); });
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

/// A process and all its descendants.
std::vector<pid_t> familyOf(pid_t process)
{
    std::vector<pid_t> family{process};
    for (size_t i = 0; i < family.size(); ++i) {
        const std::string id = std::to_string(family[i]);
        std::ifstream children("/proc/" + id + "/task/" + id + "/children");
        for (pid_t child; children >> child;)
            family.push_back(child);
    }
    return family;
}

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
    // A library that was found through another one has that path in its name.
    const auto library = std::filesystem::path(here.dli_fname).lexically_normal();
    return (library.parent_path().parent_path() / "bin" / program).string();
}

int WorkerProcess::start(const std::string& path, std::vector<std::string> arguments)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return errno;
    // A process group of its own, so that Ctrl-C reaches this program, which then ends the worker properly.
    // And the kernel prints whatever it likes, in the user's way.
    const int error = m_process.start({.program = path,
                                       .arguments = std::move(arguments),
                                       .descriptors = {{ends[1], kWorkerPipe}},
                                       .isSilent = true});
    close(ends[1]);
    if (error != 0) {
        close(ends[0]);
        return error;
    }
    fcntl(ends[0], F_SETFL, O_NONBLOCK);
    m_pipe = ends[0];
    return 0;
}

std::optional<std::chrono::milliseconds> WorkerProcess::processorTime() const
{
    std::optional<std::chrono::milliseconds> all;
    for (const pid_t process : familyOf(m_process.id())) {
        clockid_t clock;
        timespec time;
        if (clock_getcpuclockid(process, &clock) == 0 && clock_gettime(clock, &time) == 0)
            all = all.value_or(0ms) + std::chrono::seconds(time.tv_sec) +
                  std::chrono::milliseconds(time.tv_nsec / 1'000'000);
    }
    return all;
}

bool WorkerProcess::wantsProcessor() const
{
    for (const pid_t process : familyOf(m_process.id())) {
        std::error_code error;
        std::filesystem::directory_iterator thread("/proc/" + std::to_string(process) + "/task", error);
        for (; !error && thread != std::filesystem::directory_iterator(); thread.increment(error))
            if (const char state = stateIn(thread->path() / "stat"); state == 'R' || state == 'D')
                return true;
    }
    return false;
}

std::optional<int> WorkerProcess::collect(std::chrono::milliseconds patience)
{
    closePipe();
    static_cast<void>(m_process.endsWithin(patience));
    // Even if it has ended, what it started may still run.
    m_process.kill();
    if (m_process.endsWithin(kDeathTakes))
        return m_process.collect();
    DepartingProcesses::get().add(m_process.release());
    return std::nullopt;
}

void WorkerProcess::dismiss()
{
    closePipe();
    m_process.kill();
    DepartingProcesses::get().add(m_process.release());
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
