#pragma once

namespace Vu {

/// Held by a text command while it runs the one command that does everything the line asks for: a recording
/// then records that command, which knows its arguments best. What a line runs without this is part of the
/// line. Main thread only.
class [[nodiscard]] ForwardedRun
{
public:
    ForwardedRun() { ++s_depth; }
    ~ForwardedRun() { --s_depth; }
    ForwardedRun(const ForwardedRun&) = delete;
    ForwardedRun& operator=(const ForwardedRun&) = delete;

    static bool any() { return s_depth > 0; }

private:
    static inline int s_depth = 0;
};

} // namespace Vu
