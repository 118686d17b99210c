#pragma once

#include <pybind11/pybind11.h>
#include <string>
#include <vector>

namespace Vs::Python {

/// The module `__main__` of a script, with its folder on the search path and its arguments. Scripts may run
/// scripts: whatever this one changes in the interpreter is restored.
class MainModule
{
public:
    MainModule(const std::string& path, const std::vector<std::wstring>& arguments);
    ~MainModule();
    MainModule(const MainModule&) = delete;
    MainModule& operator=(const MainModule&) = delete;

    /// The names that the script finds and defines.
    pybind11::dict names() const { return m_module.attr("__dict__"); }

private:
    pybind11::module_ m_sys;
    pybind11::module_ m_module;
    pybind11::str m_folder;
    pybind11::dict m_modules;
    pybind11::list m_path;
    pybind11::object m_moduleBefore;
    pybind11::object m_argumentsBefore;
};

} // namespace Vs::Python
