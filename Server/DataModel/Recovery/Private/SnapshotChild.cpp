#include "Server/DataModel/Recovery/Private/SnapshotChild.h"

#include "Server/Base/SystemCalls.h"
#include "Server/DataModel/Model/ForkedChild.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace Vs::Recovery {

namespace {

constexpr unsigned kSecondsLimit = 600; // one that hangs ends by itself
constexpr size_t kMostTold = 512;
constexpr char kDone = '+', kFailed = '-'; // what the child's message begins with

// The parent's signal handling is not for the child: it finishes when the terminal, the session or the parent
// ends, and dies of its own faults.
void resetSignals()
{
    struct sigaction action = {};
    sigemptyset(&action.sa_mask);
    for (int signal = 1; signal < NSIG; ++signal) {
        const bool outlived = signal == SIGHUP || signal == SIGINT || signal == SIGQUIT ||
                              signal == SIGTERM || signal == SIGPIPE || signal == SIGXFSZ;
        action.sa_handler = outlived ? SIG_IGN : SIG_DFL;
        sigaction(signal, &action, nullptr);
    }
    sigset_t none;
    sigemptyset(&none);
    pthread_sigmask(SIG_SETMASK, &none, nullptr);
}

// Whoever waits for the end of the parent's output must not wait for the child, and the parent's connections
// must end when the parent closes them.
void closeAllBut(int first, int second)
{
    const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
    for (int standard = 0; standard <= 2; ++standard)
        dup2(nowhere, standard);
    const auto [low, high] = std::minmax(first, second);
    unsigned next = 3;
    for (const int kept : {low, high}) {
        if (kept < 3)
            continue;
        const unsigned number = static_cast<unsigned>(kept);
        if (number > next)
            close_range(next, number - 1, 0);
        next = number + 1;
    }
    close_range(next, ~0U, 0);
}

[[noreturn]] void run(const std::function<void()>& work, int pipe, int keepOpen)
{
    ForkedChild::enter();
    resetSignals();
    closeAllBut(pipe, keepOpen);
    setpriority(PRIO_PROCESS, 0, 10);
    alarm(kSecondsLimit);
    std::string told(1, kDone);
    try {
        work();
    } catch (const std::exception& error) {
        told = std::string(1, kFailed) + error.what();
    } catch (...) {
        told = std::string(1, kFailed) + "of an unknown cause";
    }
    // A text this short is written to the pipe in one piece.
    _exit(write(pipe, told.data(), std::min(told.size(), kMostTold)) < 0);
}

} // namespace

std::unique_ptr<SnapshotChild> SnapshotChild::start(const std::function<void()>& work, int keepOpen)
{
    int ends[2];
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0)
        return nullptr;
    // No handler of the parent's may run in the child.
    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t process = fork();
    if (process == 0)
        run(work, ends[1], keepOpen);
    const int cause = errno;
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    close(ends[1]);
    if (process < 0) {
        close(ends[0]);
        errno = cause;
        return nullptr;
    }
    return std::unique_ptr<SnapshotChild>(new SnapshotChild(process, ends[0]));
}

SnapshotChild::~SnapshotChild()
{
    if (!m_ended) {
        kill(m_process, SIGKILL);
        persistent([this] { return waitpid(m_process, nullptr, 0); });
    }
    close(m_pipe);
}

std::optional<std::string> SnapshotChild::poll()
{
    int state = 0;
    const pid_t found = persistent([&] { return waitpid(m_process, &state, WNOHANG); });
    if (found == 0)
        return std::nullopt;
    m_ended = true;
    // Where somebody else has reaped it, what it wrote still tells.
    return ended(found == m_process ? state : 0);
}

std::string SnapshotChild::wait(double seconds)
{
    using namespace std::chrono;
    const auto end = steady_clock::now() + duration<double>(seconds);
    while (steady_clock::now() < end) {
        if (auto cause = poll())
            return *cause;
        std::this_thread::sleep_for(milliseconds(1));
    }
    kill(m_process, SIGKILL);
    while (true)
        if (auto cause = poll())
            return *cause;
}

std::string SnapshotChild::ended(int state) const
{
    char told[kMostTold];
    const ssize_t size = read(m_pipe, told, sizeof told);
    if (size > 0 && told[0] == kDone)
        return {};
    if (size > 0)
        return std::string(told + 1, static_cast<size_t>(size - 1));
    return WIFSIGNALED(state)
               ? std::string("the process that writes it was ended: ") + strsignal(WTERMSIG(state))
               : "the process that writes it has ended";
}

} // namespace Vs::Recovery
