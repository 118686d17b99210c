#pragma once

#include "UI/Base/Workspace/WorkspaceEvents.h"

namespace Vu::Commands {

/// Gives every workspace the management shell as its default shell, whatever was proposed.
class DefaultShellFactory : public WorkspaceEventSite
{
public:
    DefaultShellFactory();
    DefaultShellFactory(const DefaultShellFactory&) = delete;
    DefaultShellFactory& operator=(const DefaultShellFactory&) = delete;

    void workspaceDefaultShell(WorkspaceShellEvent* event) override;

private:
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
