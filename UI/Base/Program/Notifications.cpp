#include "UI/Base/Program/Notifications.h"

#include "Server/Base/Require.h"
#include "UI/Base/Program/Application.h"

#include <algorithm>

namespace Vs {

NotificationCenter* NotificationCenter::get()
{
    static auto* const center = new NotificationCenter;
    return center;
}

Notification* NotificationCenter::sendNotification(const std::wstring& title, const std::wstring& text,
                                                   const std::wstring& clickText, const std::wstring& file,
                                                   const std::wstring& clientID, NotificationType type,
                                                   Object* subject)
{
    assertMainThread();
    Notification* notification =
        m_notifications.emplace_back(new Notification(title, text, clickText, file, clientID, type, subject))
            .get();
    NotificationEvent event(notification);
    NotificationsEventSource::get()->fireNotificationSent(&event);
    return notification;
}

bool NotificationCenter::exists(const Notification* notification) const
{
    return std::any_of(m_notifications.begin(), m_notifications.end(),
                       [&](const auto& each) { return each.get() == notification; });
}

void NotificationCenter::notificationsByClientID(const std::wstring& clientID,
                                                 std::vector<Notification*>& found) const
{
    for (const auto& each : m_notifications)
        if (each->contextInfo()->clientID() == clientID)
            found.push_back(each.get());
}

std::vector<Notification*> NotificationCenter::notifications() const
{
    std::vector<Notification*> all;
    for (auto each = m_notifications.rbegin(); each != m_notifications.rend(); ++each)
        all.push_back(each->get());
    return all;
}

void NotificationCenter::remove(Notification* notification)
{
    assertMainThread();
    if (!exists(notification))
        return;
    NotificationEvent event(notification);
    NotificationsEventSource::get()->fireNotificationRemoved(&event);
    // A site may have been quicker.
    std::erase_if(m_notifications, [&](const auto& each) { return each.get() == notification; });
}

void NotificationCenter::activate(Notification* notification)
{
    assertMainThread();
    if (!exists(notification))
        return;
    ActivateNotificationEvent event(notification);
    NotificationsEventSource::get()->fireOnActivateNotification(&event);
    if (event.handled())
        remove(notification);
}

} // namespace Vs

namespace Vu {
namespace {

class ShowNotifications : public Vs::NotificationsEventSite
{
public:
    ShowNotifications() { Vs::NotificationsEventSource::get()->subscribe(this); }
    ~ShowNotifications() override { Vs::NotificationsEventSource::get()->unsubscribe(this); }
    void notificationSent(Vs::NotificationEvent* event) override
    {
        const Vs::Notification* notification = event->notification();
        Application::get()->inform(notification->title() + L": " + notification->text());
    }
};

} // namespace

Vs::NotificationsEventSite* NotificationsEventSiteFactory::buildEventSite()
{
    return new ShowNotifications;
}

} // namespace Vu
