#pragma once

#include <string>

namespace Quillet {

class LineRunner;

/// Runs the lines of standard input until its end. On a terminal it shows a prompt, keeps a history in
/// `historyFile`, completes with Tab, and goes on after a line that failed. Windows stay alive meanwhile.
/// Returns whether the run may go on.
bool runConsole(LineRunner& runner, const std::string& historyFile);

/// The same for Python. What comes from a pipe or a file is run as one script.
bool runPythonConsole(LineRunner& runner, const std::string& historyFile);

} // namespace Quillet
