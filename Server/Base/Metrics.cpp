#include "Server/Base/Metrics.h"

#include "Server/Base/Require.h"

#include <algorithm>
#include <memory>
#include <mutex>
#include <unordered_map>

namespace Vs {

namespace {

using Seconds = std::chrono::duration<double>;

// Never destroyed: metrics are statics of many libraries.
std::vector<const Metrics::TimeMetric*>& metrics()
{
    static auto& all = *new std::vector<const Metrics::TimeMetric*>;
    return all;
}

struct Sums
{
    std::mutex mutex;
    std::unordered_map<const UniqueString*, Clock::Sum> byName;
};

Sums& sums()
{
    static Sums& all = *new Sums;
    return all;
}

} // namespace

Metrics::TimeMetric* Metrics::TimeMetric::make(const UniqueString* name, const std::wstring& title)
{
    assertMainThread();
    require(name != nullptr, "a metric has a name");
    for (const TimeMetric* metric : metrics())
        if (metric->name() == name)
            return const_cast<TimeMetric*>(metric);
    auto* metric = new TimeMetric(name, title);
    metrics().push_back(metric);
    return metric;
}

std::vector<const Metrics::TimeMetric*> Metrics::TimeMetric::all()
{
    return metrics();
}

void Metrics::TimeMetric::start()
{
    m_start = std::chrono::steady_clock::now();
    m_running = true;
}

void Metrics::TimeMetric::stop()
{
    if (!m_running)
        return;
    m_running = false;
    m_seconds = Seconds(std::chrono::steady_clock::now() - m_start).count();
    m_totalSeconds += m_seconds;
    ++m_count;
}

Clock::~Clock()
{
    const double passed = Seconds(std::chrono::steady_clock::now() - m_start).count();
    std::lock_guard lock(sums().mutex);
    Sum& sum = sums().byName[m_name];
    ++sum.count;
    sum.seconds += passed;
}

Clock::Sum Clock::sum(const UniqueString* name)
{
    std::lock_guard lock(sums().mutex);
    const auto found = sums().byName.find(name);
    return found == sums().byName.end() ? Sum() : found->second;
}

} // namespace Vs
