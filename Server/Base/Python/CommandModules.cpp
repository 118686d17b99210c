#include "Server/Base/Python/CommandModules.h"

#include "Server/Base/Private/PythonBackend.h"
#include "Server/Base/Python/Arguments.h"
#include "Server/Base/PythonSignature.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TranscriptMgr.h"

namespace Vs::Python {

namespace py = pybind11;

namespace {

/// Runs the command whose address is in the capsule `self`; for commands that bring no entry of their own.
PyObject* callByCapsule(PyObject* self, PyObject* arguments, PyObject* keywords)
{
    auto* command = static_cast<TextCommand*>(PyCapsule_GetPointer(self, nullptr));
    return command ? static_cast<PyObject*>(command->_pythonCallableFunction(self, arguments, keywords))
                   : nullptr;
}

} // namespace

void CommandModules::update()
{
    const py::dict modules = py::module_::import("sys").attr("modules");
    for (TextCommandSubjectArea* area : TextCommandMgr::get()->areas()) {
        const py::str name = pythonText(area->name());
        if (modules.contains(name)) {
            addFunctions(py::reinterpret_borrow<py::module_>(modules[name]), *area);
        } else {
            const py::object module = made(*area);
            modules[name] = module;
            m_areas[name] = module;
        }
    }
}

py::object CommandModules::area(const std::string& name)
{
    for (TextCommandSubjectArea* area : TextCommandMgr::get()->areas())
        if (Strings::narrow(area->name()) == name) {
            // Scripts bring commands at any time.
            if (m_areas.contains(name.c_str()))
                addFunctions(py::reinterpret_borrow<py::module_>(m_areas[name.c_str()]), *area);
            else
                m_areas[name.c_str()] = made(*area);
            return m_areas[name.c_str()];
        }
    throw py::import_error("there is no subject area " + name);
}

py::list CommandModules::names()
{
    py::list all;
    for (const TextCommandSubjectArea* area : TextCommandMgr::get()->areas())
        all.append(pythonText(area->name()));
    return all;
}

py::object CommandModules::made(TextCommandSubjectArea& area)
{
    const PythonModuleInit entry = area.pythonEntry();
    if (!entry)
        return make(area);
    auto module = py::reinterpret_steal<py::object>(static_cast<PyObject*>(entry()));
    if (!module)
        throw py::error_already_set();
    return module;
}

py::module_ CommandModules::make(TextCommandSubjectArea& area)
{
    const std::string name = Strings::narrow(area.name());
    auto module = py::reinterpret_steal<py::module_>(PyModule_New(name.c_str()));
    if (!module)
        throw py::error_already_set();
    module.attr("__doc__") = pythonText(area.description());
    addFunctions(module, area);
    return module;
}

void CommandModules::addFunctions(const py::module_& module, const TextCommandSubjectArea& area)
{
    const py::dict names = module.attr("__dict__");
    for (TextCommand* command : TextCommandMgr::get()->commands(area.name())) {
        const py::str name = pythonText(command->name());
        if (!names.contains(name))
            names[name] = makeFunction(*command, pythonText(area.name()));
    }
}

py::object CommandModules::makeFunction(TextCommand& command, const py::str& module)
{
    FunctionDefinition& definition = m_definitions.emplace_back();
    definition.name = Strings::narrow(command.name());
    // In the form that Python's inspect and help read the signature from.
    definition.help =
        definition.name + PythonSignature(command).text() + "\n--\n\n" + Strings::narrow(command.help());
    const PythonFunction entry = command.pythonEntry();
    const auto function = entry ? reinterpret_cast<PyCFunctionWithKeywords>(entry) : &callByCapsule;
    definition.method = {definition.name.c_str(),
                         reinterpret_cast<PyCFunction>(reinterpret_cast<void*>(function)),
                         METH_VARARGS | METH_KEYWORDS, definition.help.c_str()};
    const auto self = py::reinterpret_steal<py::object>(PyCapsule_New(&command, nullptr, nullptr));
    auto made =
        py::reinterpret_steal<py::object>(PyCFunction_NewEx(&definition.method, self.ptr(), module.ptr()));
    if (!made)
        throw py::error_already_set();
    return made;
}

py::str CommandModules::call(TextCommand& command, const py::tuple& arguments, const py::dict& keywords)
{
    TextCommandParameters parameters = textParameters(arguments, keywords);
    const auto run = [&] { return TextCommandMgr::get()->execute(command, std::move(parameters)); };
    TranscriptMgr* transcripts = TranscriptMgr::get();
    const TextCommandResult result = transcripts->runs() ? transcripts->settled(run) : run();
    if (result.first != 0) {
        PyErr_SetObject(m_commandError.ptr(), pythonText(result.second).ptr());
        throw py::error_already_set();
    }
    return pythonText(result.second);
}

} // namespace Vs::Python
