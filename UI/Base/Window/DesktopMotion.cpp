#include "UI/Base/Window/DesktopMotion.h"

#include "UI/Base/Program/Private/ReducedMotion.h"
#include "UI/Base/Window/DesktopNotifications.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QSettings>
#include <QStandardPaths>

namespace Vu {
namespace {

const QString kService = QStringLiteral("org.freedesktop.portal.Desktop");
const QString kPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString kInterface = QStringLiteral("org.freedesktop.portal.Settings");
const QString kSpace = QStringLiteral("org.gnome.desktop.interface");
const QString kKey = QStringLiteral("enable-animations");

/// The older method wraps the value twice.
QVariant unwrapped(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}

/// If there are several such files, the newer toolkit's takes precedence.
bool fileWantsLess()
{
    for (const QString& toolkit : {QStringLiteral("gtk-4.0"), QStringLiteral("gtk-3.0")}) {
        const QString file = QStandardPaths::locate(QStandardPaths::GenericConfigLocation,
                                                    toolkit + QStringLiteral("/settings.ini"));
        if (file.isEmpty())
            continue;
        const QVariant value =
            QSettings(file, QSettings::IniFormat).value(QStringLiteral("Settings/gtk-enable-animations"));
        if (value.isValid())
            return !value.toBool();
    }
    return false;
}

} // namespace

DesktopMotion::DesktopMotion(QObject* parent) : QObject(parent)
{
    desktopReducesMotion(fileWantsLess());
    if (!DesktopNotifications::hasBus())
        return;
    // The slot is looked up by the names of its parameter types, which aren't registered before the first
    // message.
    qRegisterMetaType<QDBusVariant>();
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.connect(kService, kPath, kInterface, QStringLiteral("SettingChanged"), this,
                     SLOT(settingChanged(QString, QString, QDBusVariant))))
        return;
    QDBusMessage message =
        QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("Read"));
    message << kSpace << kKey;
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* finished) {
        const QDBusPendingReply<QDBusVariant> reply = *finished;
        finished->deleteLater();
        if (!reply.isError())
            settingChanged(kSpace, kKey, reply.value());
    });
}

void DesktopMotion::settingChanged(const QString& space, const QString& key, const QDBusVariant& value)
{
    if (space == kSpace && key == kKey)
        desktopReducesMotion(!unwrapped(value.variant()).toBool());
}

} // namespace Vu
