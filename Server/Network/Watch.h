#pragma once

#include <cstdint>
#include <functional>

namespace Vs::Network {

/// Whoever waits for a request. `progress` is called on the waiting thread, some ten times a second, with the
/// bytes done and in all (0 if unknown); false cancels the request. Without it, nobody cancels.
struct Watch
{
    std::function<bool(std::uint64_t done, std::uint64_t total)> progress{};

    /// Whether the work is to go on.
    bool goesOn() const { return !progress || progress(0, 0); }
};

} // namespace Vs::Network
