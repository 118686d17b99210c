#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Vu {

/// The results of a performance test. Times in seconds, memory in bytes.
struct PerfReport
{
    enum class Outcome { Kept, Passed, Failed };

    struct Result
    {
        std::wstring metric; ///< "ElapsedTime", "PhysicalMemory".
        std::wstring description;
        bool isMemory = false;
        double value = 0; ///< The median of all measurements.
        double worst = 0;
        double processor = 0; ///< The processor time of the median; 0 if unknown.
        size_t count = 1;     ///< The number of measurements.
        /// The reference and the largest passing value, both scaled to the present speed of this machine.
        std::optional<double> reference, limit;
        std::optional<double> processorLimit; ///< The same for the processor time.
        Outcome outcome = Outcome::Passed;
    };

    std::wstring test;
    double calibration = 0; ///< calibrationSeconds() at the start.
    std::vector<Result> results;

    /// A line for the test and one for each result.
    [[nodiscard]] std::wstring text() const;
    /// The same as a JSON object; UTF-8.
    [[nodiscard]] std::string json() const;
};

/// "0.25 s", "1.5 ms", "12 MB".
[[nodiscard]] std::wstring perfText(double value, bool isMemory);

} // namespace Vu
