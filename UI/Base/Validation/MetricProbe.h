#pragma once

#include "UI/Base/Validation/MetricClock.h"

#include <array>
#include <memory>
#include <vector>

namespace Vu {

enum class EMetricType {
    FramesRate = 0,                ///< The duration of a frame.
    CommandInteractivity = 1,      ///< From the call of a command to its end, or until it is active.
    PrehighlightSelect = 2,        ///< From a mouse move until what is under it is found and highlighted.
    PrehighlightInteractivity = 3, ///< From a mouse move until the highlight is visible.
    ElapsedTime = 4,
};

/// The names of the types in lines and files, by their numbers.
inline constexpr std::array kMetricTokens = {L"FramesRate", L"CommandInteractivity", L"PrehighlightSelect",
                                             L"PrehighlightInteractivity", L"ElapsedTime"};

/// Observes the program from its construction on, and collects the data of one metric. Main thread only.
class MetricProbe
{
public:
    [[nodiscard]] static std::unique_ptr<MetricProbe> make(EMetricType type);
    virtual ~MetricProbe() = default;
    MetricProbe(const MetricProbe&) = delete;
    MetricProbe& operator=(const MetricProbe&) = delete;

    /// The measurements so far, one for each frame, command or move. The processor time of a frame timed by
    /// somebody else is unknown, and is 0.
    virtual std::vector<MetricTime> times() const { return m_times; }
    /// Whether canvases without a window were drawn for this metric: their times are only comparable with
    /// each other.
    virtual bool windowless() const { return false; }

protected:
    MetricProbe() = default;
    void add(const MetricTime& time) { m_times.push_back(time); }

private:
    std::vector<MetricTime> m_times;
};

} // namespace Vu
