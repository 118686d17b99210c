#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Quillet {

/// A console on a terminal: prompt, line editing, history and completion. The line editor is in a library of
/// its own, which is opened only there.
struct Terminal
{
    std::string historyFile; ///< Empty keeps none.
    /// Waits for input; false ends the console.
    std::function<bool()> wait;
    /// Answers the line as the history may keep it: without the secrets that it signed in with.
    std::function<std::string(const std::string& line)> run;
    /// What the last word of this beginning of a line may be.
    std::function<std::vector<std::string>(const std::string& beginning)> complete;
    /// Asked before each line.
    std::function<const char*()> prompt;
    bool ended = false; ///< Set within `run`, it ends the console.
};

} // namespace Quillet

/// Returns at the end of the input. One at a time.
extern "C" void quilletRunTerminal(const Quillet::Terminal& terminal);
