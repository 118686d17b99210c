#pragma once

#include <string>

namespace Vs::Network {

/// The server certificate of the last connection made, and what is wrong with it.
struct Certificate
{
    std::string fault;       ///< Empty if nothing is wrong.
    std::string fingerprint; ///< SHA-256, "AB:CD:..."; empty if none was seen.

    /// Makes connections that use this libcurl handle record their certificates here. Doesn't change which
    /// ones are accepted.
    void watch(void* handle);
};

} // namespace Vs::Network
