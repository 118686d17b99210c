#pragma once

#include "Server/Base/TextCommand.h"

#include <deque>
#include <pybind11/pybind11.h>
#include <string>

namespace Vs::Python {

/// What CPython keeps pointers to for as long as a function lives.
struct FunctionDefinition
{
    std::string name;
    std::string help;
    PyMethodDef method;
};
/// Never moved. Functions live until the interpreter has ended, so these must live longer.
using FunctionDefinitions = std::deque<FunctionDefinition>;

/// The modules for subject areas, and their functions.
class CommandModules
{
public:
    /// `commandError` is what a failed command raises.
    CommandModules(pybind11::object commandError, FunctionDefinitions& definitions)
        : m_commandError(std::move(commandError)), m_definitions(definitions)
    {
    }

    /// Makes the modules and functions of all areas and commands that have none yet.
    void update();

    /// The module of an area, made at the first call; that which imports find, if `update` made it. Throws
    /// pybind11::error_already_set, an ImportError, if there is no such area.
    pybind11::object area(const std::string& name);
    static pybind11::list names();

    pybind11::module_ make(TextCommandSubjectArea& area);
    /// Runs a command. Throws pybind11::error_already_set or another exception that pybind11 translates.
    pybind11::str call(TextCommand& command, const pybind11::tuple& arguments,
                       const pybind11::dict& keywords);

private:
    pybind11::object made(TextCommandSubjectArea& area);
    void addFunctions(const pybind11::module_& module, const TextCommandSubjectArea& area);
    pybind11::object makeFunction(TextCommand& command, const pybind11::str& module);

    pybind11::object m_commandError;
    FunctionDefinitions& m_definitions;
    pybind11::dict m_areas;
};

} // namespace Vs::Python
