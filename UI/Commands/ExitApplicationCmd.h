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

} // namespace Vu::Commands
