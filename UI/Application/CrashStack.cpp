#include "UI/Application/CrashStack.h"

#include <array>
#include <csignal>
#include <cstring>
#include <execinfo.h>
#include <unistd.h>

namespace Quillet {
namespace {

constexpr int kSignals[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};
constexpr int kMostCalls = 64;
/// After a stack overflow there is no room for a handler.
std::array<char, 64UL * 1024> ownStack;

void write(const char* text)
{
    [[maybe_unused]] const ssize_t written = ::write(STDERR_FILENO, text, std::strlen(text));
}

void crashed(int number)
{
    std::signal(number, SIG_DFL);
    void* calls[kMostCalls];
    const int count = backtrace(calls, kMostCalls);
    write("\n");
    write(kStackHead);
    write("\n");
    backtrace_symbols_fd(calls, count, STDERR_FILENO);
    // It stays pending until this handler returns, and then ends the process.
    std::raise(number);
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kHasReport = true;
#else
constexpr bool kHasReport = false;
#endif

} // namespace

void tellStackOfCrash()
{
    if (kHasReport)
        return;
    // The first call loads what it needs, which a handler must not do.
    void* first = nullptr;
    backtrace(&first, 1);
    const stack_t stack = {.ss_sp = ownStack.data(), .ss_flags = 0, .ss_size = ownStack.size()};
    sigaltstack(&stack, nullptr);
    struct sigaction action = {};
    action.sa_handler = crashed;
    action.sa_flags = SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    for (const int number : kSignals)
        sigaction(number, &action, nullptr);
}

} // namespace Quillet
