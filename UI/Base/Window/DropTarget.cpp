#include "UI/Base/Window/DropTarget.h"

#include "Server/Base/FilledText.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Window/DroppedFiles.h"
#include "UI/Base/Window/LocalPath.h"

#include <QDragEnterEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QPainter>
#include <QSysInfo>

namespace Vu {
namespace {

constexpr int kInset = 16, kRadius = 16, kThickness = 3;
constexpr int kVeil = 225; // Of 255: what lies below stays visible.

struct Dropped
{
    std::vector<std::wstring> files;
    bool hasOthers = false; ///< Addresses of files not on this computer.
};

/// An address may name the computer; on another one, the same path is another file.
bool isHere(const QUrl& url)
{
    const QString host = url.host();
    return url.isLocalFile() && (host.isEmpty() || host == QLatin1String("localhost") ||
                                 host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0);
}

Dropped droppedIn(const QMimeData& data)
{
    Dropped dropped;
    for (const QUrl& url : data.urls())
        if (isHere(url))
            dropped.files.push_back(pathOf(url));
        else
            dropped.hasOthers = true;
    return dropped;
}

/// Without accessing the disk, which may not respond.
QString textFor(const std::vector<std::wstring>& files)
{
    if (files.size() != 1)
        return QString::fromStdWString(
            Vs::filledText(localized("DropFiles", "Drop to open %1% files"), files.size()));
    const QString name = QFileInfo(QString::fromStdWString(files.front())).fileName();
    return QString::fromStdWString(
        Vs::filledText(localized("DropFile", "Drop to open \"%1%\""), name.toStdWString()));
}

} // namespace

DropTarget::DropTarget(QWidget* window) : QWidget(window)
{
    setObjectName(QStringLiteral("dropTarget"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    window->setAcceptDrops(true);
}

void DropTarget::enter(QDragEnterEvent& event)
{
    // A tile dropped where it came from.
    if (event.source())
        return;
    const Dropped dropped = droppedIn(*event.mimeData());
    if (dropped.files.empty() && !dropped.hasOthers)
        return;
    event.acceptProposedAction();
    if (dropped.files.empty())
        return;
    m_text = textFor(dropped.files);
    setGeometry(parentWidget()->rect());
    raise();
    show();
}

void DropTarget::drop(QDropEvent& event)
{
    hide();
    event.acceptProposedAction();
    const Dropped dropped = droppedIn(*event.mimeData());
    if (dropped.hasOthers)
        Application::get()->inform(
            localized("DropAddress", "What isn't a file on this computer can't be opened from here."));
    openDroppedFiles(dropped.files);
}

void DropTarget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor veil = palette().color(QPalette::Window);
    veil.setAlpha(kVeil);
    painter.fillRect(rect(), veil);
    painter.setPen(QPen(palette().color(QPalette::Highlight), kThickness, Qt::DashLine));
    painter.drawRoundedRect(rect().adjusted(kInset, kInset, -kInset, -kInset), kRadius, kRadius);
    QFont large = font();
    large.setPointSizeF(large.pointSizeF() * 1.8);
    painter.setFont(large);
    painter.setPen(palette().color(QPalette::WindowText));
    const QRect room = rect().adjusted(3 * kInset, kInset, -3 * kInset, -kInset);
    painter.drawText(room, Qt::AlignCenter,
                     QFontMetrics(large).elidedText(m_text, Qt::ElideMiddle, room.width()));
}

} // namespace Vu
