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

    /// How to wait: handles events until the function says that it is over. Empty where nobody could say how
    /// to go on: nothing pauses then.
    void pauser(std::function<void(const std::function<bool()>& over)> wait) { m_wait = std::move(wait); }
    /// Called when one of the states above has changed; empty for nobody.
    void whenChanged(std::function<void()> listener) { m_changed = std::move(listener); }

    // For the interpreters.

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
    void runPython(const std::wstring& path);
    void changed() const;

    ScriptGo m_how = ScriptGo::Continue;
    std::wstring m_file; ///< Of the line to which it goes.
    int m_line = 0;
    int m_depth = 0;
    int m_from = 0; ///< The depth at which it stood.
    bool m_runs = false;
    bool m_waits = false;
    bool m_ends = false;  ///< What waits is to end.
    bool m_first = false; ///< No line of Python has been reached.
    std::wstring m_folder;
    std::function<void(const std::function<bool()>&)> m_wait;
    std::function<void()> m_changed;
};

} // namespace Vs
