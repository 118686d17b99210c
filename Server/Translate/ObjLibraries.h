#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Vs::Translate {

/// A line of an OBJ file that names its files of colours.
struct ObjLibraryLine
{
    size_t begin = 0, size = 0; ///< The place of the names in the text.
    /// What they may be: with blanks in it, a line may name one file or several.
    std::vector<std::string> names;
};

std::vector<ObjLibraryLine> objLibraryLines(std::string_view text);

/// The text with each line that a backslash continues made one, as the kernel reads it; empty if there is
/// none.
std::string joinedObjLines(std::string_view text);

} // namespace Vs::Translate
