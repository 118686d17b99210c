#include "Server/Base/Python/ScriptTrace.h"

#include "Server/Base/Python/Arguments.h"

#include <memory>
#include <pybind11/pybind11.h>
#include <string>
#include <utility>

namespace Vs::Python {

namespace py = pybind11;

namespace {

/// The file of the line that ran last, which is mostly that of the next one.
struct LastFile
{
    py::object name;
    std::wstring path;
    bool followed = false;
};
std::unique_ptr<LastFile> s_last; ///< While anything is traced.

const LastFile& fileOf(PyFrameObject* frame)
{
    const auto code = py::reinterpret_steal<py::object>(reinterpret_cast<PyObject*>(PyFrame_GetCode(frame)));
    py::object name = code.attr("co_filename");
    if (name.ptr() != s_last->name.ptr()) {
        s_last->path = wideText(name);
        s_last->followed = ScriptDebugger::get()->follows(s_last->path);
        s_last->name = std::move(name);
    }
    return *s_last;
}

void reach(const std::wstring& path, int line)
{
    ScriptDebugger* debugger = ScriptDebugger::get();
    if (!debugger->waitsBefore(path, line))
        return;
    const std::wstring kept = path; // What runs meanwhile may be Python as well.
    const py::gil_scoped_release others;
    debugger->wait(kept, line);
}

int trace(PyObject*, PyFrameObject* frame, int what, PyObject*)
{
    if (what != PyTrace_CALL && what != PyTrace_LINE && what != PyTrace_RETURN)
        return 0;
    try {
        const LastFile& file = fileOf(frame);
        if (!file.followed)
            return 0;
        if (what == PyTrace_CALL)
            ScriptDebugger::get()->enter();
        else if (what == PyTrace_RETURN)
            ScriptDebugger::get()->leave();
        else
            reach(file.path, PyFrame_GetLineNumber(frame));
    } catch (py::error_already_set& error) {
        error.restore();
        return -1;
    }
    // A run that was stopped while it waited ends here.
    return what == PyTrace_LINE ? PyErr_CheckSignals() : 0;
}

} // namespace

ScriptTrace::ScriptTrace() : m_begins(ScriptDebugger::get()->running() && !s_last)
{
    if (!m_begins)
        return;
    s_last = std::make_unique<LastFile>();
    PyEval_SetTrace(&trace, nullptr);
}

ScriptTrace::~ScriptTrace()
{
    if (!m_begins)
        return;
    PyEval_SetTrace(nullptr, nullptr);
    s_last.reset();
}

} // namespace Vs::Python
