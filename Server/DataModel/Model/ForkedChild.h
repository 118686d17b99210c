#pragma once

namespace Vs {

/// Whether this process is a forked child that writes what its parent held at that moment, without running
/// another program. Only the thread that forked exists there: locks that other threads held are never
/// released, and nothing may be left to a thread pool.
class ForkedChild
{
public:
    [[nodiscard]] static bool is() { return flag(); }
    /// Called once, by the child.
    static void enter() { flag() = true; }

private:
    static bool& flag()
    {
        static bool value = false;
        return value;
    }
};

} // namespace Vs
