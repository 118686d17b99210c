#include "UI/Base/Validation/MetricClock.h"

#include <sys/resource.h>

namespace Vu {
namespace {

double secondsOf(int who)
{
    rusage usage = {};
    getrusage(who, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

} // namespace

double processorSeconds()
{
    return secondsOf(RUSAGE_SELF) + secondsOf(RUSAGE_CHILDREN);
}

} // namespace Vu
