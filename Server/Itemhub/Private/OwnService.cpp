#include "Server/Itemhub/Private/OwnService.h"

#include "Server/Base/OwnFiles.h"
#include "Server/Base/PathInfo.h"
#include "Server/Itemhub/Private/Places.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <boost/filesystem/path.hpp>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>

extern char** environ;

namespace Vs::Itemhub {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kPipeOfService = 3;
/// A first start makes a database; on a slow disk that takes its time.
constexpr std::chrono::seconds kPatience{60};
constexpr int kLook = 100;
constexpr size_t kLongestLine = 65536;
constexpr std::chrono::seconds kPatienceAtEnd{5};

[[noreturn]] void failed(const std::string& why)
{
    throw Web::ItemhubException(Web::ItemhubException::Kind::Local,
                                "The program's own lifecycle service did not start: " + why);
}

/// What the service says of itself: one line.
std::string readLine(int pipe, const Watch& watch)
{
    std::string line;
    const auto end = Clock::now() + kPatience;
    while (line.find('\n') == std::string::npos) {
        if (!watch.goesOn())
            throw ItemStore::Cancelled();
        if (Clock::now() > end || line.size() > kLongestLine)
            failed("it did not say where it can be reached");
        pollfd entry{pipe, POLLIN, 0};
        if (poll(&entry, 1, kLook) <= 0)
            continue;
        char bytes[4096];
        const ssize_t count = read(pipe, bytes, sizeof bytes);
        if (count == 0)
            failed("it ended at once; its error output says why");
        if (count > 0)
            line.append(bytes, static_cast<size_t>(count));
    }
    return line;
}

pid_t spawnProgram(const std::string& program, const std::string& folder, int pipe)
{
    const std::string descriptor = std::to_string(kPipeOfService);
    std::string arguments[] = {program, "--local", folder, "--pipe", descriptor};
    char* const given[] = {arguments[0].data(), arguments[1].data(), arguments[2].data(),
                           arguments[3].data(), arguments[4].data(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, pipe, kPipeOfService);
    // What Ctrl+C in a terminal ends is the program, which still has something to say to its service.
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETPGROUP);
    posix_spawnattr_setpgroup(&attributes, 0);
    pid_t child = 0;
    const int error = posix_spawn(&child, program.c_str(), &actions, &attributes, given, environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        failed(program + ": " + std::strerror(error));
    return child;
}

} // namespace

OwnService& OwnService::get()
{
    // Never destroyed: who stops it may itself be destroyed after all that is made as late as this.
    static auto* const service = new OwnService;
    return *service;
}

void OwnService::launch()
{
    if (isAlive())
        return;
    stop();
    const boost::filesystem::path folder = Places::ownService();
    OwnFiles::makeFolder(folder);
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        failed(std::strerror(errno));
    // A descriptor that is the wanted one already would keep its flag, and close.
    const int given = fcntl(ends[1], F_DUPFD_CLOEXEC, kPipeOfService + 1);
    close(ends[1]);
    m_pipe = ends[0];
    try {
        m_process = spawnProgram((PathInfo::rootDirectory() / "bin" / "quillet-itemhub").string(),
                                 folder.string(), given);
        close(given);
    } catch (...) {
        close(given);
        stop();
        throw;
    }
}

Access OwnService::start(const Watch& watch)
{
    launch();
    if (m_access.token.empty())
        m_access = readAccess(watch);
    return m_access;
}

Access OwnService::readAccess(const Watch& watch)
try {
    const QJsonObject said =
        QJsonDocument::fromJson(QByteArray::fromStdString(readLine(m_pipe, watch))).object();
    Access access;
    access.isOwn = true;
    access.address = said["url"].toString().toStdString() + '/';
    access.customer = said["customer"].toString().toStdString();
    access.token = said["token"].toString().toStdString();
    if (!said["url"].isString() || access.token.empty())
        failed("it did not say where it can be reached");
    return access;
} catch (...) {
    stop();
    throw;
}

bool OwnService::isAlive()
{
    if (m_process < 0)
        return false;
    int status = 0;
    if (waitpid(m_process, &status, WNOHANG) == 0)
        return true;
    m_process = -1;
    return false;
}

void OwnService::stop()
{
    if (m_pipe >= 0)
        close(std::exchange(m_pipe, -1));
    m_access = {};
    if (m_process < 0)
        return;
    const pid_t process = std::exchange(m_process, -1);
    const auto end = Clock::now() + kPatienceAtEnd;
    while (waitpid(process, nullptr, WNOHANG) == 0) {
        if (Clock::now() > end) {
            // What it has answered is on the disk.
            kill(process, SIGKILL);
            waitpid(process, nullptr, 0);
            return;
        }
        usleep(5000);
    }
}

} // namespace Vs::Itemhub
