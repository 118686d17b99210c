#pragma once

#include "Server/Base/Metrics.h"
#include "Server/DataModel/DocumentEvents.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

#include <string>

namespace Vs {
class Document;
}

namespace Vu {
class DocumentSession;
}

namespace Vu::Commands {

/// The record of a row, with the drive's trade name behind a title that ends in a blank.
[[nodiscard]] Info cloudInfo(const CommandRow& row);
[[nodiscard]] bool cloudIsEnabled();

/// The base of definitions of the cloud drive: applicable unless the drive is disabled, and titled with its
/// trade name where the row's title ends in a blank.
template <class Self, class Cmd>
class CloudDefinition : public CommandRowDefinition<Self, Cmd, CommandDefinition, Vs::DocumentEventSite>
{
public:
    static Info* info()
    {
        static Info record = cloudInfo(Self::kRow);
        return &record;
    }
    CloudDefinition() : CommandRowDefinition<Self, Cmd, CommandDefinition, Vs::DocumentEventSite>(info()) {}

protected:
    bool onIsApplicable(CommandContext*) const override { return cloudIsEnabled(); }
};

/// The base of its commands. None is offered to be repeated, and each stops a stop watch of its own, which
/// whoever measures starts.
template <class Self>
class CloudCommand : public Vs::Implements<Self, SimpleCommand>
{
public:
    CloudCommand(CommandDefinition* definition, CommandContext* context)
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

[[nodiscard]] Vs::Metrics::TimeMetric* cloudMetric(const char* name);

/// The session of the argument "DocumentSession", else that of the context's asset session; null if there is
/// neither.
[[nodiscard]] DocumentSession* cloudDocumentSession(const CommandContext& context);

/// Signs in if nobody is, asking at most once for one command.
[[nodiscard]] bool cloudLogin();

/// As "Quillet Design (*.vlra)".
[[nodiscard]] std::wstring cloudFilter(const Vs::Document& document);

} // namespace Vu::Commands
