#pragma once

#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Commands/CommandRow.h"

namespace Vu::Commands {

class ShowDebugDialogCmdDef : public RowDefinition<ShowDebugDialogCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class HideDebugDialogCmdDef : public RowDefinition<HideDebugDialogCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    CommandBase* onCreateCommand(CommandContext* context) override;
};

/// Takes the window away until a shell is activated the next time.
class DestroyDebugDialogCmdDef : public RowDefinition<DestroyDebugDialogCmdDef>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext*) const override { return true; }
    CommandBase* onCreateCommand(CommandContext* context) override;
};

class ShowDebugDialogCmd : public Vs::Implements<ShowDebugDialogCmd, SimpleCommand>
{
protected:
    friend class ShowDebugDialogCmdDef;
    ShowDebugDialogCmd(ShowDebugDialogCmdDef* definition, CommandContext* context);

    ECommandType onCommandType() const override { return ECommandType::Nested; }
    void onExecute(Vs::Status& status) override;
};

class HideDebugDialogCmd : public Vs::Implements<HideDebugDialogCmd, SimpleCommand>
{
protected:
    friend class HideDebugDialogCmdDef;
    HideDebugDialogCmd(HideDebugDialogCmdDef* definition, CommandContext* context);

    ECommandType onCommandType() const override { return ECommandType::Nested; }
    void onExecute(Vs::Status& status) override;
};

class DestroyDebugDialogCmd : public Vs::Implements<DestroyDebugDialogCmd, SimpleCommand>
{
protected:
    friend class DestroyDebugDialogCmdDef;
    DestroyDebugDialogCmd(DestroyDebugDialogCmdDef* definition, CommandContext* context);

    ECommandType onCommandType() const override { return ECommandType::Nested; }
    void onExecute(Vs::Status& status) override;
};

/// What the dialog's own buttons do: runs a definition, called by another part of the interface.
void runFromDialog(const Info* info);

} // namespace Vu::Commands
