#include "Server/DataModel/Kernel/CrashGuard.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <iterator>
#include <link.h>
#include <mutex>
#include <string_view>
#include <ucontext.h>
#include <unistd.h>

namespace Vs::Kernel {

namespace {

// The last one is raised by uncaught exceptions, as when the kernel gets no more memory.
constexpr int kSignals[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};
constexpr size_t kStackSize = 64UL * 1024;

/// The state of this thread's guard; null if it has none.
thread_local std::atomic<bool>* guarded = nullptr;
struct sigaction before[std::size(kSignals)];
/// The handlers are there for as long as any guard is.
std::mutex handlersMutex;
int guards = 0;

/// Where the kernel's algorithms lie in memory: written once, before the first signal to stop.
struct Stretch
{
    uintptr_t begin = 0, end = 0;
};
std::array<Stretch, 128> algorithms;
size_t algorithmsCount = 0;

/// One that nothing else here uses.
int stopSignal()
{
    return SIGRTMIN + 3;
}

uintptr_t placeIn(const void* context)
{
    [[maybe_unused]] const auto* machine = &static_cast<const ucontext_t*>(context)->uc_mcontext;
#if defined(__x86_64__)
    return static_cast<uintptr_t>(machine->gregs[REG_RIP]);
#elif defined(__aarch64__)
    return machine->pc;
#else
    return 0; // nowhere, so that no thread is ever stopped
#endif
}

/// The handlers block all signals, so that nothing wakes it. The guard may be gone as soon as it knows.
void standStill()
{
    *guarded = true;
    for (;;)
        pause();
}

void broken(int signal)
{
    if (guarded)
        standStill();
    // Another thread's: the previous handler gets it when the instruction is executed again.
    for (size_t i = 0; i < std::size(kSignals); ++i)
        if (kSignals[i] == signal)
            sigaction(signal, &before[i], nullptr);
}

void stopped(int, siginfo_t*, void* context)
{
    const uintptr_t place = placeIn(context);
    const auto end = algorithms.begin() + static_cast<std::ptrdiff_t>(algorithmsCount);
    if (guarded && std::any_of(algorithms.begin(), end, [&](const Stretch& stretch) {
            return place >= stretch.begin && place < stretch.end;
        }))
        standStill();
}

/// The kernel's lowest library is none of them: it allocates and locks.
bool isOfAlgorithms(std::string_view library)
{
    const size_t slash = library.rfind('/');
    const std::string_view name = slash == library.npos ? library : library.substr(slash + 1);
    return name.starts_with("libTK") && !name.starts_with("libTKernel");
}

int addCode(dl_phdr_info* library, size_t, void*)
{
    if (!isOfAlgorithms(library->dlpi_name))
        return 0;
    for (int i = 0; i < library->dlpi_phnum && algorithmsCount < algorithms.size(); ++i) {
        const auto& part = library->dlpi_phdr[i];
        if (part.p_type != PT_LOAD || !(part.p_flags & PF_X))
            continue;
        const uintptr_t begin = library->dlpi_addr + part.p_vaddr;
        algorithms[algorithmsCount++] = {begin, begin + part.p_memsz};
    }
    return 0;
}

} // namespace

CrashGuard::CrashGuard()
{
    const std::lock_guard lock(handlersMutex);
    if (guards++ > 0)
        return;
    struct sigaction own = {};
    own.sa_handler = broken;
    own.sa_flags = SA_ONSTACK;
    sigfillset(&own.sa_mask);
    for (size_t i = 0; i < std::size(kSignals); ++i)
        sigaction(kSignals[i], &own, &before[i]);
}

CrashGuard::~CrashGuard()
{
    const std::lock_guard lock(handlersMutex);
    for (size_t i = 0; i < std::size(kSignals) && guards == 1; ++i)
        sigaction(kSignals[i], &before[i], nullptr);
    --guards;
}

void CrashGuard::stop(pthread_t thread)
{
    {
        const std::lock_guard lock(handlersMutex);
        if (algorithmsCount == 0)
            dl_iterate_phdr(addCode, nullptr);
    }
    struct sigaction own = {};
    own.sa_sigaction = stopped;
    own.sa_flags = SA_SIGINFO | SA_ONSTACK | SA_RESTART;
    sigfillset(&own.sa_mask);
    sigaction(stopSignal(), &own, nullptr); // and never undone, as the signal may be on its way
    pthread_kill(thread, stopSignal());
}

CrashGuard::Guarded::Guarded(CrashGuard& guard) : m_stack(std::make_unique<char[]>(kStackSize))
{
    stack_t stack = {};
    stack.ss_sp = m_stack.get();
    stack.ss_size = kStackSize;
    sigaltstack(&stack, &m_before);
    guarded = &guard.m_standing;
}

CrashGuard::Guarded::~Guarded()
{
    guarded = nullptr;
    sigaltstack(&m_before, nullptr);
}

} // namespace Vs::Kernel
