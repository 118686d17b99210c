#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

class AboutBoxCmd;

/// Shows name, version and licence of the application.
class AboutBoxCmdDef : public CommandRowDefinition<AboutBoxCmdDef, AboutBoxCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override;
};

class AboutBoxCmd : public Vs::Implements<AboutBoxCmd, SimpleCommand>
{
public:
    AboutBoxCmd(AboutBoxCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override;
};

} // namespace Vu::Commands
