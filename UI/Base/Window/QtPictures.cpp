#include "UI/Base/Window/QtPictures.h"

#include "Server/Base/Status.h"
#include "Server/Scene/OffscreenRenderer.h"
#include "UI/Base/Command/Private/Localized.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QImageWriter>
#include <QSaveFile>

#include <cmath>

namespace Vu {
namespace {

/// Uses the pixels of `image`, which must outlive it. Without transparency the fourth byte of a pixel is
/// skipped as the rows are written, so that a large picture is never in memory twice.
QImage qtImage(const Vs::Scene::Image& image, bool transparent = true)
{
    return QImage(image.pixels.data(), static_cast<int>(image.width), static_cast<int>(image.height),
                  static_cast<qsizetype>(image.width) * 4,
                  transparent ? QImage::Format_RGBA8888 : QImage::Format_RGBX8888);
}

/// A file that remembers failed writes. The writers of some formats flush their last bytes where they can't
/// report errors any more, and report success for a broken picture.
class CheckedFile : public QSaveFile
{
public:
    using QSaveFile::QSaveFile;

    bool complete() const { return m_complete; }

protected:
    qint64 writeData(const char* data, qint64 size) override
    {
        const qint64 taken = QSaveFile::writeData(data, size);
        m_complete = m_complete && taken == size;
        return taken;
    }

private:
    bool m_complete = true;
};

} // namespace

bool QtPictures::readPicture(const std::wstring& path, Vs::Scene::Image& image)
{
    return takePicture(QImage(QString::fromStdWString(path)), image);
}

bool QtPictures::takePicture(const QImage& from, Vs::Scene::Image& image)
{
    const QImage picture = from.convertToFormat(QImage::Format_RGBA8888);
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

bool QtPictures::writePicture(const Vs::Scene::Image& image, const std::wstring& path,
                              const std::string& format, bool keepsTransparency, int dotsPerInch,
                              Vs::Status& status)
{
    QImage picture = qtImage(image, keepsTransparency);
    if (dotsPerInch > 0) {
        constexpr double kInchesPerMetre = 1000 / 25.4;
        const int dotsPerMetre = static_cast<int>(std::lround(dotsPerInch * kInchesPerMetre));
        picture.setDotsPerMeterX(dotsPerMetre);
        picture.setDotsPerMeterY(dotsPerMetre);
    }
    // Written beside the old picture and moved into its place once complete.
    CheckedFile file(QString::fromStdWString(path));
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
        else if (!file.flush() || !file.complete())
            reason = QString::fromStdWString(
                localized("PictureIncomplete", "only a part of it could be written to the disk"));
        else if (!file.commit())
            reason = file.errorString();
    }
    if (reason.isEmpty())
        return true;
    status.addError(L"The picture " + path + L" cannot be written: " + reason.toStdWString());
    return false;
}

void QtPictures::copyPicture(const Vs::Scene::Image& image)
{
    // The clipboard keeps it, so it needs a copy of the pixels.
    QGuiApplication::clipboard()->setImage(qtImage(image).copy());
}

} // namespace Vu
