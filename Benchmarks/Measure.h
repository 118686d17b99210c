#pragma once

#include <chrono>
#include <fstream>
#include <string>

namespace Benchmarks {

inline double milliseconds()
{
    using namespace std::chrono;
    return duration<double, std::milli>(steady_clock::now().time_since_epoch()).count();
}

/// The most memory that this process has had, which getrusage would mix up with that of the one that started
/// it.
inline long peakKiB()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmHWM:"))
            return std::stol(line.substr(6));
    return 0;
}

} // namespace Benchmarks
