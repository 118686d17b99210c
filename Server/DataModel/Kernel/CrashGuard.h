#pragma once

#include <atomic>
#include <csignal>
#include <memory>
#include <pthread.h>

namespace Vs::Kernel {

/// Keeps the program alive when the kernel crashes in a thread by a signal, such as that of an invalid
/// address, and stops a kernel that doesn't finish: the thread is then blocked for good, with everything that
/// it holds. It isn't unwound from wherever it happens to be, since the kernel keeps lists of objects on the
/// stacks of threads (MemoryStop unwinds where that is possible). A guard is for one thread, which must not
/// start other threads.
class [[nodiscard]] CrashGuard
{
public:
    CrashGuard();
    ~CrashGuard();
    CrashGuard(const CrashGuard&) = delete;
    CrashGuard& operator=(const CrashGuard&) = delete;

    /// Guards the calling thread as long as this exists; provides the stack for signal handlers.
    class [[nodiscard]] Guarded
    {
    public:
        explicit Guarded(CrashGuard& guard);
        ~Guarded();
        Guarded(const Guarded&) = delete;
        Guarded& operator=(const Guarded&) = delete;

    private:
        std::unique_ptr<char[]> m_stack;
        stack_t m_before = {};
    };

    /// Blocks the guarded thread if it is in the kernel's algorithms right now: elsewhere, such as in the
    /// allocator, it could hold a lock that all others need. The caller repeats this until the thread is
    /// blocked.
    void stop(pthread_t thread);
    /// Whether it crashed or was stopped. Such a thread must never be joined.
    bool stands() const { return m_standing; }

private:
    std::atomic<bool> m_standing = false;
};

} // namespace Vs::Kernel
