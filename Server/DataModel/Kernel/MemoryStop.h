#pragma once

#include <atomic>

namespace Vs::Kernel {

/// Brings work of the kernel to its end that looks at no cancel: from `stop` on, the kernel's allocator gives
/// the thread no memory, but an exception, so that its stack is unwound and all that stands on it is given
/// back. The kernel takes the exception for none of its own failures, which it handles and goes on.
///
/// What asks for no memory goes on, as does everything where the kernel was loaded by somebody else before
/// and allocates without asking here; for these there is CrashGuard::stop.
class MemoryStop
{
public:
    /// The calling thread can be stopped for as long as this lives. One for each thread.
    class [[nodiscard]] Heeded
    {
    public:
        explicit Heeded(const MemoryStop& stop);
        ~Heeded();
        Heeded(const Heeded&) = delete;
        Heeded& operator=(const Heeded&) = delete;
    };

    /// What comes out of the work then. It has no base class, so that nobody takes it for something else.
    class Stopped
    {
    };

    /// Any thread.
    void stop() { m_stopped = true; }

private:
    std::atomic<bool> m_stopped = false;
};

} // namespace Vs::Kernel
