#include "Server/DataModel/Kernel/CrashGuard.h"

#include <csetjmp>
#include <csignal>
#include <utility>

namespace Vs::Kernel {

namespace {

constexpr int kSignals[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL};

thread_local sigjmp_buf* wayBack = nullptr;
struct sigaction before[std::size(kSignals)];

void broken(int signal)
{
    if (wayBack)
        siglongjmp(*wayBack, signal);
    // Another thread's: whoever was there before gets it, when the instruction is met again.
    for (size_t i = 0; i < std::size(kSignals); ++i)
        if (kSignals[i] == signal)
            sigaction(signal, &before[i], nullptr);
}

class Handlers
{
public:
    Handlers()
    {
        struct sigaction own = {};
        own.sa_handler = broken;
        own.sa_flags = SA_ONSTACK;
        sigemptyset(&own.sa_mask);
        for (size_t i = 0; i < std::size(kSignals); ++i)
            sigaction(kSignals[i], &own, &before[i]);
    }
    ~Handlers()
    {
        wayBack = nullptr;
        for (size_t i = 0; i < std::size(kSignals); ++i)
            sigaction(kSignals[i], &before[i], nullptr);
    }
};

} // namespace

bool survives(const std::function<void()>& work)
{
    const Handlers handlers;
    sigjmp_buf here;
    if (sigsetjmp(here, 1) != 0)
        return false;
    wayBack = &here;
    work();
    return true;
}

} // namespace Vs::Kernel
