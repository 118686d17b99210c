#pragma once

#include "UI/Base/Program/Notifications.h"

#include <QObject>
#include <QTimer>

#include <vector>

class QMainWindow;

namespace Vu {

class NotificationRow;

/// Shows new notifications at the lower right of the window, above everything else, without taking the focus.
/// A toast disappears after some time during which the window was active and the pointer not on it; an error
/// stays until it is closed or seen in the list.
class ToastStack : public QObject, private Vs::NotificationsEventSite
{
public:
    explicit ToastStack(QMainWindow* window);

    /// The oldest first.
    const std::vector<NotificationRow*>& toasts() const { return m_toasts; }

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void notificationSent(Vs::NotificationEvent* event) override;
    void notificationSeen(Vs::NotificationEvent* event) override { take(event->notification()); }
    void notificationRemoved(Vs::NotificationEvent* event) override { take(event->notification()); }

    void take(const Vs::Notification* notification);
    int freeBottom(const QRect& column) const;
    void place();
    void tick();

    QMainWindow* m_window;
    std::vector<NotificationRow*> m_toasts;
    QTimer m_tick, m_placeTimer;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
