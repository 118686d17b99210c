#pragma once

#include "Server/Base/Private/PythonBackend.h"
#include "Server/Base/Python/CommandModules.h"
#include "Server/Base/Python/Prompt.h"
#include "Server/Base/Python/ScriptStreams.h"
#include "Server/Base/ScriptModel.h"

#include <functional>
#include <memory>
#include <pybind11/pybind11.h>
#include <string>
#include <thread>
#include <vector>

namespace Vs::Python {

/// CPython inside this process. Between calls the interpreter's lock is free, so that threads of scripts can
/// run.
class Interpreter : public PythonBackend
{
public:
    /// Throws Vs::Exception.
    Interpreter();
    /// A Python that has imported the program: it runs already, has its own streams and signals, and finds
    /// the areas' modules where it has none of that name. `end` is called when it ends, after which no line
    /// runs any more. Held until the process ends. The interpreter is held. Throws
    /// pybind11::error_already_set.
    explicit Interpreter(std::function<void()> end);
    ~Interpreter() override;

    /// The module _quillet.
    const pybind11::object& module() const { return m_held->module; }

    std::wstring runFile(const std::string& path, const std::vector<std::wstring>& arguments,
                         Status& status) override;
    void runStatements(const std::string& path, const ScriptSteps& steps, Status& status) override;
    std::wstring runString(const std::string& code, Status& status) override;
    bool consoleLine(const std::string& line, Status& status) override;
    void abandonConsoleLines() override;
    std::vector<std::string> completions(const std::string& beginning) override;
    void* callCommand(TextCommand& command, void* arguments, void* keywords) override;
    void* makeModule(TextCommandSubjectArea& area) override;
    bool closingDown(Status& status) override;
    int exitCode() const override { return m_exitCode; }

private:
    void makeHeld();
    void makeQuilletModule();
    /// Puts the areas' modules where imports find them.
    void updateModules();
    void defineCommand(ScriptModel::Command command, const std::string& name);
    /// Throws Vs::Exception.
    void runCommand(const std::string& name);
    void end();
    enum class Traceback { Silent, Printed };
    std::wstring run(const std::string& code, const std::string& name, const pybind11::dict& globals,
                     Traceback traceback, Status& status);
    /// Returns whether the error came from within a statement, so that the next one may run.
    bool tell(pybind11::error_already_set& error, const std::string& name, Traceback traceback,
              Status& status);
    pybind11::str runLine(const pybind11::str& line);
    /// Throws pybind11::error_already_set on any thread but the application's main one, and after its end.
    void requireMainThread() const;

    /// Every Python object held here, so that all are released before the interpreter.
    struct Held
    {
        pybind11::object commandError;
        pybind11::object module;
        pybind11::list closingDownFunctions;
        pybind11::dict console; ///< The names of runString and of the prompt.
        Prompt prompt{console};
        bool listens = false;
        pybind11::dict commands; ///< The functions by their names.
        std::unique_ptr<CommandModules> modules;
    };

    ScriptStreams m_streams;
    FunctionDefinitions m_definitions;
    std::unique_ptr<Held> m_held;
    int m_exitCode = 0;
    PyThreadState* m_resting = nullptr;
    std::function<void()> m_end; ///< Where Python isn't the program's own.
    bool m_ended = false;
    std::thread::id m_mainThread = std::this_thread::get_id();
};

} // namespace Vs::Python
