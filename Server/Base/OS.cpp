#include "Server/Base/OS.h"

#include "Server/Base/ChildProcess.h"
#include "Server/Base/Strings.h"

#include <optional>
#include <sys/wait.h>
#include <thread>
#include <utility>
#include <vector>

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

/// Starts a program that is found in PATH.
bool start(std::string name, std::vector<std::string> words, std::function<void()> failed)
{
    ChildProcess child;
    if (child.start({.program = std::move(name), .arguments = std::move(words), .leadsGroup = false}) != 0)
        return false;
    // Somebody must collect the child's exit code, or it stays a zombie for as long as the program runs.
    std::thread([child = std::move(child), failed = std::move(failed)]() mutable {
        const std::optional<int> state = child.collect();
        if (failed && state && !(WIFEXITED(*state) && WEXITSTATUS(*state) == 0))
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
