#pragma once

#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDefinition.h"

namespace Vu {

/// Whether the user has no tool active in the active session, so that keys and buttons act on the selection.
inline bool commandRests()
{
    const CommandBase* active = CommandBase::getActiveCommand();
    const CommandDefinition* definition = active ? active->commandDefinition() : nullptr;
    return !definition || definition->id() == CommandDefinition::selectCommandId();
}

} // namespace Vu
