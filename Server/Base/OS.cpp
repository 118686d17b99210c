#include "Server/Base/OS.h"

#include "Server/Base/Strings.h"

#include <cerrno>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <utility>
#include <vector>

extern char** environ;

namespace Vs::OS {

namespace {

std::string& program()
{
    static std::string name = "xdg-open";
    return name;
}

std::string& mailProgram()
{
    static std::string name = "xdg-email";
    return name;
}

/// Starts a program, which is looked for in PATH, with these arguments. The text of none is seen by a shell.
bool start(std::string name, std::vector<std::string> words, std::function<void()> failed)
{
    std::vector<char*> arguments{name.data()};
    for (std::string& word : words) {
        if (word.find('\0') != std::string::npos)
            return false;
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    pid_t child = 0;
    const int error = posix_spawnp(&child, name.c_str(), &actions, nullptr, arguments.data(), environ);
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

} // namespace

bool platformShellOpen(const std::wstring& target, std::function<void()> failed)
{
    std::string argument = Strings::toBytes(target);
    if (argument.empty() || argument.front() == '-')
        return false;
    return start(program(), {std::move(argument)}, std::move(failed));
}

bool platformEmail(const std::wstring& subject, const std::wstring& attachment, std::function<void()> failed)
{
    std::string file = Strings::toBytes(attachment);
    if (file.empty() || file.front() != '/')
        return false;
    return start(mailProgram(),
                 {"--utf8", "--subject", Strings::toBytes(subject), "--attach", std::move(file)},
                 std::move(failed));
}

void emailProgram(const std::string& name)
{
    mailProgram() = name;
}

void shellOpenProgram(const std::string& name)
{
    program() = name;
}

} // namespace Vs::OS
