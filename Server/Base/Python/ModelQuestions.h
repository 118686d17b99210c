#pragma once

#include <pybind11/pybind11.h>

namespace Vs::Python {

/// Adds to the module what ScriptModel answers. While nobody has models, each of these is an error.
void addModelQuestions(pybind11::module_& module);

} // namespace Vs::Python
