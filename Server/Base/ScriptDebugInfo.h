#pragma once

#include <map>
#include <optional>
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
    /// Those of all files.
    void removeAllBreakPoints();
    /// For the interpreter: whether it has to stop before this line; each break point says so once a pass.
    [[nodiscard]] bool stopsAt(int line);

    /// Brings the file in which execution stands to the front, and the line, counted from 1, that is the
    /// next. A file other than the loaded one, which it runs, has breakpoints of its own, and gives way to
    /// the loaded one in `comeBack`.
    void visit(const std::wstring& path, int line);
    void comeBack();
    /// Loads a script, to stand at its start. The breakpoints of each file are kept.
    void load(const std::wstring& path);
    /// The transcript that was loaded, whichever is at the front.
    const std::wstring& loadedPath() const { return m_behind ? m_behind->path : m_path; }
    /// Whether a breakpoint is on that line of the file.
    [[nodiscard]] bool isBreakPointOf(const std::wstring& path, int line) const;
    [[nodiscard]] bool hasBreakPointsIn(const std::wstring& path) const;
    [[nodiscard]] bool hasAnyBreakPoint() const;
    /// Somebody has inserted so many lines before this one of the file at the front, or removed them from
    /// here on: the marks of the lines behind stay with their texts.
    void linesMoved(int line, int count);

    /// Tells the observers that a run has begun, waits, goes on or has ended.
    void runChanged() { changed(); }

    /// Set while observers are told that the file's text has changed.
    bool needToReload() const { return m_needToReload; }
    void needToReload(bool value);

private:
    friend class IScriptDebugInfoObserver;
    using BreakPoints = std::map<int, bool>; ///< By line, and whether this pass has stopped there.
    struct Behind
    {
        std::wstring path;
        int lines;
        int step;
    };

    void changed();
    const BreakPoints* breakPointsIn(const std::wstring& path) const;
    void turnTo(const std::wstring& path, int lines, int step);

    std::wstring m_path;
    int m_lines = 0;
    int m_step = 0;
    bool m_needToReload = false;
    BreakPoints m_breakPoints;
    std::optional<Behind> m_behind;                    ///< The loaded one while another is at the front.
    std::map<std::wstring, BreakPoints> m_otherPoints; ///< Of the files that aren't at the front.
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
