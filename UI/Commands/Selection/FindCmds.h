#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

/// Shows the one selected object in the browser.
class FindInBrowserCmdDef : public RowDefinition<FindInBrowserCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onAddToContextMenu() override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class FindInBrowserCmd : public Vs::Implements<FindInBrowserCmd, SimpleCommand>
{
protected:
    friend class FindInBrowserCmdDef;
    using Implements::Implements;
    void onExecute(Vs::Status& status) override;
};

/// Brings the one selected object into the middle of the view: the camera first shows the whole scene and
/// then moves in on the object.
class FindInCanvasCmdDef : public RowDefinition<FindInCanvasCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext*) const override { return true; }
    bool onAddToContextMenu() override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class FindInCanvasCmd : public Vs::Implements<FindInCanvasCmd, SimpleCommand>
{
protected:
    friend class FindInCanvasCmdDef;
    using Implements::Implements;
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
