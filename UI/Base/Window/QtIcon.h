#pragma once

#include <QIcon>
#include <QImage>

#include <string>

namespace Vs {
class ImageSetResource;
}

namespace Vu {

/// The icon in all of its sizes; null gives a null icon. Each picture is read when it is first drawn.
[[nodiscard]] QIcon iconOf(const Vs::ImageSetResource* resource);

/// The same for the set of pictures in that folder; none for an empty name.
[[nodiscard]] QIcon iconAt(const std::wstring& folder);

/// A PNG picture, from its file or its bytes; null if it isn't one. Qt's own ways of reading first load the
/// plugins of all other formats, each with its libraries.
[[nodiscard]] QImage pngFromFile(const std::wstring& path);
[[nodiscard]] QImage pngFromBytes(const std::string& bytes);

} // namespace Vu
