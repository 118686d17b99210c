#pragma once

#include "UI/Base/Command/CommandContext.h"

namespace Vu {

class CommandDefinition;
class CommandMgr;

/// The runs that wait for the end of the current event. Private to the command model. Each knows what it
/// needs, so that it is dropped when that goes: its manager, its definition, its session, an argument.
class DeferredRuns
{
public:
    /// False if the application has no queue for it.
    [[nodiscard]] static bool add(CommandMgr* manager, CommandDefinition* definition,
                                  const CommandContext& context);
    /// How many a recording has seen added, but for those that are part of who asked.
    static unsigned long added();
    /// Drops the runs of a manager, and those of any manager that are about its session.
    static void drop(const CommandMgr* manager, const AssetSession* session);
    static void drop(const CommandDefinition* definition);
};

} // namespace Vu
