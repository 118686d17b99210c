#pragma once

#include <atomic>

namespace Vs::Kernel {

/// Ends work of the kernel that doesn't check for cancellation: from `stop` on, the kernel's allocator gives
/// the thread no memory, but throws, so that its stack is unwound and everything on it is released. The
/// kernel doesn't take the exception for one of its own, which it would handle and carry on.
///
/// Work that allocates nothing carries on, as does everything if somebody else loaded the kernel before and
/// it allocates without asking here; for these there is CrashGuard::stop.
class MemoryStop
{
public:
    /// The calling thread can be stopped as long as this lives. One per thread.
    class [[nodiscard]] Heeded
    {
    public:
        explicit Heeded(const MemoryStop& stop);
        ~Heeded();
        Heeded(const Heeded&) = delete;
        Heeded& operator=(const Heeded&) = delete;
    };

    /// Thrown out of the work then. It has no base class, so that nobody takes it for something else.
    class Stopped
    {
    };

    /// Any thread.
    void stop() { m_stopped = true; }

private:
    std::atomic<bool> m_stopped = false;
};

} // namespace Vs::Kernel
