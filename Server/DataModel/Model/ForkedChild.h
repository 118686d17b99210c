#pragma once

namespace Vs {

/// Whether this process is a child that was forked to write what its parent held at that moment, and runs no
/// other program. Only the thread that forked is there: locks that other threads held are never released, and
/// nothing may be left to a pool of threads.
class ForkedChild
{
public:
    [[nodiscard]] static bool is() { return flag(); }
    /// Said once, by the child.
    static void enter() { flag() = true; }

private:
    static bool& flag()
    {
        static bool value = false;
        return value;
    }
};

} // namespace Vs
