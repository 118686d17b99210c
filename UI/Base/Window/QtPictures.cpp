// Picture files.

#include "Server/Base/Status.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "UI/Base/Window/QtDisplay.h"

#include <QBuffer>
#include <QImage>
#include <QImageWriter>
#include <QSaveFile>

namespace Vu {
namespace {

/// Uses the pixels of `image`, which must outlive it.
QImage qtImage(const Vs::Scene::Image& image)
{
    return QImage(image.pixels.data(), static_cast<int>(image.width), static_cast<int>(image.height),
                  static_cast<qsizetype>(image.width) * 4, QImage::Format_RGBA8888);
}

} // namespace

bool QtDisplay::readPicture(const std::wstring& path, Vs::Scene::Image& image)
{
    const QImage picture = QImage(QString::fromStdWString(path)).convertToFormat(QImage::Format_RGBA8888);
    if (picture.isNull())
        return false;
    image.width = static_cast<uint32_t>(picture.width());
    image.height = static_cast<uint32_t>(picture.height());
    image.pixels.clear();
    for (int y = 0; y < picture.height(); ++y)
        image.pixels.insert(image.pixels.end(), picture.constScanLine(y),
                            picture.constScanLine(y) + qsizetype(picture.width()) * 4);
    return true;
}

bool QtDisplay::writePicture(const Vs::Scene::Image& image, const std::wstring& path,
                             const std::string& format, bool keepsTransparency, Vs::Status& status)
{
    QImage picture = qtImage(image);
    if (!keepsTransparency)
        picture = picture.convertToFormat(QImage::Format_RGB888);
    // Written beside the old picture and put in its place whole.
    QSaveFile file(QString::fromStdWString(path));
    QString reason;
    if (!file.open(QIODevice::WriteOnly)) {
        reason = file.errorString();
    } else {
        QImageWriter writer(&file, QByteArray::fromStdString(format));
        constexpr int kJpegQuality = 92;
        if (writer.format() == "jpg")
            writer.setQuality(kJpegQuality);
        if (!writer.write(picture))
            reason = writer.errorString();
        else if (!file.commit())
            reason = file.errorString();
    }
    if (reason.isEmpty())
        return true;
    status.addError(L"The picture " + path + L" cannot be written: " + reason.toStdWString());
    return false;
}

std::string QtDisplay::pngOf(const Vs::Scene::Image& image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    return qtImage(image).save(&buffer, "PNG") ? bytes.toStdString() : std::string();
}

} // namespace Vu
