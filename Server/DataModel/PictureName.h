#pragma once

#include <cstdint>
#include <string>

namespace Vs {

/// The folder within the program's cache that keeps pictures of foreign files.
constexpr const char* kPictureFolder = "pictures";

/// What the picture of a foreign file is called there: by its path, and as the file was then. `modified` in
/// seconds. Needs nothing else of this library, so that programs which show pictures can have it for
/// themselves.
[[nodiscard]] std::string pictureName(const std::string& path, int64_t modified, uint64_t size);
/// The part of such a name that tells the path alone.
[[nodiscard]] std::string pictureStem(const std::string& path);

} // namespace Vs
