#pragma once

#include <pybind11/pybind11.h>

namespace Vs::Python {

/// Starts Python in this process: the system's own, or that of the active virtual environment. Throws
/// Vs::Exception.
void startPython();

/// Lets a Python that isn't the program's own import the modules of the areas, which the module _quillet
/// makes. The interpreter is held. Throws pybind11::error_already_set.
void offerAreas(const pybind11::object& module);

} // namespace Vs::Python
