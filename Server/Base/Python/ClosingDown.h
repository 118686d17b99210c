#pragma once

#include <pybind11/pybind11.h>

namespace Vs {
class Status;
}

namespace Vs::Python {

/// Asks the functions that scripts have given to quillet.on_closing_down. One that returns False keeps the
/// program open, with a warning that says where it is written; one that raises doesn't, but is an error.
/// Returns whether the program may close. The interpreter is held.
[[nodiscard]] bool mayCloseDown(const pybind11::list& functions, Status& status);

} // namespace Vs::Python
