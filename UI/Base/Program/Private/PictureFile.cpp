#include "UI/Base/Program/Private/PictureFile.h"

#include "Server/Base/QtText.h"
#include "Server/Base/Status.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "Server/Scene/PngWriter.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Private/Display.h"

#include <QSaveFile>

namespace Vu {
namespace {

/// Returns the reason if that fails.
std::wstring writePngFile(const Vs::Scene::Image& image, const std::wstring& path,
                          const PictureFormat& format)
{
    // Written beside the old picture and moved into its place once complete.
    QSaveFile file(QString::fromStdWString(path));
    if (!file.open(QIODevice::WriteOnly))
        return Vs::wideText(file.errorString());
    bool partly = false;
    const bool written = Vs::Scene::writePng(image, {format.keepsTransparency, format.dotsPerInch},
                                             [&](const char* bytes, size_t count) {
                                                 const qint64 taken = file.write(bytes, qint64(count));
                                                 partly = taken >= 0 && taken < qint64(count);
                                                 return taken == qint64(count);
                                             });
    if (partly)
        return localized("PictureIncomplete", "only a part of it could be written to the disk");
    return written && file.commit() ? std::wstring() : Vs::wideText(file.errorString());
}

} // namespace

bool writePicture(const Vs::Scene::Image& image, const std::wstring& path, const PictureFormat& format,
                  Vs::Status& status)
{
    if (format.name != "png")
        return Display::get()->writePicture(image, path, format.name, format.keepsTransparency,
                                            format.dotsPerInch, status);
    const std::wstring reason = writePngFile(image, path, format);
    if (!reason.empty())
        status.addError(L"The picture " + path + L" cannot be written: " + reason);
    return reason.empty();
}

} // namespace Vu
