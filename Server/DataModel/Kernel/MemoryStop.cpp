#include "Server/DataModel/Kernel/MemoryStop.h"

#include "Server/Base/Require.h"

#include <Standard.hxx>

#include <dlfcn.h>

namespace {

/// Whether this thread has been stopped; null where it can't be.
thread_local const std::atomic<bool>* stopped = nullptr;

using Allocator = void* (*)(Standard_Size);

/// The kernel's own, which stands behind the one here.
Allocator ownAllocator()
{
    void* own = dlsym(RTLD_NEXT, "_ZN8Standard8AllocateEm");
    Vs::require(own != nullptr, "the kernel allocates");
    return reinterpret_cast<Allocator>(own);
}

} // namespace

// The kernel's libraries call it by its name, and this library, with which they are loaded, is looked through
// before them.
Standard_Address Standard::Allocate(const Standard_Size size)
{
    static const Allocator own = ownAllocator();
    if (stopped && *stopped)
        throw Vs::Kernel::MemoryStop::Stopped();
    return own(size);
}

namespace Vs::Kernel {

MemoryStop::Heeded::Heeded(const MemoryStop& stop)
{
    stopped = &stop.m_stopped;
}

MemoryStop::Heeded::~Heeded()
{
    stopped = nullptr;
}

} // namespace Vs::Kernel
