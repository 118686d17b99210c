#pragma once

#include <string>

namespace Vs {
class Status;
namespace Scene {
struct Image;
}
} // namespace Vs

namespace Vu {

/// Of a picture in a file.
struct PictureFormat
{
    std::string name = "png"; ///< "png", "jpg" or "tiff".
    bool keepsTransparency = false;
    int dotsPerInch = 0; ///< With 0, the file says nothing about its size in print.
};

/// Replaces the file as a whole. Returns false with the reason in the status. PNG files are written without
/// Qt's picture code, which takes as long to load as such a file takes to write.
bool writePicture(const Vs::Scene::Image& image, const std::wstring& path, const PictureFormat& format,
                  Vs::Status& status);

} // namespace Vu
