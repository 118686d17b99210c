#pragma once

#include "Server/Base/Metrics.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

#include <functional>
#include <string>

namespace Vs {
class Document;
} // namespace Vs

namespace Vu {
class DocumentSession;
}

namespace Vu::Commands {

/// Whether there is a lifecycle service for this installation at all.
[[nodiscard]] bool itemhubIsEnabled();
/// Whether somebody is signed in to it.
[[nodiscard]] bool isSignedInToItemhub();
/// The same for commands, which go on with what the last run was signed in to, if there is such a session: a
/// run without a window has nobody who would sign in. What is wrong with it is told.
[[nodiscard]] bool itemhubSession();

/// The record of a row whose title has the service's trade name between two texts: those of the row's title
/// key with "1" and "2" behind it.
[[nodiscard]] Info itemhubInfo(const CommandRow& row, const char* before, const char* behind);

/// The base of definitions of the lifecycle service: applicable unless it is disabled.
template <class Self, class Cmd, class... Others>
class ItemhubDefinition : public CommandRowDefinition<Self, Cmd, CommandDefinition, Others...>
{
public:
    using CommandRowDefinition<Self, Cmd, CommandDefinition, Others...>::CommandRowDefinition;

protected:
    bool onIsApplicable(CommandContext*) const override { return itemhubIsEnabled(); }
};

/// The base of its commands: none is offered to be repeated, and each stops a stop watch of its own, which
/// whoever measures starts.
template <class Self>
class ItemhubCommand : public Vs::Implements<Self, SimpleCommand>
{
public:
    ItemhubCommand(CommandDefinition* definition, CommandContext* context)
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

[[nodiscard]] Vs::Metrics::TimeMetric* itemhubMetric(const char* name);

/// The argument as a whole number. Throws Vs::Exception, which names the argument, if it is none.
[[nodiscard]] int numberArgument(const CommandContext& context, const Vs::UniqueString* name);

/// The session of the argument "DocumentSession", else that of the context's asset session; null if there is
/// neither.
[[nodiscard]] DocumentSession* itemhubDocumentSession(const CommandContext& context);

/// What a person calls a document of the service: the file's name up to its last dot but one ("a.b.ext" is
/// "a"), behind which stands what keeps the local files apart.
void nameAfterFile(Vs::Document& document, const std::wstring& path);

/// Does the work with the wait cursor of the window. What it throws is told by
/// ItemhubUtilities::fireErrorMessage, and goes no further: what a failure of its own says, or, for anything
/// but a Vs::Exception, that something unknown went wrong.
void withItemhubErrors(const std::function<void()>& work);

} // namespace Vu::Commands
