#pragma once

#include "Server/Base/Event.h"
#include "Server/Base/Status.h"

#include <string>
#include <vector>

namespace Vs {

class TextCommand;
class TextCommandSubjectArea;

/// The embedded interpreter. It is started by the first script; a run without one pays nothing for it.
///
/// `import quillet` gives the model as objects; it is a package beside this library, made of text lines.
///
/// In a script every subject area is a module (`import Camera`), and every text command a function of it. A
/// function takes the parameters of the line as str, int or float (None is left out), and the flags as
/// keywords: `Asset.Create(kind, Hidden=True)` gives `/Hidden`. It returns the message, and raises
/// `quillet.CommandError`, a RuntimeError, with the reason when the command fails.
///
/// Main thread only; a script's other threads cannot call text commands.
class PythonManager
{
public:
    static PythonManager* get();

    /// Runs the file as `__main__`, its own folder first on the search path. What it prints goes to the
    /// output of TextCommandMgr, line by line. An exception that leaves the script becomes one error,
    /// `FILE:LINE: message`; a file that cannot be read and a SyntaxError likewise. It is told on that output
    /// as well, below the traceback, and the status marked as reported: callers may drop it. Returns the text
    /// of the script's global `result`, empty if it sets none. Progress::requestCancel interrupts it.
    /// `sys.argv` is the path and the arguments.
    std::wstring runScriptFile(const std::wstring& path, Status& status,
                               const std::vector<std::wstring>& arguments = {});
    /// The same for a piece of code; its name in messages is `<string>`. Names that it defines stay for the
    /// next call.
    std::wstring runString(const std::wstring& code, Status& status);
    /// Whether the interpreter runs already.
    bool started() const;
    /// Ends the interpreter, if it runs. Called once, before the add-ins go.
    void shutdown();

private:
    PythonManager() = default;
};

/// Scripts and parts that want a word before the application closes.
class PythonAutorunEventSite : public EventSite
{
public:
    /// Returns false, with the reason in the status, to keep the application running.
    virtual bool closingDown(Status& status) = 0;
};

class PythonAutorunScripts : public EventSource<PythonAutorunEventSite>
{
public:
    static PythonAutorunScripts* get();

    /// Asks all sites and calls each function that a script registered with `quillet.on_closing_down(f)`; one
    /// that returns False keeps the application running. Returns whether it may close.
    bool fireClosingDown(Status& status);

private:
    PythonAutorunScripts() = default;
};

} // namespace Vs
