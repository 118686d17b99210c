#pragma once

#include <QDBusVariant>
#include <QObject>

namespace Vu {

/// Follows the desktop user's preference for animations and passes it on (desktopReducesMotion): as the
/// settings portal reports it, now and on every change; without a portal, as set in the file in which
/// desktops keep it for their programs (`gtk-enable-animations`).
class DesktopMotion : public QObject
{
    Q_OBJECT

public:
    explicit DesktopMotion(QObject* parent);

private slots:
    void settingChanged(const QString& space, const QString& key, const QDBusVariant& value);
};

} // namespace Vu
