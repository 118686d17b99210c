#pragma once

#include <string>

namespace Quillet {

class LineRunner;

/// Runs the lines of standard input until its end. On a terminal it shows a prompt, keeps a history in
/// `historyFile`, completes with Tab, and goes on after a line that failed. Windows stay alive meanwhile.
/// Returns whether the run may go on.
bool runConsole(LineRunner& runner, const std::string& historyFile);

} // namespace Quillet
