#pragma once

#include <chrono>

namespace Vs::Utility {

/// Counts the seconds since it was made or restarted.
class timer
{
public:
    timer() : m_start(now()) {}

    double elapsed() const { return now() - m_start; }
    void restart() { m_start = now(); }

    /// Where all timers read the time, in seconds since an arbitrary moment; null restores the system's
    /// steady clock.
    using Clock = double (*)();
    static void clock(Clock clock) { installed() = clock; }

private:
    static Clock& installed()
    {
        static Clock clock = nullptr;
        return clock;
    }
    static double now()
    {
        if (const Clock clock = installed())
            return clock();
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
    }

    double m_start;
};

} // namespace Vs::Utility
