#pragma once

#include <string>

namespace Vs {

/// A text from outside, such as a host or a user, as a part of a folder's name: of letters, digits, dots,
/// underlines and dashes, at most 60. It is neither hidden nor a path elsewhere. Different texts may become
/// the same name: add a hash where that matters.
[[nodiscard]] std::string folderName(std::string text);

} // namespace Vs
