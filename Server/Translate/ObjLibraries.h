#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Vs::Translate {

/// For each line of an OBJ file that names its material libraries, what these may be: if it contains blanks,
/// a line may name one file or several.
std::vector<std::vector<std::string>> objLibraries(std::string_view text);

/// The text with lines continued by a backslash joined, as the kernel reads it; empty if there are none.
std::string joinedObjLines(std::string_view text);

/// Whether the kernel finds no other names in the text than `objLibraries` does. It joins lines in its own
/// way where its buffer ends, and treats more characters as blanks.
bool hasOnlyPlainLibraries(std::string_view text);

} // namespace Vs::Translate
