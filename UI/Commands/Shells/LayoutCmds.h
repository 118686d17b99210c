#pragma once

#include "UI/Commands/Shells/WindowCmds.h"

namespace Vu::Commands {

class ResetToDefaultLayoutCmd;

/// Restores the window's initial layout; the canvases and the user's preferences for the browser stay.
class ResetToDefaultLayoutCmdDef
    : public CommandRowDefinition<ResetToDefaultLayoutCmdDef, ResetToDefaultLayoutCmd>
{
public:
    static const CommandRow kRow;

    /// Why a line does nothing: without a model the window shows another layout. Empty if it does something.
    static std::wstring refusal(CommandContext& context);

protected:
    bool onIsApplicable(CommandContext* context) const override { return hasAssetSession(context); }
};

class ResetToDefaultLayoutCmd : public Vs::Implements<ResetToDefaultLayoutCmd, OnWindowCmd>
{
public:
    using Implements::Implements;

protected:
    void onWindow(WorkspaceWindow& window) override;
};

class ShowCommandPaletteCmd;

/// Shows the panel of the active command. Does nothing if no command is active, like the other one.
class ShowCommandPaletteCmdDef : public CommandRowDefinition<ShowCommandPaletteCmdDef, ShowCommandPaletteCmd>
{
public:
    static const CommandRow kRow;
};

class ShowCommandPaletteCmd : public Vs::Implements<ShowCommandPaletteCmd, SimpleCommand>
{
public:
    ShowCommandPaletteCmd(ShowCommandPaletteCmdDef* definition, CommandContext* context);

protected:
    ECommandType onCommandType() const override { return ECommandType::Nested; }
    void onExecute(Vs::Status& status) override;
};

class HideCommandPaletteCmd;

class HideCommandPaletteCmdDef : public CommandRowDefinition<HideCommandPaletteCmdDef, HideCommandPaletteCmd>
{
public:
    static const CommandRow kRow;
};

class HideCommandPaletteCmd : public Vs::Implements<HideCommandPaletteCmd, SimpleCommand>
{
public:
    HideCommandPaletteCmd(HideCommandPaletteCmdDef* definition, CommandContext* context);

protected:
    ECommandType onCommandType() const override { return ECommandType::Nested; }
    void onExecute(Vs::Status& status) override;
};

} // namespace Vu::Commands
