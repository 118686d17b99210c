#pragma once

#include "UI/Commands/CommandRow.h"
#include "UI/Commands/TimedCommand.h"

#include <functional>
#include <string>

namespace Vs {
class Document;
} // namespace Vs

namespace Vu::Commands {

/// Whether this installation has a lifecycle service at all.
[[nodiscard]] bool itemhubIsEnabled();
/// Whether the user is signed in to it.
[[nodiscard]] bool isSignedInToItemhub();
/// The same for commands, which resume the sign-in of the last run, if there is one: in a run without a
/// window nobody can sign in. Errors are reported.
[[nodiscard]] bool itemhubSession();

/// The record of a row whose title has the service's trade name between two texts: those of the row's title
/// key with "1" and "2" appended.
[[nodiscard]] Info itemhubInfo(const CommandRow& row, const char* before, const char* behind);

/// Base of the lifecycle service's definitions: applicable unless it is disabled.
template <class Self, class Cmd, class... Others>
class ItemhubDefinition : public CommandRowDefinition<Self, Cmd, CommandDefinition, Others...>
{
public:
    using CommandRowDefinition<Self, Cmd, CommandDefinition, Others...>::CommandRowDefinition;

protected:
    bool onIsApplicable(CommandContext*) const override { return itemhubIsEnabled(); }
};

/// The argument as a whole number. Throws Vs::Exception, which names the argument, if it isn't one.
[[nodiscard]] int numberArgument(const CommandContext& context, const Vs::UniqueString* name);

/// The display name of a document of the service: the file's name up to its last dot but one ("a.b.ext" is
/// "a"), since what follows only makes the local files unique.
void nameAfterFile(Vs::Document& document, const std::wstring& path);

/// Does the work under the window's wait cursor. Exceptions are reported by
/// ItemhubUtilities::fireErrorMessage and not propagated: with their own message for a Vs::Exception, or
/// otherwise as an unknown error.
void withItemhubErrors(const std::function<void()>& work);

} // namespace Vu::Commands
