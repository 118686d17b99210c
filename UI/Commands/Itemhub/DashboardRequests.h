#pragma once

#include "Server/Itemhub/ItemhubEvents.h"
#include "UI/Commands/Itemhub/DashboardCommands.h"

#include <string>

namespace Vu::Commands {

/// Does what the service's page in the browser asks for, when nothing else waits for the person: the request
/// is compared with what pages may ask for (DashboardCommands), the person is asked, unless for that service
/// the answer was "Always", and the command runs as one that was clicked. The page is told what came of it.
/// Main thread only.
class DashboardRequests : private Vs::ItemhubEventSite
{
public:
    DashboardRequests();
    ~DashboardRequests() override;
    DashboardRequests(const DashboardRequests&) = delete;
    DashboardRequests& operator=(const DashboardRequests&) = delete;

    /// Whether the pages of the service that somebody is signed in to use the program without a question.
    [[nodiscard]] static bool isTrusted();
    static void trust(bool on);

    /// Follows a link of the form "quillet:ticket/...", by which the page starts the program. What is wrong
    /// with it is told.
    static void follow(const std::string& link);

private:
    void dashboardAsked(Vs::ItemhubDashboardEvent* event) override;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
