#pragma once

#include "Server/Base/Event.h"

#include <string>
#include <vector>

namespace Vs {

/// Listens to messages for the user and shows them. See Vu::NotificationsEventSiteFactory.
class NotificationsEventSite : public EventSite
{
public:
    /// A message to be shown without being answered.
    virtual void notified(const std::wstring& message) = 0;
};

class NotificationsEventSource : public EventSource<NotificationsEventSite>
{
public:
    static NotificationsEventSource* get()
    {
        static auto* const source = new NotificationsEventSource;
        return source;
    }
    void fireNotified(const std::wstring& message)
    {
        forEach([&](NotificationsEventSite* site) { site->notified(message); });
    }
};

} // namespace Vs

namespace Vu {

class NotificationsEventSiteFactory
{
public:
    /// The site that shows notifications in the window's alert list. The caller owns it and deletes it; it
    /// subscribes by itself.
    [[nodiscard]] static Vs::NotificationsEventSite* buildEventSite();
};

} // namespace Vu
