#include "UI/Base/Validation/Private/Calibration.h"

#include "Server/Base/Timer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace Vu {
namespace {

constexpr size_t kNumbers = 30000;

/// Arithmetic, branches and memory in about the mixture of the program's own work.
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

} // namespace

double calibrationSeconds()
{
    std::vector<double> numbers(kNumbers);
    std::array<double, 9> laps{};
    volatile double result = work(numbers); // The first lap pays for the memory.
    for (double& lap : laps) {
        const Vs::Utility::timer clock;
        result = work(numbers);
        lap = clock.elapsed();
    }
    (void)result;
    const auto middle = laps.begin() + laps.size() / 2;
    std::nth_element(laps.begin(), middle, laps.end());
    return *middle;
}

} // namespace Vu
