#pragma once

#include <string>

namespace Quillet {

/// Compares two recordings by what their lines mean, and prints what one has and the other hasn't, as
/// "- FILE:LINE: text" and "+ FILE:LINE: text". Comments, empty lines, the order of flags, quotes that aren't
/// needed, names of sessions (Transcripting.Document) and the last digits of numbers mean nothing. Returns
/// the exit code: 0 if they are the same, 1 if not, 2 if one can't be read.
int compareRecordings(const std::string& one, const std::string& other);

} // namespace Quillet
