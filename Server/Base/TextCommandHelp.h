#pragma once

#include "Server/Base/TextCommand.h"

namespace Vs {

class TextCommandRegistry;

/// The answer to `help`, `help <area>` and `help <area>.<name>`; `subject` is what stands behind `help`.
TextCommandResult helpOn(TextCommandRegistry& registry, std::wstring_view subject);

/// The answer to a line that begins with the name of no command.
std::wstring unknownCommandMessage(TextCommandRegistry& registry, std::wstring_view word);

} // namespace Vs
