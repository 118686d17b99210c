#pragma once

#include "UI/Commands/CommandRow.h"
#include "UI/Commands/TimedCommand.h"

#include <functional>
#include <string>

namespace Vs {
class Document;
} // namespace Vs

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

/// The argument as a whole number. Throws Vs::Exception, which names the argument, if it is none.
[[nodiscard]] int numberArgument(const CommandContext& context, const Vs::UniqueString* name);

/// What a person calls a document of the service: the file's name up to its last dot but one ("a.b.ext" is
/// "a"), behind which stands what keeps the local files apart.
void nameAfterFile(Vs::Document& document, const std::wstring& path);

/// Does the work with the wait cursor of the window. What it throws is told by
/// ItemhubUtilities::fireErrorMessage, and goes no further: what a failure of its own says, or, for anything
/// but a Vs::Exception, that something unknown went wrong.
void withItemhubErrors(const std::function<void()>& work);

} // namespace Vu::Commands
