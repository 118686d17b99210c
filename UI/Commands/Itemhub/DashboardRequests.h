#pragma once

#include "Server/Itemhub/ItemhubEvents.h"
#include "UI/Commands/Itemhub/DashboardCommands.h"

#include <string>

namespace Vu::Commands {

/// Carries out what the service's page in the browser requests, when nothing else is waiting for the user:
/// the request is checked against what pages may ask for (DashboardCommands), the user is asked, unless
/// "Always" was answered for that service, and the command runs as if it had been clicked. The page is told
/// the outcome. Main thread only.
class DashboardRequests : private Vs::ItemhubEventSite
{
public:
    DashboardRequests();
    ~DashboardRequests() override;
    DashboardRequests(const DashboardRequests&) = delete;
    DashboardRequests& operator=(const DashboardRequests&) = delete;

    /// Whether pages of the service that the user is signed in to may use the program without asking.
    [[nodiscard]] static bool isTrusted();
    static void trust(bool on);

    /// Follows a link of the form "quillet:ticket/...", by which the page starts the program. Errors in it
    /// are reported.
    static void follow(const std::string& link);

private:
    void dashboardAsked(Vs::ItemhubDashboardEvent* event) override;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
