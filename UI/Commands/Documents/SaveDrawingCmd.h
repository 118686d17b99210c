#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

class SaveDrawingCmd;

/// Writes the model as a drawing at scale, SVG or PDF, seen as the active view sees it.
class SaveDrawingCmdDef : public CommandRowDefinition<SaveDrawingCmdDef, SaveDrawingCmd>
{
public:
    static const CommandRow kRow;

    /// "Scale": a text as "1:2"; without it, a usual one that fits on A4. "Hidden": 1 to draw hidden lines as
    /// well, dashed.
    static const Vs::UniqueString* scaleArgumentName();
    static const Vs::UniqueString* hiddenArgumentName();

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class SaveDrawingCmd : public Vs::Implements<SaveDrawingCmd, SimpleCommand>
{
public:
    SaveDrawingCmd(SaveDrawingCmdDef* definition, CommandContext* context);

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
