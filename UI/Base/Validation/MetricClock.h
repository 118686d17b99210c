#pragma once

#include "Server/Base/Timer.h"

namespace Vu {

/// The duration of something: by the clock, and in processor time, which excludes other programs. Seconds.
struct MetricTime
{
    double clock = 0;
    double processor = 0;
};

/// The processor time that this process and its ended children have used so far, in seconds.
[[nodiscard]] double processorSeconds();

/// Measures both since its construction.
class MetricClock
{
public:
    MetricTime elapsed() const { return {m_clock.elapsed(), processorSeconds() - m_processor}; }

private:
    Vs::Utility::timer m_clock;
    double m_processor = processorSeconds();
};

} // namespace Vu
