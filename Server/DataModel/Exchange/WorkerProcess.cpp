#include "Server/DataModel/Exchange/WorkerProcess.h"

#include "Server/DataModel/Exchange/WorkerProtocol.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

extern char** environ;

namespace Vs::Exchange {

WorkerProcess spawnWorker(const std::string& path, const std::vector<std::string>& arguments)
{
    WorkerProcess worker;
    const bool standby = arguments.empty();
    int messages[2], job[2] = {-1, -1};
    if (pipe2(messages, O_CLOEXEC) != 0)
        return worker;
    // A socket, since writing to one whose other end is gone can be told to fail without a signal.
    if (standby && socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, job) != 0) {
        close(messages[0]);
        close(messages[1]);
        return worker;
    }
    std::vector<char*> words{const_cast<char*>(path.c_str())};
    for (const std::string& argument : arguments)
        words.push_back(const_cast<char*>(argument.c_str()));
    if (standby)
        words.push_back(const_cast<char*>(kStandby));
    words.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    if (standby)
        posix_spawn_file_actions_adddup2(&actions, job[1], 0);
    else
        posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    // The kernel prints whatever it likes, in our user's way.
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, messages[1], kWorkerPipe);
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
    const int error =
        posix_spawn(&worker.process, path.c_str(), &actions, &attributes, words.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    close(messages[1]);
    if (standby)
        close(job[1]);
    if (error != 0) {
        close(messages[0]);
        if (standby)
            close(job[0]);
        errno = error;
        return {};
    }
    fcntl(messages[0], F_SETFL, O_NONBLOCK);
    worker.messages = messages[0];
    worker.job = job[0];
    return worker;
}

bool sendJob(WorkerProcess& worker, const std::vector<std::string>& arguments)
{
    std::string job;
    for (const std::string& argument : arguments)
        job.append(argument).push_back('\0');
    bool sent = true;
    for (size_t done = 0; sent && done < job.size();) {
        const ssize_t count = send(worker.job, job.data() + done, job.size() - done, MSG_NOSIGNAL);
        if (count > 0)
            done += static_cast<size_t>(count);
        else
            sent = errno == EINTR;
    }
    close(std::exchange(worker.job, -1));
    return sent;
}

std::vector<std::string> receiveJob(int descriptor)
{
    std::string job;
    char buffer[4096];
    ssize_t got;
    while ((got = read(descriptor, buffer, sizeof buffer)) > 0 || (got < 0 && errno == EINTR))
        if (got > 0)
            job.append(buffer, static_cast<size_t>(got));
    std::vector<std::string> arguments;
    for (size_t begin = 0, end; (end = job.find('\0', begin)) != std::string::npos; begin = end + 1)
        arguments.push_back(job.substr(begin, end - begin));
    return arguments;
}

void dismiss(WorkerProcess& worker)
{
    if (!worker.running())
        return;
    for (int* descriptor : {&worker.messages, &worker.job})
        if (*descriptor >= 0)
            close(std::exchange(*descriptor, -1));
    const pid_t process = std::exchange(worker.process, -1);
    kill(process, SIGKILL);
    while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
    }
}

namespace {

std::pair<std::string, WorkerProcess> s_standby;

} // namespace

void StandbyWorker::offer(const std::string& program, WorkerProcess worker)
{
    drop();
    s_standby = {program, worker};
}

WorkerProcess StandbyWorker::take(const std::string& program)
{
    return s_standby.first == program ? std::exchange(s_standby, {}).second : WorkerProcess{};
}

void StandbyWorker::drop()
{
    dismiss(s_standby.second);
    s_standby = {};
}

} // namespace Vs::Exchange
