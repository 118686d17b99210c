#pragma once

#include "UI/Base/Command/CommandContext.h"

#include <functional>
#include <string>

namespace Vu {

class CommandDefinition;

/// An action for when a person starts a command by hand (a button, keys, a menu) and more is wanted than the
/// command itself does; lines, transcripts and scripts run the command alone. Registered for as long as it
/// exists, one per command. Main thread only.
class ByHand
{
public:
    /// Returns false if the command should run as it is.
    using Action = std::function<bool(const CommandContext&)>;

    ByHand(std::wstring command, Action action);
    ~ByHand();
    ByHand(const ByHand&) = delete;
    ByHand& operator=(const ByHand&) = delete;

    /// Whether there is such an action for the command, and it has done everything.
    [[nodiscard]] static bool takesOver(const CommandDefinition& definition, const CommandContext& context);

private:
    std::wstring m_command;
};

} // namespace Vu
