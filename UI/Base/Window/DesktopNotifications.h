#pragma once

#include "UI/Base/Program/Notifications.h"

#include <QObject>
#include <QString>

#include <map>
#include <vector>

class QDBusPendingCallWatcher;

namespace Vu {

/// Passes notifications on to the desktop (org.freedesktop.Notifications on the session bus) while no window
/// of the program is active. A click there does the same as a click here, and brings the window to the front.
/// Without a bus or a notification service nothing happens. It never waits for an answer.
class DesktopNotifications : public QObject, private Vs::NotificationsEventSite
{
    Q_OBJECT

public:
    explicit DesktopNotifications(QObject* parent);

    /// Whether the address of a session bus is set; looking for one by other means might start one.
    [[nodiscard]] static bool hasBus();

private slots:
    void actionInvoked(uint number, const QString& key);
    void closed(uint number, uint reason);

private:
    void notificationSent(Vs::NotificationEvent* event) override;
    void notificationRemoved(Vs::NotificationEvent* event) override;
    void notificationSeen(Vs::NotificationEvent* event) override { notificationRemoved(event); }

    bool connectToBus();
    void askCapabilities();
    void send(Vs::Notification* notification);
    void withdraw(uint number);
    void answered(QDBusPendingCallWatcher* watcher, Vs::Notification* notification);

    enum class State { Unknown, Asking, Ready, None };
    State m_state = State::Unknown;
    bool m_takesMarkup = false;
    bool m_takesActions = false;
    bool m_wasActive = false;                 ///< Before the first time the user can't have gone elsewhere.
    std::vector<Vs::Notification*> m_waiting; ///< For the capabilities.
    std::vector<Vs::Notification*> m_sending; ///< Their numbers aren't known yet.
    std::map<uint, Vs::Notification*> m_shown;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
