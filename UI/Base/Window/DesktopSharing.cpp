#include "UI/Base/Window/DesktopSharing.h"

#include "Server/Base/OS.h"
#include "UI/Base/Program/Application.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusUnixFileDescriptor>
#include <QFile>
#include <QFileInfo>
#include <QMetaType>
#include <QUrl>
#include <QVariantMap>

#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace Vu {
namespace {

using Step = std::function<void()>;

/// In milliseconds. A portal that the first call starts takes seconds on a busy machine, and who gave up
/// before it answers would open a second program.
constexpr int kPatience = 20000;
/// The parent window is passed only if the desktop knows it by a handle, which ours isn't.
const QString kNoWindow;

bool inSandbox()
{
    return QFile::exists(QStringLiteral("/.flatpak-info")) || qEnvironmentVariableIsSet("SNAP");
}

QDBusMessage portal(const char* interface, const char* method)
{
    return QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.portal.Desktop"), QStringLiteral("/org/freedesktop/portal/desktop"),
        QLatin1String("org.freedesktop.portal.") + QLatin1String(interface), QLatin1String(method));
}

/// Takes the next step if there is no answer, or an error.
void call(const QDBusMessage& message, Step otherwise)
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        otherwise();
        return;
    }
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(message, kPatience), qApp);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, qApp,
                     [watcher, otherwise = std::move(otherwise)] {
                         watcher->deleteLater();
                         if (watcher->isError())
                             otherwise();
                     });
}

/// For a portal, which passes it to programs that may not read the path. Invalid if it can't be opened.
QDBusUnixFileDescriptor descriptorOf(const QString& path)
{
    QDBusUnixFileDescriptor descriptor;
    const int file = open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (file >= 0) {
        descriptor.setFileDescriptor(file);
        close(file);
    }
    return descriptor;
}

/// A thread reports the program's end.
Step onMainThread(const Step& failed)
{
    return [failed] { Application::get()->deferredTasks()->post(failed); };
}

void openByProgram(const QString& path, const Step& failed)
{
    if (!Vs::OS::platformShellOpen(path.toStdWString(), onMainThread(failed)))
        failed();
}

void mail(const QString& path, const QString& title, const Step& failed)
{
    if (!inSandbox()) {
        if (!Vs::OS::platformEmail(title.toStdWString(), path.toStdWString(), onMainThread(failed)))
            failed();
        return;
    }
    static const QMetaType known = qDBusRegisterMetaType<QList<QDBusUnixFileDescriptor>>();
    Q_UNUSED(known);
    QDBusMessage message = portal("Email", "ComposeEmail");
    message << kNoWindow
            << QVariantMap{{QStringLiteral("subject"), title},
                           {QStringLiteral("attachment_fds"),
                            QVariant::fromValue(QList<QDBusUnixFileDescriptor>{descriptorOf(path)})}};
    call(message, failed);
}

void openWith(const QString& path, const Step& failed)
{
    QDBusMessage message = portal("OpenURI", "OpenFile");
    message << kNoWindow << QVariant::fromValue(descriptorOf(path))
            << QVariantMap{{QStringLiteral("ask"), true}};
    call(message, [path, failed] { openByProgram(path, failed); });
}

void showInFolder(const QString& path, const Step& failed)
{
    const QString service = QStringLiteral("org.freedesktop.FileManager1");
    QDBusMessage message = QDBusMessage::createMethodCall(
        service, QStringLiteral("/org/freedesktop/FileManager1"), service, QStringLiteral("ShowItems"));
    message << QStringList{QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded)} << QString();
    call(message, [path, failed] { openByProgram(QFileInfo(path).absolutePath(), failed); });
}

} // namespace

void DesktopSharing::share(ShareWith with, const QString& path, const QString& title, Step failed)
{
    switch (with) {
    case ShareWith::Mail:
        mail(path, title, failed);
        break;
    case ShareWith::Program:
        openWith(path, failed);
        break;
    case ShareWith::Folder:
        showInFolder(path, failed);
        break;
    }
}

} // namespace Vu
