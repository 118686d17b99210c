#pragma once

#include "UI/Commands/Cloud/CloudCommands.h"

namespace Vu::Commands {

class CloudSaveAsCmd;

/// Saves the document under a new name on the cloud drive, which the path argument or the person names.
class CloudSaveAsCmdDef : public CloudDefinition<CloudSaveAsCmdDef, CloudSaveAsCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class CloudSaveAsCmd : public TimedCommand<CloudSaveAsCmd>
{
public:
    using TimedCommand::TimedCommand;
    static Vs::Metrics::TimeMetric* metric();

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
