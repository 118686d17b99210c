#include "Server/Thumbnailer/Drawing.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace Thumbnailer {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds kMostTime(60);
constexpr std::chrono::milliseconds kBetweenLooks(20);
/// Of each process by itself: the program, and the worker that reads the file.
constexpr rlim_t kMostProcessorSeconds = 60;
constexpr rlim_t kMostMemory = rlim_t(3) << 30;
constexpr rlim_t kMostWritten = rlim_t(1) << 30;

void limit(__rlimit_resource resource, rlim_t most)
{
    const rlimit both{most, most};
    setrlimit(resource, &both);
}

[[noreturn]] void become(const std::vector<char*>& arguments, pid_t parent)
{
    // A group of its own, so that the workers end with it, and nobody stays behind when this program is
    // killed.
    setpgid(0, 0);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        _exit(1);
    limit(RLIMIT_CPU, kMostProcessorSeconds);
    limit(RLIMIT_DATA, kMostMemory);
    limit(RLIMIT_FSIZE, kMostWritten);
    limit(RLIMIT_CORE, 0);
    const int nothing = open("/dev/null", O_RDWR);
    if (nothing >= 0)
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            dup2(nothing, stream);
    execv(arguments.front(), arguments.data());
    _exit(127);
}

/// Returns the status that waitpid gave, or -1 when the time was over.
int statusOf(pid_t child)
{
    const Clock::time_point end = Clock::now() + kMostTime;
    int status = 0;
    for (;;) {
        const pid_t ended = waitpid(child, &status, WNOHANG);
        if (ended == child)
            return status;
        if ((ended < 0 && errno != EINTR) || Clock::now() > end)
            break;
        std::this_thread::sleep_for(kBetweenLooks);
    }
    kill(-child, SIGKILL);
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
    return -1;
}

} // namespace

void draw(const std::string& model, uint32_t side, const std::string& picture)
{
    namespace fs = std::filesystem;
    std::error_code error;
    std::array<std::string, 7> words = {
        (fs::read_symlink("/proc/self/exe", error).parent_path() / "quillet").string(),
        "--no-autorun",
        "--thumbnail",
        "--",
        model,
        std::to_string(side),
        picture};
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const pid_t parent = getpid(), child = fork();
    if (child < 0)
        throw std::runtime_error(std::string("no process can be started: ") + std::strerror(errno));
    if (child == 0)
        become(arguments, parent);
    const int status = statusOf(child);
    if (status == -1)
        throw std::runtime_error("drawing took too long");
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        throw std::runtime_error("the model can't be read or drawn");
}

} // namespace Thumbnailer
