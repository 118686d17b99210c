#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

/// Shows name, version and licence of the application.
class AboutBoxCmdDef : public RowDefinition<AboutBoxCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class AboutBoxCmd : public Vs::Implements<AboutBoxCmd, SimpleCommand>
{
protected:
    friend class AboutBoxCmdDef;
    AboutBoxCmd(AboutBoxCmdDef* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
};

} // namespace Vu::Commands
