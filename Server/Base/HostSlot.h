#pragma once

#include "Server/Base/Require.h"

#include <utility>

namespace Vs {

/// Where a library keeps the host that was installed to answer for the libraries above. `Host` is a class
/// whose functions answer that there is nothing; one of these is in place until another is installed. Main
/// thread only.
template <class Host>
class HostSlot
{
public:
    /// Never null.
    [[nodiscard]] Host* get() const { return m_host; }
    /// Returns the one before. The host is not owned; null brings the empty one back.
    Host* install(Host* host)
    {
        assertMainThread();
        return std::exchange(m_host, host ? host : &m_empty);
    }

private:
    Host m_empty;
    Host* m_host = &m_empty;
};

} // namespace Vs
