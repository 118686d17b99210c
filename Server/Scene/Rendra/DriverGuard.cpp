#include "Server/Scene/Rendra/DriverGuard.h"

#include <csetjmp>
#include <csignal>
#include <cstddef>
#include <iterator>

namespace Rendra {

namespace {

constexpr int kSignals[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL};

/// Where this thread goes on after a crash; null if it isn't guarded.
thread_local sigjmp_buf* s_wayOut = nullptr;
struct sigaction s_before[std::size(kSignals)];

void crashed(int signal)
{
    if (s_wayOut)
        siglongjmp(*s_wayOut, 1);
    // Another thread's: the previous handler gets it when the instruction is executed again.
    for (size_t i = 0; i < std::size(kSignals); ++i)
        if (kSignals[i] == signal)
            sigaction(signal, &s_before[i], nullptr);
}

} // namespace

// Drivers are written in C: nothing on the stack waits to be destroyed.
bool survives(const std::function<void()>& start)
{
    struct sigaction own = {};
    own.sa_handler = crashed;
    sigemptyset(&own.sa_mask);
    for (size_t i = 0; i < std::size(kSignals); ++i)
        sigaction(kSignals[i], &own, &s_before[i]);
    sigjmp_buf wayOut;
    volatile bool alive = false;
    if (sigsetjmp(wayOut, 1) == 0) {
        s_wayOut = &wayOut;
        start();
        alive = true;
    }
    s_wayOut = nullptr;
    for (size_t i = 0; i < std::size(kSignals); ++i)
        sigaction(kSignals[i], &s_before[i], nullptr);
    return alive;
}

} // namespace Rendra
