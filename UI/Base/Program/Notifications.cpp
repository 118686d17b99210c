#include "UI/Base/Program/Notifications.h"

#include "Server/Base/Require.h"
#include "Server/Base/Warning.h"
#include "UI/Base/Program/Private/AlertNotifications.h"
#include "UI/Base/Program/Private/ApplicationHost.h"

#include <algorithm>

namespace Vs {
namespace {

constexpr size_t kKept = 100;

}

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
    NotificationRequest request;
    request.title = title;
    request.text = text;
    request.clickText = clickText;
    request.file = file;
    request.clientID = clientID;
    request.type = type;
    request.subject = subject;
    return sendNotification(std::move(request));
}

Notification* NotificationCenter::sendNotification(NotificationRequest request)
{
    assertMainThread();
    while (m_notifications.size() >= kKept)
        remove(m_notifications.front().get());
    Notification* notification =
        m_notifications.emplace_back(std::unique_ptr<Notification>(new Notification(std::move(request))))
            .get();
    NotificationEvent event(notification);
    NotificationsEventSource::get()->fireNotificationSent(&event);
    return exists(notification) ? notification : nullptr;
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

void NotificationCenter::markSeen(Notification* notification)
{
    assertMainThread();
    if (!exists(notification) || notification->m_seen)
        return;
    notification->m_seen = true;
    NotificationEvent event(notification);
    NotificationsEventSource::get()->fireNotificationSeen(&event);
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

void NotificationCenter::removeByClientID(const std::wstring& clientID)
{
    std::vector<Notification*> found;
    notificationsByClientID(clientID, found);
    for (Notification* notification : found)
        remove(notification);
}

void NotificationCenter::removeAboutFile(const std::wstring& clientID, const std::wstring& file)
{
    std::vector<Notification*> found;
    notificationsByClientID(clientID, found);
    for (Notification* notification : found) {
        // A site that is told of one may have removed another.
        if (exists(notification) && notification->file() == file)
            remove(notification);
    }
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

void NotificationCenter::act(Notification* notification, size_t action)
{
    assertMainThread();
    if (!exists(notification) || action >= notification->actions().size())
        return;
    // What it does may end the notification.
    const NotificationAction chosen = notification->actions()[action];
    chosen.run();
    if (chosen.ends)
        remove(notification);
}

} // namespace Vs

namespace Vu {
namespace {

class TellNotifications : public Vs::NotificationsEventSite
{
public:
    TellNotifications() { Vs::NotificationsEventSource::get()->subscribe(this); }
    ~TellNotifications() override { Vs::NotificationsEventSource::get()->unsubscribe(this); }
    void notificationSent(Vs::NotificationEvent* event) override
    {
        const Vs::Notification* notification = event->notification();
        // Who adds an alert tells it as well.
        if (ApplicationHost::get()->mainWidget() ||
            notification->contextInfo()->clientID() == AlertNotifications::clientID())
            return;
        const std::wstring& text = notification->text();
        Vs::warn(notification->title() + (text.empty() ? L"" : L": " + text));
    }
};

} // namespace

Vs::NotificationsEventSite* NotificationsEventSiteFactory::buildEventSite()
{
    return new TellNotifications;
}

} // namespace Vu
