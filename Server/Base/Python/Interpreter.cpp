#include "Server/Base/Python/Interpreter.h"

#include "Server/Base/Exception.h"
#include "Server/Base/PathInfo.h"
#include "Server/Base/Python/Arguments.h"
#include "Server/Base/Python/ClosingDown.h"
#include "Server/Base/Python/Interruptible.h"
#include "Server/Base/Python/MainModule.h"
#include "Server/Base/Python/ModelQuestions.h"
#include "Server/Base/Python/OwnCode.h"
#include "Server/Base/Python/ScriptError.h"
#include "Server/Base/Python/ScriptSource.h"
#include "Server/Base/Python/ScriptThreads.h"
#include "Server/Base/Python/ScriptTrace.h"
#include "Server/Base/Python/Startup.h"
#include "Server/Base/Python/Statements.h"
#include "Server/Base/SoftwareVersion.h"
#include "Server/Base/Status.h"
#include "Server/Base/Strings.h"
#include "Server/Base/TextCommandMgr.h"
#include "Server/Base/TranscriptMgr.h"

#include <pybind11/stl.h>
#include <tuple>
#include <utility>

namespace Vs::Python {

namespace py = pybind11;

namespace {

void evaluate(const py::object& compiled, const py::dict& names)
{
    const auto ran =
        py::reinterpret_steal<py::object>(PyEval_EvalCode(compiled.ptr(), names.ptr(), names.ptr()));
    if (!ran)
        throw py::error_already_set();
}

py::module_ newModule()
{
    // Of a kind that an import also takes from a library.
    static PyModuleDef definition = {
        PyModuleDef_HEAD_INIT, "_quillet", "What the package quillet stands on.", -1, {}, {}, {}, {}, {}};
    return py::reinterpret_steal<py::module_>(PyModule_Create(&definition));
}

py::dict parametersOfRun()
{
    py::dict all;
    for (const auto& [name, value] : TranscriptMgr::get()->parameters())
        all[pythonText(Strings::fromBytes(name))] = pythonText(Strings::fromBytes(value));
    return all;
}

} // namespace

Interpreter::Interpreter()
{
    startPython();
    try {
        makeHeld();
        m_streams.install();
    } catch (const std::exception& error) {
        const std::string why = error.what();
        m_held = nullptr;
        Py_FinalizeEx();
        throw Exception("Python cannot be started: " + why);
    }
    m_resting = PyEval_SaveThread();
}

Interpreter::Interpreter(std::function<void()> end) : m_end(std::move(end))
{
    makeHeld();
    offerAreas(m_held->module);
    py::module_::import("atexit").attr("register")(py::cpp_function([this] { this->end(); }));
}

// Functions that the script still holds remain valid objects, and refuse to run.
void Interpreter::end()
{
    m_ended = true;
    if (m_held->listens)
        tellNoChanges();
    m_held->closingDownFunctions = py::list();
    m_end();
}

void Interpreter::updateModules()
{
    if (!m_end)
        m_held->modules->update();
}

Interpreter::~Interpreter()
{
    PyEval_RestoreThread(m_resting);
    if (m_held->listens)
        tellNoChanges();
    if (scriptThreadsEnded()) {
        m_held = nullptr;
        Py_FinalizeEx();
    } else {
        // The interpreter's lock is never released: the threads stay blocked until the process ends.
        static_cast<void>(m_held.release());
    }
    m_streams.flush();
}

void Interpreter::makeHeld()
{
    m_held = std::make_unique<Held>();
    makeQuilletModule();
    m_held->modules = std::make_unique<CommandModules>(m_held->commandError, m_definitions);
    m_held->console["__builtins__"] = py::module_::import("builtins");
    m_held->console["__name__"] = "__console__";
}

void Interpreter::makeQuilletModule()
{
    py::module_ module = newModule();
    m_held->module = module;
    m_held->commandError = py::reinterpret_steal<py::object>(
        PyErr_NewExceptionWithDoc("quillet.CommandError", "A text command failed; the text is its reason.",
                                  PyExc_RuntimeError, nullptr));
    module.attr("CommandError") = m_held->commandError;
    module.attr("version") = SoftwareVersion::currentSoftwareVersion();
    module.def(
        "run", [this](const py::str& line) { return runLine(line); },
        "Runs a line of text and returns its message.");
    module.def(
        "on_closing_down",
        [this](const py::function& function) { m_held->closingDownFunctions.append(function); },
        "Has a function called before the application closes; if it returns False, the application stays.");
    module.def(
        "off_closing_down",
        [this](const py::function& function) { m_held->closingDownFunctions.attr("remove")(function); },
        "No longer calls the function before the application closes. Raises ValueError if it isn't called.");
    module.def("parameters", &parametersOfRun,
               "What the run was given with --set NAME=VALUE, and replays have added.");
    module.def(
        "area", [this](const std::string& name) { return m_held->modules->area(name); },
        "The module of a subject area.");
    module.def(
        "areas", [] { return CommandModules::names(); }, "The names of all subject areas.");
    addModelQuestions(module);
    module.def(
        "define",
        [this](const std::string& name, const py::str& title, const py::str& description,
               const std::string& key, const py::str& icon, const py::function& function) {
            m_held->commands[name.c_str()] = function;
            defineCommand(
                {Strings::widen(name), wideText(title), wideText(description), key, wideText(icon), {}},
                name);
        },
        "Makes a function a command, with a line Scripts.NAME.");
    module.def(
        "listen",
        [this](const py::function& heard) {
            m_held->listens = true;
            tellChanges(heard, [this](py::error_already_set& error) {
                Status status;
                tell(error, "quillet.on", Traceback::Printed, status);
                if (status.isError())
                    m_streams.write(ScriptStreams::Kind::Error, Strings::narrow(status.toString()) + '\n');
                m_streams.flush();
            });
        },
        "Has a function called with \"model\", \"document\" or \"selection\" after each change of it.");
    if (m_end)
        return;
    const py::module_ sys = py::module_::import("sys");
    sys.attr("modules")["_quillet"] = module;
    sys.attr("path").attr("append")(py::str((PathInfo::rootDirectory() / "lib" / "python").string()));
}

py::str Interpreter::runLine(const py::str& line)
{
    requireMainThread();
    const std::wstring text = wideText(line);
    const auto run = [&] { return TextCommandMgr::get()->executeCommandWithoutOutput(text); };
    TranscriptMgr* transcripts = TranscriptMgr::get();
    const TextCommandResult result = transcripts->runs() ? transcripts->settled(run) : run();
    if (result.first != 0) {
        PyErr_SetObject(m_held->commandError.ptr(), pythonText(result.second).ptr());
        throw py::error_already_set();
    }
    return pythonText(result.second);
}

void Interpreter::requireMainThread() const
{
    if (m_ended) {
        PyErr_SetString(PyExc_RuntimeError, "the application has come to its end");
        throw py::error_already_set();
    }
    if (std::this_thread::get_id() == m_mainThread)
        return;
    PyErr_SetString(PyExc_RuntimeError, "text commands run on the main thread only: let the thread hand its "
                                        "results over, and call them there");
    throw py::error_already_set();
}

std::wstring Interpreter::runFile(const std::string& path, const std::vector<std::wstring>& arguments,
                                  Status& status)
{
    m_exitCode = 1;
    const std::string code = readScript(path);
    m_exitCode = 0;
    const Lock lock;
    const MainModule main(path, arguments);
    return run(code, path, main.names(), Traceback::Printed, status);
}

void Interpreter::runStatements(const std::string& path, const ScriptSteps& steps, Status& status)
{
    const std::string code = readScript(path);
    const Lock lock;
    const MainModule main(path, {});
    const Interruptible scope(path);
    updateModules();
    py::dict own;
    execute(kStatements, own);
    const py::str name = pythonText(Strings::fromBytes(path));
    for (const py::handle each : own["statements"](py::bytes(code), name)) {
        const auto [line, source, compiled] = each.cast<std::tuple<size_t, py::str, py::object>>();
        if (steps.before)
            steps.before(wideText(source));
        Status failure;
        bool goesOn = true;
        try {
            const ScriptTrace trace;
            // Compiling it again tells what is wrong with it.
            evaluate(compiled.is_none() ? own["compiled"](source, line, name) : compiled, main.names());
        } catch (py::error_already_set& error) {
            // For what isn't Python there is no traceback but our own.
            goesOn = tell(error, path, compiled.is_none() ? Traceback::Silent : Traceback::Printed, failure);
        }
        m_streams.flush();
        goesOn = (!steps.after || steps.after(line, failure)) && goesOn;
        status.merge(failure);
        if (!goesOn)
            break;
    }
}

std::wstring Interpreter::runString(const std::string& code, Status& status)
{
    const Lock lock;
    if (m_held->console.contains("result"))
        PyDict_DelItemString(m_held->console.ptr(), "result");
    return run(code, "<string>", m_held->console, Traceback::Silent, status);
}

void Interpreter::defineCommand(ScriptModel::Command command, const std::string& name)
{
    command.run = [name] {
        // It may be asked for until the process ends.
        auto* const running = static_cast<Interpreter*>(PythonBackend::running());
        if (!running || running->m_ended)
            throw Exception("Python has come to its end.");
        running->runCommand(name);
    };
    defineInModel(std::move(command));
}

void Interpreter::runCommand(const std::string& name)
{
    const Lock lock;
    Status status;
    try {
        const Interruptible scope(name);
        updateModules();
        m_held->commands[name.c_str()]();
    } catch (py::error_already_set& error) {
        tell(error, name, Traceback::Printed, status);
    }
    m_streams.flush();
    if (status.isError())
        throw Exception(status.toString());
}

bool Interpreter::consoleLine(const std::string& line, Status& status)
{
    const Lock lock;
    try {
        const Interruptible scope("console");
        updateModules();
        const bool goesOn = m_held->prompt.push(line);
        m_streams.flush();
        return goesOn;
    } catch (py::error_already_set& error) {
        tell(error, "<console>", Traceback::Printed, status);
        // Whoever leaves with a code of 0 leaves as well.
        if (error.matches(PyExc_SystemExit) && status.isOk())
            status.addError(L"The console was left by sys.exit.");
        m_streams.flush();
        return false;
    }
}

void Interpreter::abandonConsoleLines()
{
    const Lock lock;
    m_held->prompt.abandon();
}

std::vector<std::string> Interpreter::completions(const std::string& beginning)
{
    const Lock lock;
    return m_held->prompt.completions(beginning);
}

std::wstring Interpreter::run(const std::string& code, const std::string& name, const py::dict& globals,
                              Traceback traceback, Status& status)
{
    std::wstring result;
    try {
        const Interruptible scope(name);
        updateModules();
        const auto compiled =
            py::reinterpret_steal<py::object>(Py_CompileString(code.c_str(), name.c_str(), Py_file_input));
        if (!compiled)
            throw py::error_already_set();
        {
            const ScriptTrace trace;
            evaluate(compiled, globals);
        }
        if (globals.contains("result"))
            result = wideText(py::object(globals["result"]));
    } catch (py::error_already_set& error) {
        tell(error, name, traceback, status);
    }
    m_streams.flush();
    return result;
}

bool Interpreter::tell(py::error_already_set& error, const std::string& name, Traceback traceback,
                       Status& status)
{
    const ScriptEnd end = scriptEnd(error, name);
    m_exitCode = end.code;
    m_streams.flush();
    if (traceback == Traceback::Printed)
        m_streams.write(ScriptStreams::Kind::Error, end.traceback);
    if (end.failed)
        status.addError(end.message);
    return !error.matches(PyExc_SystemExit) && !error.matches(PyExc_KeyboardInterrupt);
}

void* Interpreter::callCommand(TextCommand& command, void* arguments, void* keywords)
{
    try {
        requireMainThread();
        const auto positional = py::reinterpret_borrow<py::tuple>(static_cast<PyObject*>(arguments));
        const py::dict named =
            keywords ? py::reinterpret_borrow<py::dict>(static_cast<PyObject*>(keywords)) : py::dict();
        return m_held->modules->call(command, positional, named).release().ptr();
    } catch (py::error_already_set& error) {
        error.restore();
    } catch (const py::builtin_exception& error) {
        error.set_error();
    } catch (const std::exception& error) {
        PyErr_SetString(PyExc_RuntimeError, error.what());
    }
    return nullptr;
}

void* Interpreter::makeModule(TextCommandSubjectArea& area)
{
    try {
        return m_held->modules->make(area).release().ptr();
    } catch (py::error_already_set& error) {
        error.restore();
    }
    return nullptr;
}

bool Interpreter::closingDown(Status& status)
{
    const Lock lock;
    const bool mayClose = mayCloseDown(m_held->closingDownFunctions, status);
    m_streams.flush();
    return mayClose;
}

} // namespace Vs::Python

extern "C" __attribute__((visibility("default"))) Vs::PythonBackend* makePythonBackend()
{
    return new Vs::Python::Interpreter;
}

extern "C" __attribute__((visibility("default"))) PyObject* makeQuilletModule(void (*end)())
{
    try {
        // Its functions are the script's until the process ends.
        auto* const interpreter = new Vs::Python::Interpreter(end);
        Vs::PythonBackend::adopt(interpreter);
        return pybind11::object(interpreter->module()).release().ptr();
    } catch (pybind11::error_already_set& error) {
        error.restore();
        return nullptr;
    }
}
