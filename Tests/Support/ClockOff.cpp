// A clock that is off, for programs that are started with this library loaded before all others: it is
// QUILLET_CLOCK_OFF seconds ahead of what the time is. Files keep the times that the kernel gives them.

#include <cstdlib>
#include <ctime>
#include <sys/syscall.h>
#include <sys/time.h>
#include <unistd.h>

namespace {

long offset()
{
    const char* const seconds = std::getenv("QUILLET_CLOCK_OFF");
    return seconds ? std::atol(seconds) : 0;
}

bool isOfTheDay(clockid_t clock)
{
    return clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE;
}

} // namespace

extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept
{
    const long result = syscall(SYS_clock_gettime, clock, time);
    if (result == 0 && isOfTheDay(clock))
        time->tv_sec += offset();
    return int(result);
}

extern "C" int gettimeofday(timeval* time, void*) noexcept
{
    timespec now{};
    const int result = clock_gettime(CLOCK_REALTIME, &now);
    *time = {.tv_sec = now.tv_sec, .tv_usec = now.tv_nsec / 1000};
    return result;
}

extern "C" time_t time(time_t* seconds) noexcept
{
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    if (seconds)
        *seconds = now.tv_sec;
    return now.tv_sec;
}
