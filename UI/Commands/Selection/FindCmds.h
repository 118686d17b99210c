#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

class FindInBrowserCmd;

/// Reveals the one selected object in the browser.
class FindInBrowserCmdDef : public CommandRowDefinition<FindInBrowserCmdDef, FindInBrowserCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onAddToContextMenu() override;
};

class FindInBrowserCmd : public Vs::Implements<FindInBrowserCmd, SimpleCommand>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

class FindInCanvasCmd;

/// Brings the one selected object to the middle of the view: the camera first shows the whole scene and then
/// moves in on the object.
class FindInCanvasCmdDef : public CommandRowDefinition<FindInCanvasCmdDef, FindInCanvasCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext*) const override { return true; }
    bool onAddToContextMenu() override;
};

class FindInCanvasCmd : public Vs::Implements<FindInCanvasCmd, SimpleCommand>
{
public:
    using Implements::Implements;

protected:
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
