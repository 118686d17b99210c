#pragma once

#include "Server/Base/Python/CommandModules.h"
#include "Server/Base/Python/ScriptStreams.h"
#include "Server/Base/PythonBackend.h"

#include <memory>
#include <pybind11/pybind11.h>
#include <string>

namespace Vs::Python {

/// CPython inside this process. Between calls the interpreter's lock is free, so that threads of scripts go
/// on.
class Interpreter : public PythonBackend
{
public:
    /// Throws Vs::Exception.
    Interpreter();
    ~Interpreter() override;

    std::wstring runFile(const std::string& path, Status& status) override;
    std::wstring runString(const std::string& code, Status& status) override;
    void* callCommand(TextCommand& command, void* arguments, void* keywords) override;
    void* makeModule(TextCommandSubjectArea& area) override;
    bool closingDown(Status& status) override;

private:
    void prepare();
    void makeQuilletModule();
    std::wstring run(const std::string& code, const std::string& name, const pybind11::dict& globals,
                     Status& status);

    /// Every Python object that is held here, so that all go before the interpreter does.
    struct Held
    {
        pybind11::object commandError;
        pybind11::list closingDownFunctions;
        pybind11::dict console; ///< The names of runString.
        std::unique_ptr<CommandModules> modules;
    };

    ScriptStreams m_streams;
    std::unique_ptr<Held> m_held;
    PyThreadState* m_resting = nullptr;
};

} // namespace Vs::Python
