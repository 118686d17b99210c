#pragma once

#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace Vs::Python {

/// Hands what scripts print to the output of text lines, whole lines at a time. Threads of a script may
/// print, too; their output appears when the main thread comes by next.
class ScriptStreams
{
public:
    enum class Kind { Output, Error };

    /// Replaces the standard streams of a Python that is the program's own. The interpreter is held. Throws
    /// pybind11::error_already_set.
    void install();
    void write(Kind kind, const std::string& text);
    /// The rest of an unfinished line, and what threads left. Main thread.
    void flush();

private:
    struct Line
    {
        Kind kind;
        std::string text;
    };
    void collect(Kind kind, const std::string& text);
    void show();

    std::mutex m_mutex;
    std::string m_begun[2]; ///< By kind: an unfinished line.
    std::vector<Line> m_lines;
    std::thread::id m_mainThread = std::this_thread::get_id();
};

} // namespace Vs::Python
