#include "UI/Base/Program/Private/AlertNotifications.h"

#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/Private/ApplicationHost.h"

#include <vector>

namespace Vu {
namespace {

Vs::NotificationType typeOf(EAlertSeverity severity)
{
    switch (severity) {
    case EAlertSeverity::Error:
        return Vs::NotificationType::makeByType(Vs::NotificationType::Error);
    case EAlertSeverity::Warning:
        return Vs::NotificationType::makeByType(Vs::NotificationType::Warning);
    default:
        return Vs::NotificationType::makeByType(Vs::NotificationType::Information);
    }
}

} // namespace

AlertNotifications::AlertNotifications()
{
    m_subscriptions.add(AlertEventSource::get(), this);
    m_subscriptions.add(Vs::NotificationsEventSource::get(), this);
}

const std::wstring& AlertNotifications::clientID()
{
    static const std::wstring identifier = L"Alerts";
    return identifier;
}

void AlertNotifications::alertAdded(AlertController* controller, const Alert& alert)
{
    // What is told before the window is there waits for it.
    if (Application::headless() && !ApplicationHost::get()->mainWidget())
        return;
    Vs::NotificationRequest request;
    request.title = alert.text;
    request.clientID = clientID();
    request.type = typeOf(alert.severity);
    // The command's panel shows what blocks it, the status bar mere information.
    request.quiet = alert.blocking || alert.severity == EAlertSeverity::Information;
    if (Vs::Notification* sent = Vs::NotificationCenter::get()->sendNotification(std::move(request)))
        m_origins[sent] = {controller, alert.blocking};
}

void AlertNotifications::alertsCleared(AlertController* controller)
{
    const bool all = controller->alerts().empty();
    std::vector<Vs::Notification*> gone;
    for (const auto& [notification, origin] : m_origins)
        if (origin.controller == controller && (all || origin.blocking))
            gone.push_back(notification);
    for (Vs::Notification* notification : gone)
        Vs::NotificationCenter::get()->remove(notification);
}

void AlertNotifications::notificationRemoved(Vs::NotificationEvent* event)
{
    m_origins.erase(event->notification());
}

} // namespace Vu
