#include "UI/Base/Program/Notifications.h"

#include "UI/Base/Program/Application.h"

namespace Vu {
namespace {

class ShowNotifications : public Vs::NotificationsEventSite
{
public:
    ShowNotifications() { Vs::NotificationsEventSource::get()->subscribe(this); }
    ~ShowNotifications() override { Vs::NotificationsEventSource::get()->unsubscribe(this); }
    void notified(const std::wstring& message) override { Application::get()->inform(message); }
};

} // namespace

Vs::NotificationsEventSite* NotificationsEventSiteFactory::buildEventSite()
{
    return new ShowNotifications;
}

} // namespace Vu
