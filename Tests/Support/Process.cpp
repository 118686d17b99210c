#include "Tests/Support/Process.h"

#include "Server/Base/ChildProcess.h"
#include "Tests/Support/Files.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <map>
#include <poll.h>
#include <stdexcept>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

extern char** environ;

namespace TestSupport {

namespace fs = boost::filesystem;

ScratchFolder::ScratchFolder() : m_path(fs::temp_directory_path() / fs::unique_path("quillet-test-%%%%%%%%"))
{
    fs::create_directories(m_path);
}

ScratchFolder::~ScratchFolder()
{
    boost::system::error_code ignored;
    fs::remove_all(m_path, ignored);
}

fs::path ScratchFolder::write(const std::string& name, const std::string& content) const
{
    const fs::path file = m_path / name;
    overwrite(file, content);
    return file;
}

namespace {

std::vector<std::string> environmentWith(const std::vector<std::string>& changes)
{
    std::map<std::string, std::string> variables;
    const auto enter = [&](const std::string& entry) {
        const size_t equals = entry.find('=');
        if (equals == std::string::npos)
            return;
        if (equals + 1 == entry.size())
            variables.erase(entry.substr(0, equals));
        else
            variables[entry.substr(0, equals)] = entry.substr(equals + 1);
    };
    for (char** entry = environ; *entry; ++entry)
        enter(*entry);
    for (const std::string& change : changes)
        enter(change);
    std::vector<std::string> lines;
    for (const auto& [name, value] : variables)
        lines.push_back(name + '=' + value);
    return lines;
}

struct Pipe
{
    int ends[2] = {-1, -1};
    Pipe()
    {
        if (pipe2(ends, O_CLOEXEC) != 0)
            throw std::runtime_error("cannot make a pipe");
    }
    ~Pipe()
    {
        close(0);
        close(1);
    }
    void close(int end)
    {
        if (ends[end] >= 0)
            ::close(ends[end]);
        ends[end] = -1;
    }
};

} // namespace

ProcessResult runProcess(const std::string& program, const std::vector<std::string>& arguments,
                         const ProcessOptions& options)
{
    using Clock = std::chrono::steady_clock;
    std::signal(SIGPIPE, SIG_IGN);

    Pipe input, output, errors;
    Vs::ChildProcess child;
    const int error =
        child.start({.program = program,
                     .arguments = arguments,
                     .descriptors = {{input.ends[0], 0}, {output.ends[1], 1}, {errors.ends[1], 2}},
                     .environment = environmentWith(options.environment)});
    if (error != 0)
        throw std::system_error(error, std::generic_category(), program);
    input.close(0);
    output.close(1);
    errors.close(1);

    ProcessResult result;
    const auto start = Clock::now();
    const auto elapsed = [&] { return std::chrono::duration<double>(Clock::now() - start).count(); };
    bool interrupted = false;
    size_t written = 0;
    fcntl(input.ends[1], F_SETFL, O_NONBLOCK);
    if (options.input.empty())
        input.close(1);

    while (output.ends[0] >= 0 || errors.ends[0] >= 0) {
        if (!interrupted && options.interruptAfterSeconds > 0 && elapsed() > options.interruptAfterSeconds) {
            interrupted = true;
            child.signal(SIGINT);
        }
        if (elapsed() > options.secondsLimit) {
            result.timedOut = true;
            child.kill();
            break;
        }
        pollfd waiting[3] = {
            {output.ends[0], POLLIN, 0}, {errors.ends[0], POLLIN, 0}, {input.ends[1], POLLOUT, 0}};
        poll(waiting, 3, 50);
        char buffer[65536];
        for (int i = 0; i < 2; ++i) {
            Pipe& source = i == 0 ? output : errors;
            if (source.ends[0] < 0 || !(waiting[i].revents & (POLLIN | POLLHUP)))
                continue;
            const ssize_t count = read(source.ends[0], buffer, sizeof buffer);
            if (count > 0)
                (i == 0 ? result.output : result.errors).append(buffer, size_t(count));
            else
                source.close(0);
        }
        if (input.ends[1] >= 0 && (waiting[2].revents & (POLLOUT | POLLERR))) {
            const ssize_t count =
                write(input.ends[1], options.input.data() + written, options.input.size() - written);
            written += count > 0 ? size_t(count) : 0;
            if (count < 0 || written == options.input.size())
                input.close(1);
        }
    }

    const int state = child.collect().value_or(0);
    if (WIFEXITED(state))
        result.exitCode = WEXITSTATUS(state);
    else if (WIFSIGNALED(state))
        result.signal = WTERMSIG(state);
    return result;
}

std::string quoted(const fs::path& path)
{
    return '"' + path.string() + '"';
}

ProcessResult runQuillet(const std::vector<std::string>& arguments, const ProcessOptions& options)
{
    const ScratchFolder profile;
    std::vector<std::string> all;
    // A test run has profiles of its own.
    if (std::find(arguments.begin(), arguments.end(), "--test") == arguments.end())
        all = {"--profile-dir", profile.path().string()};
    all.insert(all.end(), arguments.begin(), arguments.end());
    ProcessOptions without = options;
    without.environment.insert(without.environment.begin(), {"DISPLAY=", "WAYLAND_DISPLAY="});
    return runProcess((runningTree() / "bin/quillet").string(), all, without);
}

fs::path runningTree()
{
    return QUILLET_ROOT;
}

} // namespace TestSupport
