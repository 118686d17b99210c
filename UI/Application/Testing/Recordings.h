#pragma once

#include <string>

namespace Quillet {

/// Compares two recordings by the meaning of their lines, and prints the differences as "- FILE:LINE: text"
/// and "+ FILE:LINE: text". Comments, empty lines, the order of flags, unnecessary quotes, names of sessions
/// (Transcripting.Document) and the last digits of numbers are ignored. Returns the exit code: 0 if they are
/// the same, 1 if not, 2 if one can't be read.
int compareRecordings(const std::string& one, const std::string& other);

} // namespace Quillet
