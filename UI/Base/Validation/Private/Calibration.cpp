#include "UI/Base/Validation/Private/Calibration.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <thread>
#include <vector>

namespace Vu {
namespace {

constexpr size_t kNumbers = 30000;

/// Arithmetic, branches and memory access in roughly the mix of the program's own work.
double work(std::vector<double>& numbers)
{
    uint64_t state = 88172645463325252u;
    for (double& number : numbers) {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        number = std::sqrt(static_cast<double>(state >> 11));
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers[numbers.size() / 2];
}

/// The processor time of this thread. By the clock a busy machine would seem a slow one, and values measured
/// on it would be far too long once it is quiet again.
double processorSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

double calibrationOfThread()
{
    std::vector<double> numbers(kNumbers);
    std::array<double, 9> laps{};
    volatile double result = work(numbers); // The first lap pays for page faults in the memory.
    for (double& lap : laps) {
        const double start = processorSeconds();
        result = work(numbers);
        lap = processorSeconds() - start;
    }
    (void)result;
    const auto middle = laps.begin() + laps.size() / 2;
    std::nth_element(laps.begin(), middle, laps.end());
    return *middle;
}

} // namespace

double calibrationSeconds(unsigned threads)
{
    std::vector<double> others(threads > 1 ? threads - 1 : 0);
    std::vector<std::jthread> running;
    running.reserve(others.size());
    for (double& seconds : others)
        running.emplace_back([&seconds] { seconds = calibrationOfThread(); });
    double slowest = calibrationOfThread();
    running.clear(); // Waits for them.
    for (const double seconds : others)
        slowest = std::max(slowest, seconds);
    return slowest;
}

} // namespace Vu
