#pragma once

#include <functional>
#include <string>
#include <vector>

namespace Quillet {

/// A console on a terminal: prompt, line editing, history and completion. The line editor is in a separate
/// library, which is only loaded there.
struct Terminal
{
    std::string historyFile; ///< Empty keeps none.
    /// Waits for input; false ends the console.
    std::function<bool()> wait;
    /// Returns the line as it may go into the history: without the secrets that it signed in with.
    std::function<std::string(const std::string& line)> run;
    /// The possible completions of the last word of this beginning of a line.
    std::function<std::vector<std::string>(const std::string& beginning)> complete;
    /// Asked before each line.
    std::function<const char*()> prompt;
    bool ended = false; ///< If set within `run`, it ends the console.
};

} // namespace Quillet

/// Returns at the end of the input. Only one at a time.
extern "C" void quilletRunTerminal(const Quillet::Terminal& terminal);
