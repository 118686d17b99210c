#pragma once

#include "Server/Base/Event.h"
#include "Server/Base/ScriptSteps.h"
#include "Server/Base/Status.h"

#include <boost/filesystem/path.hpp>

#include <string>
#include <vector>

namespace Vs {

class TextCommand;
class TextCommandSubjectArea;
class TextOutput;

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
    /// `FILE:LINE: message`; a file that cannot be read and a SyntaxError likewise. It is printed on that
    /// output as well, below the traceback, and the status is marked as reported: callers may drop it.
    /// Returns the text of the script's global `result`, empty if it sets none. Progress::requestCancel
    /// interrupts it. `sys.argv` is the path and the arguments. What it has begun and not ended
    /// (TranscriptMgr::Run) is an error, too.
    std::wstring runScriptFile(const std::wstring& path, Status& status,
                               const std::vector<std::wstring>& arguments = {});
    /// The same for a piece of code; its name in messages is `<string>`. Names that it defines stay for the
    /// next call.
    std::wstring runString(const std::wstring& code, Status& status);
    /// A line typed by a person, with the names of runString; the value of an expression is printed. So are
    /// errors, and only sys.exit counts as one. Returns whether the statement continues on the next line.
    bool consoleLine(const std::wstring& line, Status& status);
    /// Forgets the lines of a statement that goes on.
    void abandonConsoleLines();
    /// What the last word of this beginning of such a line may be.
    [[nodiscard]] std::vector<std::wstring> completions(const std::wstring& beginning);
    /// The same for a file played as a transcript: its statements are run one by one, each may fail by
    /// itself, and reporting its errors is left to the caller.
    void runTranscript(const std::wstring& path, const ScriptSteps& steps, Status& status);
    /// Shows what scripts print, and their errors, beside the output of TextCommandMgr: a part of a window,
    /// which is not owned; null for none.
    void display(TextOutput* display) { m_display = display; }
    TextOutput* display() const { return m_display; }
    /// How the last script file ended: 0 if all went well, the number that it gave to sys.exit, else 1.
    int exitCode() const { return m_exitCode; }
    /// Whether scripts read the program's standard input; else theirs is empty. To be set before the first
    /// script. Default false.
    void readsInput(bool reads) { m_readsInput = reads; }
    bool readsInput() const { return m_readsInput; }
    /// Whether the interpreter runs already.
    [[nodiscard]] bool started() const;
    /// Ends the interpreter, if it runs. Called once, before the add-ins are unloaded.
    void shutdown();

private:
    PythonManager() = default;
    TextOutput* m_display = nullptr;
    int m_exitCode = 0;
    bool m_readsInput = false;
};

/// Scripts and components that want a say before the application closes.
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

    /// Runs the scripts (`.py`) of the folders of `folders`, in the order of their names; those that begin
    /// with `_` are helpers of others. One that fails is reported like any script, and the others run anyway;
    /// the status has what went wrong. One that somebody other than this user and root could have put there
    /// or changed is reported too, and isn't run.
    void run(Status& status);
    /// The program's folder and the user's, who may have none. Either may be missing.
    static std::vector<boost::filesystem::path> folders();

    /// Asks all sites and calls each function that a script registered with `quillet.on_closing_down(f)`; one
    /// that returns False keeps the application running. Returns whether it may close.
    bool fireClosingDown(Status& status);

private:
    PythonAutorunScripts() = default;
};

} // namespace Vs
