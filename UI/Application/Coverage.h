#pragma once

#include <cstdint>
#include <map>
#include <string>

/// The lines and commands that a run has exercised, as a file of one JSON object per line, sorted by name:
/// {"line":"Design.Box","runs":12} and {"definition":"BoxCommand","runs":15}. Those that never ran have 0.
namespace Quillet::Coverage {

/// The number of runs of each, by the beginnings of the file's lines, which are complete but for the number.
using Runs = std::map<std::string, uint64_t>;

/// Starts counting.
void begin();
/// Writes the counts. Throws Vs::Exception.
void write(const std::string& file);

/// Adds the counts of such a file. A missing one, such as that of a killed run, adds nothing.
void add(const std::string& file, Runs& runs);
/// Throws Vs::Exception.
void write(const std::string& file, const Runs& runs);

} // namespace Quillet::Coverage
