#pragma once

#include <string>

class QImage;

namespace Vs {
class Status;
namespace Scene {
struct Image;
}
} // namespace Vs

/// Pictures, as Display reads, writes and copies them.
namespace Vu::QtPictures {

bool readPicture(const std::wstring& path, Vs::Scene::Image& image);
/// False if there is nothing to take.
bool takePicture(const QImage& from, Vs::Scene::Image& image);
bool writePicture(const Vs::Scene::Image& image, const std::wstring& path, const std::string& format,
                  bool keepsTransparency, int dotsPerInch, Vs::Status& status);
void copyPicture(const Vs::Scene::Image& image);

} // namespace Vu::QtPictures
