#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace Vs {

/// How execution goes on from where it stands.
enum class ScriptGo {
    Continue, ///< To the next breakpoint, or the end.
    Over,     ///< The next line of the same file or function, or of what has run it.
    Into,     ///< The next line, wherever it is.
    Out,      ///< The next line of what has run the file or called the function.
    ToLine    ///< The given line, or the next breakpoint.
};

/// Runs the script that is loaded in ScriptDebugInfo as somebody at a panel wants it: text and Python, and
/// the transcripts and scripts that it runs in turn.
///
/// A text transcript stands between two of its lines while the program is free for everything else. Within a
/// nested one, and anywhere in Python, the line that runs waits (`pauser`) until the run goes on or is
/// stopped. In Python execution stands at lines of the files that lie in the loaded one's folder or below.
/// Main thread only.
class ScriptDebugger
{
public:
    static ScriptDebugger* get();

    /// Loads a script, to stand at its start. A running one is left alone; returns whether it was loaded.
    [[nodiscard]] bool load(const std::wstring& path);
    /// Runs the loaded script from where it stands, up to where that leads; Python, and a transcript that has
    /// come to its end, from the start. The host is told of failures. A run that waits goes on instead.
    void go(ScriptGo how, int line = 0);
    /// From the start. A run that waits ends, and the new one begins when the caller asks again.
    void rewind();
    /// Ends the run after the present line, inside Python at once; the next one begins at the start.
    void stop();
    /// Whether a run waits within a line.
    bool waits() const { return m_waits; }
    /// Whether it runs or waits.
    bool running() const { return m_runs; }

    /// Whoever shows the script that waits. The observers of ScriptDebugInfo are told of each change above.
    struct Panel
    {
        /// Whether anybody could say how to go on: else nothing waits.
        std::function<bool()> isThere;
        /// Handles events until the function says that it is over.
        std::function<void(const std::function<bool()>& over)> wait;
    };
    void panel(Panel panel) { m_panel = std::move(panel); }

    // For the interpreters.

    /// Around a file that is run, by `go` or from elsewhere: a menu, a line, a dialog. That waits before
    /// lines with breakpoints as well, and what fails is shown where a panel has nothing else to do.
    class [[nodiscard]] File
    {
    public:
        explicit File(const std::wstring& path);
        ~File();
        File(const File&) = delete;
        File& operator=(const File&) = delete;
        /// It ends, because of that line.
        void stopped(int line) { m_line = line; }

    private:
        const std::wstring& m_path;
        const bool m_elsewhere; ///< It is the outermost one, and `go` hasn't run it.
        int m_line = 0;
    };

    /// Around a file that is replayed; with 0, around Python, whose functions enter and leave by themselves.
    class [[nodiscard]] Level
    {
    public:
        explicit Level(int more = 1) : m_before(get()->m_depth) { get()->m_depth += more; }
        ~Level() { get()->m_depth = m_before; }
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;

    private:
        int m_before;
    };
    void enter() { ++m_depth; }
    void leave() { --m_depth; }
    /// Whether somebody has sent the run to this line, at the present level.
    [[nodiscard]] bool leadsTo(const std::wstring& path, int line) const;
    /// Whether the run is to wait before the line; asked once whenever it is reached.
    [[nodiscard]] bool waitsBefore(const std::wstring& path, int line);
    void wait(const std::wstring& path, int line);
    /// Whether execution of Python may stand in that file.
    [[nodiscard]] bool follows(const std::wstring& path) const;

private:
    ScriptDebugger() = default;
    void aim(ScriptGo how, int line);
    void begin(const std::wstring& path);
    void end();
    void runPython(const std::wstring& path);
    void showStopped(const std::wstring& path, int line) const;
    bool panelIsThere() const { return m_panel.isThere && m_panel.isThere(); }

    ScriptGo m_how = ScriptGo::Continue;
    std::wstring m_file; ///< Of the line to which it goes.
    int m_line = 0;
    int m_depth = 0;
    int m_from = 0; ///< The depth at which it stood.
    bool m_runs = false;
    bool m_elsewhere = false; ///< A file is run that `go` hasn't run.
    bool m_waits = false;
    bool m_ends = false;  ///< What waits is to end.
    bool m_first = false; ///< No line of Python has been reached.
    std::wstring m_folder;
    Panel m_panel;
};

} // namespace Vs
