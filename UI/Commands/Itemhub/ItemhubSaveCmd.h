#pragma once

#include "UI/Commands/Itemhub/ItemhubCommands.h"

namespace Vu::Commands {

class ItemhubSaveCmd;

/// Saves an item's document as a version with a label. Arguments: "DocumentSession" (by default the
/// context's), CommandContext::pathArgumentName() and the label, ItemhubNewItemCmdDef::labelArgument(); a
/// user is asked for the label if it is missing.
class ItemhubSaveCmdDef : public ItemhubDefinition<ItemhubSaveCmdDef, ItemhubSaveCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext* context) const override;
};

class ItemhubSaveCmd : public TimedCommand<ItemhubSaveCmd>
{
public:
    using TimedCommand::TimedCommand;
    static Vs::Metrics::TimeMetric* metric();

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
