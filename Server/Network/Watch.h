#pragma once

#include <cstdint>
#include <functional>

namespace Vs::Network {

/// The observer of a request. `progress` is called on the waiting thread about ten times a second with the
/// bytes done and the total (0 if unknown); false cancels the request. Without it, the request can't be
/// cancelled.
struct Watch
{
    std::function<bool(std::uint64_t done, std::uint64_t total)> progress{};

    /// Whether the work should continue.
    bool goesOn() const { return !progress || progress(0, 0); }
};

} // namespace Vs::Network
