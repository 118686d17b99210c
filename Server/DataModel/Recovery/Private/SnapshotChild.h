#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <sys/types.h>

namespace Vs::Recovery {

/// A child process that writes what this one held when it was forked. If this process dies, the child
/// outlives it and finishes. Main thread.
class SnapshotChild
{
public:
    /// Forks. The child runs `work`, with no other thread and no descriptors but the standard ones, which
    /// lead nowhere, and `keepOpen`, and ends: an exception is its failure. Null, with errno, if no child can
    /// be created now.
    [[nodiscard]] static std::unique_ptr<SnapshotChild> start(const std::function<void()>& work,
                                                              int keepOpen);
    /// A child that hasn't ended is killed.
    ~SnapshotChild();
    SnapshotChild(const SnapshotChild&) = delete;
    SnapshotChild& operator=(const SnapshotChild&) = delete;

    /// How it ended: the cause if it failed, empty if it didn't. Nothing as long as it runs.
    [[nodiscard]] std::optional<std::string> poll();
    /// Waits for it, at most that many seconds, after which it is killed.
    [[nodiscard]] std::string wait(double seconds);
    pid_t process() const { return m_process; }

private:
    SnapshotChild(pid_t process, int pipe) : m_process(process), m_pipe(pipe) {}
    std::string ended(int state) const;

    pid_t m_process;
    int m_pipe;
    bool m_ended = false;
};

} // namespace Vs::Recovery
