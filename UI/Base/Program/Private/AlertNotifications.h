#pragma once

#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Program/Notifications.h"

#include <map>
#include <string>

namespace Vu {

/// Puts the alerts of all commands among the notifications, as long as there is a window to show them, and
/// takes away those that no longer stand. Private to the host; main thread only.
class AlertNotifications : private AlertEventSite, private Vs::NotificationsEventSite
{
public:
    AlertNotifications();

    /// The sender of these notifications.
    static const std::wstring& clientID();

private:
    void alertAdded(AlertController* controller, const Alert& alert) override;
    void alertsCleared(AlertController* controller) override;
    void notificationRemoved(Vs::NotificationEvent* event) override;

    struct Origin
    {
        const AlertController* controller;
        bool blocking;
    };
    std::map<Vs::Notification*, Origin> m_origins;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
