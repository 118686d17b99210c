#pragma once

#include <cstddef>

namespace Vs {

/// Keeps a mapping valid when another program writes into the very file that is mapped, as copying over it
/// does. The system notifies us before it lets the other program in (a lease); the content is then copied,
/// and the copy replaces the mapping at the same address. Where the system offers no leases, the copy is made
/// at once.
class MappingGuard
{
public:
    /// Guards the pages of the file of that descriptor, which are mapped at `data`. Doesn't take ownership of
    /// the descriptor.
    MappingGuard(int descriptor, const char* data, size_t size);
    ~MappingGuard();
    MappingGuard(const MappingGuard&) = delete;
    MappingGuard& operator=(const MappingGuard&) = delete;

    /// Whether the mapping at `data` is guarded and still as it was mapped: it isn't once another program has
    /// written into its file and there was no room for a copy. Any thread.
    [[nodiscard]] static bool keeps(const char* data);

private:
    class Watch;
    void copyAway();

    const char* m_data;
    size_t m_size;
    int m_descriptor = -1; ///< Holds the lease; -1 without one.
};

} // namespace Vs
