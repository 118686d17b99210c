#pragma once

#include <string>
#include <vector>

namespace Vs::Translate {

// A file may refer to others in its own folder and below. Whatever else it names isn't read; otherwise a file
// sent by a stranger could read the recipient's secrets.

/// Whether the other file is in the folder of the first one or below it, after resolving links.
bool liesBeside(const std::string& file, const std::string& other);

/// What must be readable for the files that this one may refer to: its folder, or, if that is or contains the
/// user's home, only the files in it that aren't hidden.
std::vector<std::string> placesBeside(const std::string& file);

/// The message about a reference to another place.
std::string refusalOf(const std::string& other);

} // namespace Vs::Translate
