#pragma once

#include "Server/Base/TextCommand.h"

#include <pybind11/pybind11.h>

namespace Vs::Python {

/// The parameters and flags that a Python call stands for: str, int and float as written in a line, a
/// sequence of numbers as "x,y,z", paths as their text, None omitted; keywords are flags. Throws
/// pybind11::type_error for anything else.
TextCommandParameters textParameters(const pybind11::tuple& arguments, const pybind11::dict& keywords);

/// Wide text as a Python str, and back; invalid text gets replacement characters.
pybind11::str pythonText(std::wstring_view text);
std::wstring wideText(pybind11::handle object);

} // namespace Vs::Python
