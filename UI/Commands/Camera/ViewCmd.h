#pragma once

#include "UI/Base/Command/SimpleCommand.h"

namespace Vu::Commands {

/// Sets what the identifier in the argument "CmdId" stands for: one table for all settings of the view. An
/// identifier that the table doesn't know does nothing. Without a view, what is a user's option is still set,
/// and views that are opened later have it.
class ViewCmd : public Vs::Implements<ViewCmd, SimpleCommand>
{
public:
    ECommandType onCommandType() const override;
    EStackingBehavior onStackingBehavior() const override;
    const Vs::UniqueString* onStackingCategory() const override;

protected:
    friend class ViewCmdDefBase;
    friend class ViewMenuCmdDef;
    ViewCmd(CommandDefinition* definition, CommandContext* context);

    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
