#pragma once

#include <QDBusVariant>
#include <QObject>

namespace Vu {

/// Listens to what the desktop's user wants of animations, and hands it on (desktopReducesMotion): as the
/// settings portal tells it, now and whenever it changes; where there is none, as the file says in which
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
