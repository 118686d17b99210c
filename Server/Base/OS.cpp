#include "Server/Base/OS.h"

#include "Server/Base/Strings.h"

#include <cerrno>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <utility>

extern char** environ;

namespace Vs::OS {

namespace {

std::string& program()
{
    static std::string name = "xdg-open";
    return name;
}

} // namespace

bool platformShellOpen(const std::wstring& target, std::function<void()> failed)
{
    std::string argument = Strings::toBytes(target);
    if (argument.empty() || argument.front() == '-' || argument.find('\0') != std::string::npos)
        return false;
    std::string name = program();
    char* const arguments[] = {name.data(), argument.data(), nullptr};

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    pid_t child = 0;
    const int error = posix_spawnp(&child, name.c_str(), &actions, nullptr, arguments, environ);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        return false;
    // Somebody must take the child's exit code, or it stays as a zombie for as long as the program runs.
    std::thread([child, failed = std::move(failed)] {
        int end = 0;
        while (waitpid(child, &end, 0) < 0)
            if (errno != EINTR)
                return;
        if (failed && !(WIFEXITED(end) && WEXITSTATUS(end) == 0))
            failed();
    }).detach();
    return true;
}

void shellOpenProgram(const std::string& name)
{
    program() = name;
}

} // namespace Vs::OS
