#include "UI/Commands/ExitApplicationCmd.h"

#include "Server/Base/PythonManager.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/ProgressBar.h"
#include "UI/Commands/Documents/DocumentSets.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ExitApplicationCmdDef::kRow = {
    .key = L"ExitApplicationCommand", .title = "Exit Application", .icon = &Resources::Exit,
    .tooltip = "Exit Application", .tooltipKey = "ExitApplicationCommandDesc", .hotkey = "ctrl+q",
    .groups = {&CommandGroup::BaseGroup}, .readonly = true};
constinit const CommandRow CloseWorkspaceCmdDef::kRow = {
    .key = L"CloseWorkspaceCommand", .title = "Close Workspace",
    .groups = {&CommandGroup::BaseGroup}, .readonly = true};
// clang-format on

namespace {

/// A script's veto keeps the program going.
void endApplication(bool closeDocuments, Vs::Status& status)
{
    if (!Vs::PythonAutorunScripts::get()->fireClosingDown(status))
        return;
    ProgressBar::get()->enable(false);
    Application::get()->exit(closeDocuments);
}

} // namespace

bool ExitApplicationCmdDef::onIsApplicable(CommandContext*) const
{
    return true;
}

bool ExitApplicationCmdDef::onIsVisible(CommandContext*) const
{
    return true;
}

CommandBase* ExitApplicationCmdDef::onCreateCommand(CommandContext* context)
{
    return closingAgreed(allDocuments()) ? new ExitApplicationCmd(this, context) : nullptr;
}

ECommandType ExitApplicationCmd::onCommandType() const
{
    return ECommandType::Exclusive;
}

EStackingBehavior ExitApplicationCmd::onStackingBehavior() const
{
    return EStackingBehavior::OverNothing;
}

void ExitApplicationCmd::onExecute(Vs::Status& status)
{
    endApplication(true, status);
}

CommandBase* CloseWorkspaceCmdDef::onCreateCommand(CommandContext* context)
{
    return new CloseWorkspaceCmd(this, context);
}

ECommandType CloseWorkspaceCmd::onCommandType() const
{
    return ECommandType::Exclusive;
}

EStackingBehavior CloseWorkspaceCmd::onStackingBehavior() const
{
    return EStackingBehavior::OverNothing;
}

void CloseWorkspaceCmd::onExecute(Vs::Status& status)
{
    endApplication(false, status);
}

} // namespace Vu::Commands
