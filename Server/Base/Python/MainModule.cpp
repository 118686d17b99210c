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
      m_moduleBefore(m_sys.attr("modules").attr("get")("__main__")),
      m_argumentsBefore(py::getattr(m_sys, "argv", py::list()))
{
    const py::dict globals = names();
    globals["__builtins__"] = py::module_::import("builtins");
    globals["__file__"] = pythonText(Strings::fromBytes(path));
    m_sys.attr("modules")["__main__"] = m_module;
    py::list argv;
    argv.append(pythonText(Strings::fromBytes(path)));
    for (const std::wstring& argument : arguments)
        argv.append(pythonText(argument));
    m_sys.attr("argv") = argv;
    m_sys.attr("path").attr("insert")(0, m_folder);
}

MainModule::~MainModule()
{
    m_sys.attr("modules")["__main__"] = m_moduleBefore;
    m_sys.attr("argv") = m_argumentsBefore;
    const py::list searched = m_sys.attr("path");
    if (searched.contains(m_folder))
        searched.attr("remove")(m_folder);
}

} // namespace Vs::Python
