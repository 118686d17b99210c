#pragma once

#include <string>

namespace Vs::Translate {

/// Moves each line break of a text file that is inside a multi-byte character (UTF-8) to after that
/// character; the file keeps its size. Does nothing to a file that can't be opened for that.
void keepCharactersWhole(const std::string& path);

} // namespace Vs::Translate
