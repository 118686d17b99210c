#pragma once

#include <string>

namespace Vs::Network {

/// The server's certificate of the connection that was made last, and what is wrong with it.
struct Certificate
{
    std::string fault;       ///< Empty if nothing is.
    std::string fingerprint; ///< SHA-256, "AB:CD:..."; empty if none was seen.

    /// Has connections that are made with this handle of libcurl note their certificates here. What is
    /// accepted doesn't change.
    void watch(void* handle);
};

} // namespace Vs::Network
