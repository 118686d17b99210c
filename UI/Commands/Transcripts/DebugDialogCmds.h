#pragma once

#include "UI/Commands/Transcripts/DebugTool.h"

namespace Vu::Commands {

class ShowDebugDialogCmd : public UnrepeatedDebugTool<ShowDebugDialogCmd>
{
public:
    using UnrepeatedDebugTool::UnrepeatedDebugTool;

protected:
    void onExecute(Vs::Status& status) override;
};

class HideDebugDialogCmd : public UnrepeatedDebugTool<HideDebugDialogCmd>
{
public:
    using UnrepeatedDebugTool::UnrepeatedDebugTool;

protected:
    void onExecute(Vs::Status& status) override;
};

class DestroyDebugDialogCmd : public UnrepeatedDebugTool<DestroyDebugDialogCmd>
{
public:
    using UnrepeatedDebugTool::UnrepeatedDebugTool;

protected:
    void onExecute(Vs::Status& status) override;
};

class ShowDebugDialogCmdDef : public DebugToolDefinition<ShowDebugDialogCmdDef, ShowDebugDialogCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

class HideDebugDialogCmdDef : public DebugToolDefinition<HideDebugDialogCmdDef, HideDebugDialogCmd>
{
public:
    static const CommandRow kRow;

protected:
    bool onIsApplicable(CommandContext* context) const override;
};

/// Hides the window until a shell is next activated.
class DestroyDebugDialogCmdDef : public DebugToolDefinition<DestroyDebugDialogCmdDef, DestroyDebugDialogCmd>
{
public:
    static const CommandRow kRow;
};

/// The action of the dialog's own buttons: runs a definition, as if called from another part of the
/// interface.
void runFromDialog(const Info* info);

} // namespace Vu::Commands
