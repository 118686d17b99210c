#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

/// A command of the debug group that runs nested in whatever command is active.
template <class Self>
class DebugTool : public Vs::Implements<Self, SimpleCommand>
{
public:
    DebugTool(CommandDefinition* definition, CommandContext* context)
        : Vs::Implements<Self, SimpleCommand>(definition, context)
    {
    }

protected:
    ECommandType onCommandType() const override { return ECommandType::Nested; }
};

/// The same, skipped by "repeat".
template <class Self>
class UnrepeatedDebugTool : public DebugTool<Self>
{
public:
    UnrepeatedDebugTool(CommandDefinition* definition, CommandContext* context)
        : DebugTool<Self>(definition, context)
    {
        this->repeatable(false);
    }
};

/// The definition of a `Tool`, which can run at any time unless `Self` says otherwise.
template <class Self, class Tool>
class DebugToolDefinition : public CommandRowDefinition<Self, Tool>
{
protected:
    bool onIsApplicable(CommandContext*) const override { return true; }
};

} // namespace Vu::Commands
