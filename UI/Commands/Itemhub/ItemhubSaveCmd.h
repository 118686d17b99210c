#pragma once

#include "UI/Commands/Itemhub/ItemhubCommands.h"

namespace Vu::Commands {

class ItemhubSaveCmd;

/// Saves the document of an item as a version with a label. Arguments: "DocumentSession" (by default the
/// context's), CommandContext::pathArgumentName() and the label, ItemhubNewItemCmdDef::labelArgument(), which
/// a person is asked for.
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
