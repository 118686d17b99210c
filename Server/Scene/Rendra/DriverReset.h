#pragma once

namespace Rendra {

/// Whether the driver tells that the current context is lost, as after a reset of the graphics unit: nothing
/// that it holds can be relied on. Drivers tell only of contexts that were created for it.
[[nodiscard]] bool driverWasReset();

} // namespace Rendra
