#pragma once

#include <string>
#include <vector>

namespace Vs::Translate {

// A file may refer to others in its own folder and below that. Whatever else it names isn't read, since one
// who sends somebody a file would have his secrets read by it.

/// Whether the other file lies in the folder of the first one or below it, wherever links lead.
bool liesBeside(const std::string& file, const std::string& other);

/// What must be readable for the files that this one may refer to: its folder, or where that is or holds the
/// user's home only the files that lie in it and aren't hidden.
std::vector<std::string> placesBeside(const std::string& file);

/// What to say of a reference to another place.
std::string refusalOf(const std::string& other);

} // namespace Vs::Translate
