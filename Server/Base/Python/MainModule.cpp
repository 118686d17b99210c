#include "Server/Base/Python/MainModule.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/Python/Arguments.h"
#include "Server/Base/Strings.h"

#include <boost/filesystem/operations.hpp>

namespace Vs::Python {

namespace py = pybind11;

MainModule::MainModule(const std::string& path, const std::vector<std::wstring>& arguments)
    : m_sys(py::module_::import("sys")),
      m_module(py::reinterpret_steal<py::module_>(PyModule_New("__main__"))),
      m_folder(pythonText(PathInfo::absolute(path).parent_path().wstring())),
      m_modules(m_sys.attr("modules")),
      m_path(m_sys.attr("path")),
      m_moduleBefore(m_modules.attr("get")("__main__")),
      m_argumentsBefore(py::getattr(m_sys, "argv", py::list()))
{
    const py::dict globals = names();
    globals["__builtins__"] = py::module_::import("builtins");
    globals["__file__"] = pythonText(Strings::fromBytes(path));
    m_modules["__main__"] = m_module;
    py::list argv;
    argv.append(pythonText(Strings::fromBytes(path)));
    for (const std::wstring& argument : arguments)
        argv.append(pythonText(argument));
    m_sys.attr("argv") = argv;
    m_path.insert(0, m_folder);
}

// The script may have replaced the interpreter's own objects by anything.
MainModule::~MainModule()
{
    const auto put = [this](const char* name, const py::object& value) {
        if (PyObject_SetAttrString(m_sys.ptr(), name, value.ptr()) != 0)
            PyErr_WriteUnraisable(m_sys.ptr());
    };
    put("modules", m_modules);
    put("path", m_path);
    put("argv", m_argumentsBefore);
    if (PyDict_SetItemString(m_modules.ptr(), "__main__", m_moduleBefore.ptr()) != 0)
        PyErr_WriteUnraisable(m_modules.ptr());
    const Py_ssize_t place = PySequence_Index(m_path.ptr(), m_folder.ptr());
    if (place < 0 || PySequence_DelItem(m_path.ptr(), place) != 0)
        PyErr_Clear();
}

} // namespace Vs::Python
