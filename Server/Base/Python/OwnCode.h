#pragma once

#include <pybind11/pybind11.h>

namespace Vs::Python {

/// Runs Python of the program's own; the names that it uses and defines are in `names`. The interpreter is
/// held. Throws pybind11::error_already_set.
void execute(const char* code, pybind11::dict& names);

} // namespace Vs::Python
