#include "Server/Base/Python/Arguments.h"

#include "Server/Base/Strings.h"

namespace Vs::Python {

namespace py = pybind11;

namespace {

py::type_error wrongArgument(py::handle value)
{
    return py::type_error(
        std::string("a text command takes str, int, float, a path, or a sequence of numbers, not ") +
        Py_TYPE(value.ptr())->tp_name);
}

std::wstring numberText(py::handle value)
{
    if (PyBool_Check(value.ptr()))
        return value.ptr() == Py_True ? L"1" : L"0";
    // The text that Python writes for a float reads back to the same value.
    return wideText(py::repr(value));
}

bool isNumber(py::handle value)
{
    return PyLong_Check(value.ptr()) || PyFloat_Check(value.ptr());
}

std::wstring parameterText(py::handle value)
{
    if (PyUnicode_Check(value.ptr()))
        return wideText(value);
    if (isNumber(value))
        return numberText(value);
    if (py::isinstance<py::tuple>(value) || py::isinstance<py::list>(value)) {
        std::wstring text;
        for (const py::handle each : value) {
            if (!isNumber(each))
                throw wrongArgument(each);
            text += (text.empty() ? L"" : L",") + numberText(each);
        }
        return text;
    }
    if (py::hasattr(value, "__fspath__"))
        return wideText(value.attr("__fspath__")());
    if (py::hasattr(value, "__float__"))
        return numberText(py::float_(py::reinterpret_borrow<py::object>(value)));
    throw wrongArgument(value);
}

} // namespace

TextCommandParameters textParameters(const py::tuple& arguments, const py::dict& keywords)
{
    std::vector<std::wstring> parameters, flags;
    for (const py::handle value : arguments)
        if (!value.is_none())
            parameters.push_back(parameterText(value));
    for (const auto& [name, value] : keywords) {
        if (value.is_none() || value.ptr() == Py_False)
            continue;
        if (value.ptr() != Py_True)
            throw py::type_error("the keyword " + Strings::narrow(wideText(name)) +
                                 " is a flag, and must be True or False");
        flags.push_back(wideText(name));
    }
    return TextCommandParameters(std::move(parameters), std::move(flags));
}

py::str pythonText(std::wstring_view text)
{
    // Python uses the same stand-in for a byte of a file's name.
    auto made = py::reinterpret_steal<py::str>(
        PyUnicode_FromWideChar(text.data(), static_cast<Py_ssize_t>(text.size())));
    if (!made)
        throw py::error_already_set();
    return made;
}

std::wstring wideText(py::handle object)
{
    const py::str text(py::reinterpret_borrow<py::object>(object));
    std::wstring wide(static_cast<size_t>(PyUnicode_GetLength(text.ptr())), L'\0');
    if (PyUnicode_AsWideChar(text.ptr(), wide.data(), static_cast<Py_ssize_t>(wide.size())) < 0)
        throw py::error_already_set();
    return wide;
}

} // namespace Vs::Python
