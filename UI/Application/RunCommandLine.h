#pragma once

#include <string>
#include <vector>

namespace Quillet {

/// The whole program, from its command line on: parses it and does what it says. Failures are told on
/// standard error, answers on standard output, which is written out then. Returns the exit code.
int runCommandLine(int count, char** arguments);
int runCommandLine(const std::string& name, const std::vector<std::string>& arguments);

} // namespace Quillet
