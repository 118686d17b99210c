#pragma once

#include "Server/Base/TextCommand.h"

namespace Vs {

class TextCommandRegistry;

/// The answer to `help`, `help <area>` and `help <area>.<name>`; `subject` is what follows `help`.
TextCommandResult helpOn(TextCommandRegistry& registry, std::wstring_view subject);

/// The name among `names` that `wrong` was meant to be, or an empty text if none is near.
std::wstring nearestName(std::wstring_view wrong, const std::vector<std::wstring>& names);

/// The answer to a line that begins with the name of no command.
std::wstring unknownCommandMessage(TextCommandRegistry& registry, std::wstring_view word);

/// The answer to a line with a flag that its command doesn't know; `flags` are those that it knows.
std::wstring unknownFlagMessage(const TextCommand& command, std::wstring_view flag,
                                const std::vector<std::wstring>& flags);

/// The answer to a line with more parameters than its command takes; `surplus` is the first of these.
std::wstring surplusMessage(const TextCommand& command, size_t most, std::wstring_view surplus);

} // namespace Vs
