#pragma once

#include <atomic>
#include <csignal>
#include <memory>
#include <pthread.h>

namespace Vs::Kernel {

/// Keeps the program alive when the kernel breaks down in a thread by a signal, such as that of an address
/// that isn't there, and stops a kernel that doesn't come to an end: the thread stands still for good then,
/// with all that it holds. It isn't unwound from wherever it happens to be, since the kernel has lists of
/// what stands on the stacks of threads (MemoryStop does that where it can be done). A guard is for one
/// thread, which makes no threads of its own.
class [[nodiscard]] CrashGuard
{
public:
    CrashGuard();
    ~CrashGuard();
    CrashGuard(const CrashGuard&) = delete;
    CrashGuard& operator=(const CrashGuard&) = delete;

    /// Puts the calling thread under the guard for as long as it lives; makes room for handlers.
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

    /// Has the guarded thread stand still, if it is in the kernel's algorithms just now: elsewhere, as in the
    /// allocator, it could hold a lock that all others need. Whoever wants it asks again until it stands.
    void stop(pthread_t thread);
    /// Whether it broke down, or was stopped. Such a thread is never to be joined.
    bool stands() const { return m_standing; }

private:
    std::atomic<bool> m_standing = false;
};

} // namespace Vs::Kernel
