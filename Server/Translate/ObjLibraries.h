#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Vs::Translate {

/// For each line of an OBJ file that names its files of colours what these may be: with blanks in it, a line
/// may name one file or several.
std::vector<std::vector<std::string>> objLibraries(std::string_view text);

/// The text with each line that a backslash continues made one, as the kernel reads it; empty if there is
/// none.
std::string joinedObjLines(std::string_view text);

/// Whether the kernel finds no other names in the text than `objLibraries` does. It joins lines in its own
/// way where its buffer ends, and knows more blanks.
bool hasOnlyPlainLibraries(std::string_view text);

} // namespace Vs::Translate
