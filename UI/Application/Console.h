#pragma once

#include <string>

namespace Quillet {

class LineRunner;

/// Runs the lines of standard input until its end. On a terminal it shows a prompt, keeps a history in
/// `historyFile`, completes with Tab, and continues after a failed line. Windows stay alive meanwhile.
/// Returns whether the run may continue.
bool runConsole(LineRunner& runner, const std::string& historyFile);

/// The same for Python. Input from a pipe or a file is run as a single script.
bool runPythonConsole(LineRunner& runner, const std::string& historyFile);

} // namespace Quillet
