#pragma once

#include "Server/Base/ScriptSteps.h"

#include <string>
#include <vector>

namespace Vs {

class Status;
class TextCommand;
class TextCommandSubjectArea;

/// What the library VsPython10 does for PythonManager and the text commands; kept behind this so that
/// Python's library is loaded by the first script only. All `void*` are `PyObject*`.
class PythonBackend
{
public:
    virtual ~PythonBackend() = default;

    virtual std::wstring runFile(const std::string& path, const std::vector<std::wstring>& arguments,
                                 Status& status) = 0;
    virtual void runStatements(const std::string& path, const ScriptSteps& steps, Status& status) = 0;
    virtual std::wstring runString(const std::string& code, Status& status) = 0;
    virtual bool consoleLine(const std::string& line, Status& status) = 0;
    virtual void abandonConsoleLines() = 0;
    virtual std::vector<std::string> completions(const std::string& beginning) = 0;
    virtual void* callCommand(TextCommand& command, void* arguments, void* keywords) = 0;
    virtual void* makeModule(TextCommandSubjectArea& area) = 0;
    /// Whether the scripts allow the application to close.
    virtual bool closingDown(Status& status) = 0;
    /// Of the script that ended last; see PythonManager.
    virtual int exitCode() const = 0;

    /// The interpreter's library, loaded and started at the first call. Throws Vs::Exception.
    static PythonBackend& get();
    /// The same, or null if nothing has started it.
    static PythonBackend* running();
    /// Ends it, unless it is of a Python that this program is a guest of.
    static void shutdown();
    /// Adopts that of a Python that is already running and has imported this program: it stays until the
    /// process ends, and is not owned.
    static void adopt(PythonBackend* backend);
};

/// The name and type of the library's one export; the caller owns the result.
constexpr const char* kPythonBackendEntry = "makePythonBackend";
using PythonBackendEntry = PythonBackend* (*)();

} // namespace Vs
