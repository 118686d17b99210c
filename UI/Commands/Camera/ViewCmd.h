#pragma once

#include "UI/Base/Command/SimpleCommand.h"

namespace Vu::Commands {

/// Applies the setting that the identifier in the argument "CmdId" stands for: one table for all settings of
/// the view. An unknown identifier does nothing. Without a view, user options are still set, and apply to
/// views opened later.
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
