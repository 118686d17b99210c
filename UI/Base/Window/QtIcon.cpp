#include "UI/Base/Window/QtIcon.h"

#include "Server/Base/ResourceMgr.h"

#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QImageReader>
#include <QPainter>
#include <QPalette>

#include <algorithm>
#include <map>
#include <set>

namespace Vu {
namespace {

QImage readPng(QIODevice& device)
{
    QImageReader reader(&device, "png");
    reader.setAutoDetectImageFormat(false);
    return reader.read();
}

/// Qt's own icon for a selected row blends with the highlight, and since most of ours are nearly of its
/// colour, they would be hard to see.
QPixmap onHighlight(QPixmap picture)
{
    constexpr float kShare = 0.65F;
    QColor light = QGuiApplication::palette().color(QPalette::HighlightedText);
    light.setAlphaF(kShare);
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    painter.fillRect(picture.rect(), light);
    return picture;
}

/// Reads from a set of pictures the one that fits the request best, and leaves disabled and selected looks to
/// Qt.
class ImageSetEngine : public QIconEngine
{
public:
    explicit ImageSetEngine(const Vs::ImageSetResource* resource) : m_resource(resource) {}

    QIconEngine* clone() const override { return new ImageSetEngine(*this); }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        const std::wstring file = m_resource->fileForSize(std::max(size.width(), size.height()));
        if (m_read.insert(file).second)
            m_icon.addPixmap(QPixmap::fromImage(pngFromFile(file)));
        return mode == QIcon::Selected ? onHighlight(m_icon.pixmap(size, 1.0, QIcon::Normal, state))
                                       : m_icon.pixmap(size, 1.0, mode, state);
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override
    {
        const double ratio = painter->device() ? painter->device()->devicePixelRatioF() : 1;
        QPixmap picture = pixmap((QSizeF(rect.size()) * ratio).toSize(), mode, state);
        picture.setDevicePixelRatio(ratio);
        QRectF place(QPointF(), picture.deviceIndependentSize());
        place.moveCenter(QRectF(rect).center());
        painter->drawPixmap(place.topLeft(), picture);
    }

private:
    const Vs::ImageSetResource* m_resource;
    std::set<std::wstring> m_read;
    QIcon m_icon;
};

} // namespace

QIcon iconOf(const Vs::ImageSetResource* resource)
{
    if (!resource)
        return {};
    // Many widgets show the same few icons repeatedly. They stay cached until the process ends.
    static auto* const icons = new std::map<const Vs::ImageSetResource*, QIcon>;
    const auto found = icons->find(resource);
    return found != icons->end()
               ? found->second
               : icons->emplace(resource, QIcon(new ImageSetEngine(resource))).first->second;
}

QIcon iconAt(const std::wstring& folder)
{
    if (folder.empty())
        return {};
    static auto* const sets = new std::map<std::wstring, Vs::ImageSetResource>;
    return iconOf(&sets->try_emplace(folder, folder).first->second);
}

QImage pngFromFile(const std::wstring& path)
{
    QFile file(QString::fromStdWString(path));
    return file.open(QIODevice::ReadOnly) ? readPng(file) : QImage();
}

QImage pngFromBytes(const std::string& bytes)
{
    QByteArray raw = QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
    QBuffer buffer(&raw);
    return buffer.open(QIODevice::ReadOnly) ? readPng(buffer) : QImage();
}

} // namespace Vu
