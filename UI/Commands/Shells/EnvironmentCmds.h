#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Base/SessionEvents.h"
#include "UI/Commands/CommandRow.h"

#include <memory>
#include <vector>

namespace Vu {
class ListControl;
}

namespace Vu::Commands {

/// Enters an environment, which the user calls a workspace. Its control lists those that the current session
/// can be in, with the one it is in selected.
class ActivateEnvironmentCmdDef : public RowDefinition<ActivateEnvironmentCmdDef, CommandDefinition,
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
    CommandBase* onCreateCommand(CommandContext* context) override;
    InputControl* onInputControl() override;

private:
    void updateListControl(const AssetSession* session);
    void updateActiveEnvironment(const EnvironmentDefinition* environment);
    Info* itemOf(const EnvironmentDefinition* environment);

    /// Of every environment that was ever listed: a menu that is open still shows them.
    std::vector<std::unique_ptr<Info>> m_items;
    std::unique_ptr<ListControl> m_control;
};

class ActivateEnvironmentCmd : public Vs::Implements<ActivateEnvironmentCmd, SimpleCommand>
{
protected:
    friend class ActivateEnvironmentCmdDef;
    ActivateEnvironmentCmd(ActivateEnvironmentCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
};

/// Enters the next environment that the current session can be in; behind the last one comes the first.
class CycleWorkspacesForwardCmdDef : public RowDefinition<CycleWorkspacesForwardCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class CycleWorkspacesForwardCmd : public Vs::Implements<CycleWorkspacesForwardCmd, SimpleCommand>
{
protected:
    friend class CycleWorkspacesForwardCmdDef;
    CycleWorkspacesForwardCmd(CycleWorkspacesForwardCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
};

/// The same backwards.
class CycleWorkspacesBackwardCmdDef : public RowDefinition<CycleWorkspacesBackwardCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class CycleWorkspacesBackwardCmd : public Vs::Implements<CycleWorkspacesBackwardCmd, SimpleCommand>
{
protected:
    friend class CycleWorkspacesBackwardCmdDef;
    CycleWorkspacesBackwardCmd(CycleWorkspacesBackwardCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
};

/// Leaves an environment that was entered on top of another one.
class ReturnToEnvironmentCmdDef : public RowDefinition<ReturnToEnvironmentCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class ReturnToEnvironmentCmd : public Vs::Implements<ReturnToEnvironmentCmd, SimpleCommand>
{
protected:
    friend class ReturnToEnvironmentCmdDef;
    ReturnToEnvironmentCmd(ReturnToEnvironmentCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
