#pragma once

#include "Server/Base/Metrics.h"
#include "UI/Base/Command/SimpleCommand.h"

namespace Vu::Commands {

/// The base of commands that talk to a server. None is offered to be repeated, and each stops a stop watch of
/// its own, `Self::metric()`, which whoever measures starts.
template <class Self>
class TimedCommand : public Vs::Implements<Self, SimpleCommand>
{
public:
    TimedCommand(CommandDefinition* definition, CommandContext* context)
        : Vs::Implements<Self, SimpleCommand>(definition, context)
    {
        this->repeatable(false);
    }

protected:
    void onEnd(ETerminationReason reason) override
    {
        Self::metric()->stop();
        SimpleCommand::onEnd(reason);
    }
};

/// A stop watch that is shown by its name. It lives as long as the program.
[[nodiscard]] Vs::Metrics::TimeMetric* timeMetric(const char* name);

} // namespace Vu::Commands
