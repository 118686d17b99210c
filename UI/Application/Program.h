#pragma once

#include "UI/Application/CommandLine.h"

namespace Quillet {

/// Starts the application, does what the command line asks for, and shuts it down again. `count` and
/// `arguments` are those of main. Returns the exit code.
int runProgram(CommandLine line, int& count, char** arguments);

} // namespace Quillet
