#pragma once

#include "UI/Base/Validation/MetricClock.h"

#include <array>
#include <memory>
#include <vector>

namespace Vu {

enum class EMetricType {
    FramesRate = 0,                ///< How long a picture takes.
    CommandInteractivity = 1,      ///< From the call of a command to its end, or until it is active.
    PrehighlightSelect = 2,        ///< From a move of the mouse until what lies there is found and marked.
    PrehighlightInteractivity = 3, ///< From a move of the mouse until the mark is seen.
    ElapsedTime = 4,
};

/// The names of the types in lines and files, by their numbers.
inline constexpr std::array kMetricTokens = {L"FramesRate", L"CommandInteractivity", L"PrehighlightSelect",
                                             L"PrehighlightInteractivity", L"ElapsedTime"};

/// Watches the program from its construction on, and collects the data of one metric. Main thread only.
class MetricProbe
{
public:
    [[nodiscard]] static std::unique_ptr<MetricProbe> make(EMetricType type);
    virtual ~MetricProbe() = default;
    MetricProbe(const MetricProbe&) = delete;
    MetricProbe& operator=(const MetricProbe&) = delete;

    /// What was measured so far, one for each picture, command or move. The processor time of a picture that
    /// somebody else has timed isn't known, and is 0.
    virtual std::vector<MetricTime> times() const { return m_times; }
    /// Whether canvases without a window were drawn for this metric: their times compare with no other.
    virtual bool windowless() const { return false; }

protected:
    MetricProbe() = default;
    void add(const MetricTime& time) { m_times.push_back(time); }

private:
    std::vector<MetricTime> m_times;
};

} // namespace Vu
