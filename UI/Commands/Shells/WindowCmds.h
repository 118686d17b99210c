#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu {
class WorkspaceWindow;
}

namespace Vu::Commands {

/// Base of the commands on the window: the active command continues meanwhile, and repeat ignores them.
/// Without a window they do nothing.
class OnWindowCmd : public Vs::Implements<OnWindowCmd, SimpleCommand>
{
public:
    OnWindowCmd(CommandDefinition* definition, CommandContext* context);

protected:
    ECommandType onCommandType() const override { return ECommandType::Nested; }
    void onExecute(Vs::Status& status) override;
    virtual void onWindow(WorkspaceWindow& window) = 0;
};

class MinimizeCmd;

class MinimizeCmdDef : public CommandRowDefinition<MinimizeCmdDef, MinimizeCmd>
{
public:
    static const CommandRow kRow;
};

class MinimizeCmd : public Vs::Implements<MinimizeCmd, OnWindowCmd>
{
public:
    using Implements::Implements;

protected:
    void onWindow(WorkspaceWindow& window) override;
};

class ZoomWindowCmd;

/// Maximizes the window, or restores its size.
class ZoomWindowCmdDef : public CommandRowDefinition<ZoomWindowCmdDef, ZoomWindowCmd>
{
public:
    static const CommandRow kRow;
};

class ZoomWindowCmd : public Vs::Implements<ZoomWindowCmd, OnWindowCmd>
{
public:
    using Implements::Implements;

protected:
    void onWindow(WorkspaceWindow& window) override;
};

class BringAllToFrontCmd;

class BringAllToFrontCmdDef : public CommandRowDefinition<BringAllToFrontCmdDef, BringAllToFrontCmd>
{
public:
    static const CommandRow kRow;
};

class BringAllToFrontCmd : public Vs::Implements<BringAllToFrontCmd, OnWindowCmd>
{
public:
    using Implements::Implements;

protected:
    void onWindow(WorkspaceWindow& window) override;
};

class ShowWorkspaceFullScreenCmd;

/// Makes the window fill the screen, without its right toolbar.
class ShowWorkspaceFullScreenCmdDef
    : public CommandRowDefinition<ShowWorkspaceFullScreenCmdDef, ShowWorkspaceFullScreenCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class ShowWorkspaceFullScreenCmd : public Vs::Implements<ShowWorkspaceFullScreenCmd, OnWindowCmd>
{
public:
    using Implements::Implements;

protected:
    void onWindow(WorkspaceWindow& window) override;
};

class ShowWorkspaceNormalCmd;

/// Leaves full screen. The toolbar that full screen hid stays hidden.
class ShowWorkspaceNormalCmdDef
    : public CommandRowDefinition<ShowWorkspaceNormalCmdDef, ShowWorkspaceNormalCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class ShowWorkspaceNormalCmd : public Vs::Implements<ShowWorkspaceNormalCmd, OnWindowCmd>
{
public:
    using Implements::Implements;

protected:
    void onWindow(WorkspaceWindow& window) override;
};

} // namespace Vu::Commands
