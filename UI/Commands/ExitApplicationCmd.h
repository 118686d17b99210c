#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

/// Ends the application, after the handlers and then the scripts have agreed.
class ExitApplicationCmdDef : public RowDefinition<ExitApplicationCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class ExitApplicationCmd : public Vs::Implements<ExitApplicationCmd, SimpleCommand>
{
protected:
    friend class ExitApplicationCmdDef;
    ExitApplicationCmd(ExitApplicationCmdDef* definition, CommandContext* context)
        : Implements(definition, context)
    {
    }

    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
    EStackingBehavior onStackingBehavior() const override;
};

/// The same for the window, after the scripts have agreed. The host asks about what has changed.
class CloseWorkspaceCmdDef : public RowDefinition<CloseWorkspaceCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class CloseWorkspaceCmd : public Vs::Implements<CloseWorkspaceCmd, SimpleCommand>
{
protected:
    friend class CloseWorkspaceCmdDef;
    CloseWorkspaceCmd(CloseWorkspaceCmdDef* definition, CommandContext* context)
        : Implements(definition, context)
    {
    }

    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
    EStackingBehavior onStackingBehavior() const override;
};

} // namespace Vu::Commands
