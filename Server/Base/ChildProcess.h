#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>
#include <utility>
#include <vector>

namespace Vs {

/// What a program is started with. No shell sees any of its texts.
struct ChildSetup
{
    std::string program; ///< A path; a name without a slash is looked for in PATH.
    std::vector<std::string> arguments;
    std::string name;   ///< What the program sees as its own name; empty for `program`.
    std::string folder; ///< Its working folder; empty for this program's.
    /// Descriptors of this program, each with its number in the new one; nothing above the largest of these
    /// numbers is passed on. Standard input is empty unless it is among them.
    std::vector<std::pair<int, int>> descriptors;
    bool isSilent = false; ///< Its output on the standard streams is discarded.
    /// It leads a process group of its own: a terminal's Ctrl-C doesn't reach it, and it is killed with
    /// everything it started.
    bool leadsGroup = true;
    /// As `NAME=VALUE`, instead of this program's.
    std::optional<std::vector<std::string>> environment;
};

/// A process that this one has started. The destructor kills and reaps it, unless it was reaped or released.
/// One thread at a time.
class ChildProcess
{
public:
    ChildProcess() = default;
    ~ChildProcess();
    ChildProcess(ChildProcess&& other) noexcept;
    ChildProcess& operator=(ChildProcess&& other) noexcept;

    /// Starts it, with no signal blocked or ignored. Returns 0 or the error of the system, and then there is
    /// no process. Not while there is one.
    [[nodiscard]] int start(ChildSetup setup);

    /// Starts a copy of this program as it is now, which does the work and exits with the number that it
    /// gives. It has the setup's folder and descriptors and all others of this program. Only while this
    /// program has one thread. Otherwise as `start`.
    [[nodiscard]] int fork(const ChildSetup& setup, const std::function<int()>& work);

    /// Whether there is one, running or ended, that has not been reaped yet.
    bool exists() const { return m_id > 0; }
    pid_t id() const { return m_id; }

    /// Whether it has ended or ends within that time. It remains to be reaped.
    [[nodiscard]] bool endsWithin(std::chrono::milliseconds time) const;
    void signal(int number) const;
    /// Sends SIGKILL to it and, if it leads a group, to whatever is left of the group, even if it has ended
    /// itself.
    void kill() const;
    /// Waits for its end without limit. Returns its state as from waitpid, or nothing if the system reaps
    /// children itself.
    std::optional<int> collect();
    /// Gives it up: the caller has to reap it, by waitpid.
    pid_t release() { return std::exchange(m_id, -1); }

private:
    pid_t m_id = -1;
    bool m_leadsGroup = false;
};

} // namespace Vs
