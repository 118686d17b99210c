#pragma once

#include "Server/Base/Status.h"

#include <string>
#include <vector>

namespace Vu {

class CommandContext;

/// Whether the context has no other arguments than the known ones. The first other one is told, with the name
/// that was probably meant: a command that ignored it would do something else than what was asked for.
/// `title` is what the command is called.
[[nodiscard]] bool hasOnlyKnownArguments(const CommandContext& context, const std::wstring& title,
                                         const std::vector<std::wstring>& known, Vs::Status& status);

} // namespace Vu
