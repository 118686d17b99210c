#include "Server/Base/Python/OwnCode.h"

namespace Vs::Python {

namespace py = pybind11;

void execute(const char* code, py::dict& names)
{
    names["__builtins__"] = py::module_::import("builtins");
    const auto ran =
        py::reinterpret_steal<py::object>(PyRun_String(code, Py_file_input, names.ptr(), names.ptr()));
    if (!ran)
        throw py::error_already_set();
}

} // namespace Vs::Python
