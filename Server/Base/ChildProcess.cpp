#include "Server/Base/ChildProcess.h"

#include "Server/Base/Require.h"
#include "Server/Base/SystemCalls.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <iterator>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

namespace Vs {
namespace {

constexpr std::chrono::milliseconds kBetweenLooks{1};

/// The attributes of the new process.
class Attributes
{
public:
    explicit Attributes(bool leadsGroup)
    {
        posix_spawnattr_init(&m_attributes);
        sigset_t all, none;
        sigfillset(&all);
        sigemptyset(&none);
        posix_spawnattr_setsigdefault(&m_attributes, &all);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        const int group = leadsGroup ? POSIX_SPAWN_SETPGROUP : 0;
        posix_spawnattr_setflags(&m_attributes,
                                 static_cast<short>(POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK | group));
    }
    ~Attributes() { posix_spawnattr_destroy(&m_attributes); }
    Attributes(const Attributes&) = delete;
    Attributes& operator=(const Attributes&) = delete;

    const posix_spawnattr_t* get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes;
};

/// Its descriptors and its folder. Each descriptor is first copied above all wanted numbers: otherwise one
/// could occupy another's target, and one already at its target would keep its close-on-exec flag and be
/// closed.
class Descriptors
{
public:
    explicit Descriptors(const ChildSetup& setup)
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        for (const int stream : {STDOUT_FILENO, STDERR_FILENO})
            if (setup.isSilent)
                posix_spawn_file_actions_addopen(&m_actions, stream, "/dev/null", O_WRONLY, 0);
        int last = STDERR_FILENO;
        for (const auto& [ours, its] : setup.descriptors)
            last = std::max(last, its);
        for (const auto& [ours, its] : setup.descriptors) {
            m_copies.push_back(fcntl(ours, F_DUPFD_CLOEXEC, last + 1));
            if (m_copies.back() < 0)
                m_error = errno;
            else
                posix_spawn_file_actions_adddup2(&m_actions, m_copies.back(), its);
        }
        posix_spawn_file_actions_addclosefrom_np(&m_actions, last + 1);
        if (!setup.folder.empty())
            posix_spawn_file_actions_addchdir_np(&m_actions, setup.folder.c_str());
    }
    ~Descriptors()
    {
        posix_spawn_file_actions_destroy(&m_actions);
        for (const int copy : m_copies)
            if (copy >= 0)
                close(copy);
    }
    Descriptors(const Descriptors&) = delete;
    Descriptors& operator=(const Descriptors&) = delete;

    /// 0, or the reason why they can't be handed over.
    int error() const { return m_error; }
    const posix_spawn_file_actions_t* get() const { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions;
    std::vector<int> m_copies;
    int m_error = 0;
};

/// What a copy of this program exits with that doesn't get what it needs, as shells do.
constexpr int kNotStarted = 126;

/// In the copy: has the signals, the folder and the descriptors of a new program.
bool becomes(const ChildSetup& setup)
{
    for (int signal = 1; signal < NSIG; ++signal)
        std::signal(signal, SIG_DFL); // Two can't be changed.
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    const int empty = open("/dev/null", O_RDONLY | O_CLOEXEC);
    bool all = dup2(empty, STDIN_FILENO) == STDIN_FILENO;
    close(empty);
    for (const auto& [ours, its] : setup.descriptors)
        all = dup2(ours, its) == its && all;
    return all && (setup.folder.empty() || chdir(setup.folder.c_str()) == 0);
}

std::vector<char*> pointersTo(std::vector<std::string>& texts)
{
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

ChildProcess::~ChildProcess()
{
    if (!exists())
        return;
    kill();
    collect();
}

ChildProcess::ChildProcess(ChildProcess&& other) noexcept
    : m_id(other.release()), m_leadsGroup(other.m_leadsGroup)
{
}

ChildProcess& ChildProcess::operator=(ChildProcess&& other) noexcept
{
    std::swap(m_id, other.m_id);
    std::swap(m_leadsGroup, other.m_leadsGroup);
    return *this;
}

int ChildProcess::start(ChildSetup setup)
{
    require(!exists(), "a child process is started once");
    std::vector<std::string> words{setup.name.empty() ? setup.program : setup.name};
    std::move(setup.arguments.begin(), setup.arguments.end(), std::back_inserter(words));
    // A text cut off at a zero byte would be a different one.
    const auto isCut = [](const std::string& text) { return text.find('\0') != text.npos; };
    if (isCut(setup.program) || std::any_of(words.begin(), words.end(), isCut))
        return EINVAL;
    const Descriptors descriptors(setup);
    if (descriptors.error() != 0)
        return descriptors.error();
    std::vector<char*> variables;
    if (setup.environment)
        variables = pointersTo(*setup.environment);
    pid_t id = -1;
    const int error =
        posix_spawnp(&id, setup.program.c_str(), descriptors.get(), Attributes(setup.leadsGroup).get(),
                     pointersTo(words).data(), setup.environment ? variables.data() : environ);
    if (error != 0)
        return error;
    m_id = id;
    m_leadsGroup = setup.leadsGroup;
    return 0;
}

int ChildProcess::fork(const ChildSetup& setup, const std::function<int()>& work)
{
    require(!exists(), "a child process is started once");
    std::fflush(nullptr); // Or both would write it.
    const pid_t id = ::fork();
    if (id < 0)
        return errno;
    if (id > 0) {
        m_id = id;
        m_leadsGroup = setup.leadsGroup;
        // Whoever kills the group soon must find it.
        if (m_leadsGroup)
            setpgid(id, id);
        return 0;
    }
    if (setup.leadsGroup)
        setpgid(0, 0);
    if (!becomes(setup))
        std::_Exit(kNotStarted);
    // What it throws must not reach what this program was doing.
    std::exit([&]() noexcept { return work(); }());
}

bool ChildProcess::endsWithin(std::chrono::milliseconds time) const
{
    const auto until = std::chrono::steady_clock::now() + time;
    for (;;) {
        siginfo_t info{};
        // Where the system reaps children itself, it is already gone.
        if (waitid(P_PID, static_cast<id_t>(m_id), &info, WEXITED | WNOHANG | WNOWAIT) != 0 && errno != EINTR)
            return true;
        if (info.si_pid == m_id)
            return true;
        if (std::chrono::steady_clock::now() >= until)
            return false;
        std::this_thread::sleep_for(kBetweenLooks);
    }
}

void ChildProcess::signal(int number) const
{
    if (exists())
        ::kill(m_id, number);
}

void ChildProcess::kill() const
{
    if (exists())
        ::kill(m_leadsGroup ? -m_id : m_id, SIGKILL);
}

std::optional<int> ChildProcess::collect()
{
    const pid_t process = release();
    int state = 0;
    const pid_t found = persistent([&] { return waitpid(process, &state, 0); });
    return found == process ? std::optional(state) : std::nullopt;
}

} // namespace Vs
