#pragma once

#include "UI/Base/Program/Notifications.h"

#include <QToolButton>

namespace Vu {

class NotificationPanel;
class ProgressPanel;

/// Shows in the status bar how many notifications the user hasn't seen yet, and lists all of them when
/// clicked or opened by its shortcut.
class BellButton : public QToolButton, private Vs::NotificationsEventSite
{
public:
    /// `progress` outlives the button.
    BellButton(ProgressPanel* progress, QWidget* parent);

    NotificationPanel* panel() const { return m_panel; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void notificationSent(Vs::NotificationEvent*) override { draw(); }
    void notificationSeen(Vs::NotificationEvent*) override { draw(); }
    void notificationRemoved(Vs::NotificationEvent* event) override { draw(event->notification()); }

    void draw(const Vs::Notification* going = nullptr);

    NotificationPanel* m_panel;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
