#include "Server/Base/Python/ClosingDown.h"

#include "Server/Base/Python/Arguments.h"
#include "Server/Base/Python/Interruptible.h"
#include "Server/Base/Python/ScriptError.h"
#include "Server/Base/Status.h"

#include <string>

namespace Vs::Python {

namespace py = pybind11;

namespace {

constexpr const char* kClosingDown = "quillet.on_closing_down";

/// Where the function is written, as far as it says so.
std::wstring placeOf(const py::handle& function)
{
    const py::object code = py::getattr(function, "__code__", py::none());
    return code.is_none()
               ? wideText(py::repr(function))
               : wideText(code.attr("co_filename")) + L':' + wideText(py::str(code.attr("co_firstlineno")));
}

} // namespace

bool mayCloseDown(const py::list& functions, Status& status)
{
    bool mayClose = true;
    for (const py::handle function : py::tuple(functions)) { // A copy: they may add some.
        try {
            const Interruptible scope(kClosingDown);
            if (function().ptr() != Py_False)
                continue;
            mayClose = false;
            status.addWarning(placeOf(function) + L": This function keeps the program open.");
        } catch (py::error_already_set& error) {
            status.addError(scriptEnd(error, kClosingDown).message);
        }
    }
    return mayClose;
}

} // namespace Vs::Python
