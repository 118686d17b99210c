#pragma once

#include <QIcon>
#include <QImage>

#include <string>

namespace Vs {
class ImageSetResource;
}

namespace Vu {

/// The icon with all of its sizes; null gives a null icon. Each picture is read when it is first drawn.
[[nodiscard]] QIcon iconOf(const Vs::ImageSetResource* resource);

/// The same, of the set of pictures in that folder; none for an empty name.
[[nodiscard]] QIcon iconAt(const std::wstring& folder);

/// A picture in the PNG format, from its file or from the bytes of one; null if it is none. Qt's own ways of
/// reading load the plugins of all other formats first, each with its libraries.
[[nodiscard]] QImage pngFromFile(const std::wstring& path);
[[nodiscard]] QImage pngFromBytes(const std::string& bytes);

} // namespace Vu
