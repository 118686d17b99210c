#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Base/Session/SessionEvents.h"
#include "UI/Commands/CommandRow.h"

#include <memory>
#include <vector>

namespace Vu {
class ListControl;
}

namespace Vu::Commands {

class ActivateEnvironmentCmd;

/// Enters an environment, which the user calls a workspace. Its control lists those available to the current
/// session, with its present one selected.
class ActivateEnvironmentCmdDef
    : public CommandRowDefinition<ActivateEnvironmentCmdDef, ActivateEnvironmentCmd, CommandDefinition,
                                  IListControlHandler, SessionEventSite>
{
public:
    static const CommandRow kRow;

    ActivateEnvironmentCmdDef();
    ~ActivateEnvironmentCmdDef() override;

    /// The text argument that names the environment by its identifier.
    static const Vs::UniqueString* environmentTypeArgumentName();

    void onListSelectionChanged(Info* item) override;
    void currentSessionChanged(SessionEvent* event) override;
    void sessionPostActivateForAsset(SessionEvent* event) override;
    void environmentActivated(EnvironmentEvent* event) override;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    InputControl* onInputControl() override;

private:
    void updateListControl(const AssetSession* session);
    void updateActiveEnvironment(const EnvironmentDefinition* environment);
    Info* itemOf(const EnvironmentDefinition* environment);

    /// For every environment ever listed: an open menu still shows them.
    std::vector<std::unique_ptr<Info>> m_items;
    std::unique_ptr<ListControl> m_control;
    Vs::Subscriptions m_subscriptions;
};

class ActivateEnvironmentCmd : public Vs::Implements<ActivateEnvironmentCmd, SimpleCommand>
{
public:
    ActivateEnvironmentCmd(ActivateEnvironmentCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

class CycleWorkspacesForwardCmd;

/// Enters the next environment available to the current session, wrapping from the last to the first.
class CycleWorkspacesForwardCmdDef
    : public CommandRowDefinition<CycleWorkspacesForwardCmdDef, CycleWorkspacesForwardCmd>
{
public:
    static const CommandRow kRow;
};

class CycleWorkspacesForwardCmd : public Vs::Implements<CycleWorkspacesForwardCmd, SimpleCommand>
{
public:
    CycleWorkspacesForwardCmd(CycleWorkspacesForwardCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

class CycleWorkspacesBackwardCmd;

/// The same backwards.
class CycleWorkspacesBackwardCmdDef
    : public CommandRowDefinition<CycleWorkspacesBackwardCmdDef, CycleWorkspacesBackwardCmd>
{
public:
    static const CommandRow kRow;
};

class CycleWorkspacesBackwardCmd : public Vs::Implements<CycleWorkspacesBackwardCmd, SimpleCommand>
{
public:
    CycleWorkspacesBackwardCmd(CycleWorkspacesBackwardCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

class ReturnToEnvironmentCmd;

/// Leaves an environment that was entered on top of another one.
class ReturnToEnvironmentCmdDef
    : public CommandRowDefinition<ReturnToEnvironmentCmdDef, ReturnToEnvironmentCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class ReturnToEnvironmentCmd : public Vs::Implements<ReturnToEnvironmentCmd, SimpleCommand>
{
public:
    ReturnToEnvironmentCmd(ReturnToEnvironmentCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
