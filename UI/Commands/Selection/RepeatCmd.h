#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

class RepeatCmd;

/// Runs the session's last command again, on the current selection. Its button shows that command's name and
/// icon.
class RepeatCmdDef : public CommandRowDefinition<RepeatCmdDef, RepeatCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override { return hasAssetSession(context); }
    void onUpdateInputControl(CommandContext* context) override;
};

class RepeatCmd : public Vs::Implements<RepeatCmd, SimpleCommand>
{
public:
    RepeatCmd(RepeatCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
    ECommandType onCommandType() const override { return ECommandType::Nested; }
};

} // namespace Vu::Commands
