#pragma once

#include <cstdint>
#include <map>
#include <string>

/// Which lines and commands a run has tried, as a file of one JSON object a line, sorted by their names:
/// {"line":"Design.Box","runs":12} and {"definition":"BoxCommand","runs":15}. Those that never ran have 0.
namespace Quillet::Coverage {

/// How often each ran, by the beginnings of the lines: all but the number.
using Runs = std::map<std::string, uint64_t>;

/// Counts from now on.
void begin();
/// Writes what was counted. Throws Vs::Exception.
void write(const std::string& file);

/// What such a file says is added. One that isn't there, as of a run that was killed, adds nothing.
void add(const std::string& file, Runs& runs);
/// Throws Vs::Exception.
void write(const std::string& file, const Runs& runs);

} // namespace Quillet::Coverage
