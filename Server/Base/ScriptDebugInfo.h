#pragma once

#include <map>
#include <string>
#include <vector>

namespace Vs {

class IScriptDebugInfoObserver;

/// What the debugger of text transcripts shares with the interpreter: the loaded transcript, the current line
/// of its execution, and where it should stop. Each change is reported to the observers. Main thread only.
class ScriptDebugInfo
{
public:
    /// Empty if none is loaded.
    const std::wstring& scriptPath() const { return m_path; }
    void scriptPath(const std::wstring& path);

    /// How many lines it has, as whoever shows it has counted them.
    int scriptLines() const { return m_lines; }
    void scriptLines(int lines);

    /// How many lines have been executed: 0 at the start of the script.
    int stepLine() const { return m_step; }
    void stepLine(int line);
    /// Whether the line, counted from 1, is the next to be executed.
    bool isStepLine(int line) const { return line == m_step + 1; }

    /// Lines are counted from 1; execution stops before it runs one with a break point.
    void addBreakPoint(int line);
    void removeBreakPoint(int line);
    bool isBreakPoints(int line) const { return m_breakPoints.contains(line); }
    /// Starts a new pass, which stops at each of them again.
    void resetBreakPoints();
    void removeAllBreakPoints();
    /// For the interpreter: whether it has to stop before this line; each break point says so once a pass.
    [[nodiscard]] bool stopsAt(int line);

    /// Set while observers are told that the file's text has changed.
    bool needToReload() const { return m_needToReload; }
    void needToReload(bool value);

private:
    friend class IScriptDebugInfoObserver;
    void changed();

    std::wstring m_path;
    int m_lines = 0;
    int m_step = 0;
    bool m_needToReload = false;
    std::map<int, bool> m_breakPoints; ///< By line, and whether this pass has stopped there.
    std::vector<IScriptDebugInfoObserver*> m_observers;
};

/// Is notified of each change of TranscriptMgr's debug info from its construction to its destruction.
class IScriptDebugInfoObserver
{
public:
    IScriptDebugInfoObserver();
    IScriptDebugInfoObserver(const IScriptDebugInfoObserver&) = delete;
    IScriptDebugInfoObserver& operator=(const IScriptDebugInfoObserver&) = delete;
    virtual ~IScriptDebugInfoObserver();

    virtual void onScriptDebugInfoChanged() = 0;

protected:
    /// Null where there is no debugger.
    ScriptDebugInfo* scriptDebugInfo() const;
};

} // namespace Vs
