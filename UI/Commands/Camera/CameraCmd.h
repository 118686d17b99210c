#pragma once

#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

/// What all definitions of camera commands share: where they may run, and how they are started in passing, by
/// a mouse button over whatever command is active.
class CameraCmdDef : public Vs::Implements<CameraCmdDef, CommandDefinition>
{
public:
    using Implements::Implements;

    /// "Passive": 1 in a command that was started in passing.
    static const Vs::UniqueString* passiveArgumentName();
    /// A context with "Passive" set. Lives as long as the process.
    static const CommandContext& passiveContext();
    static bool passive(CommandContext* context);

protected:
    /// The context has an asset session with a graphics view.
    bool onIsApplicable(CommandContext* context) const override;
};

} // namespace Vu::Commands
