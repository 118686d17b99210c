#include "UI/Commands/ActiveCommandCmds.h"

#include "UI/Base/Command/AlertController.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Commands/ActiveCommand.h"
#include "UI/Commands/Resources.h"

namespace Vu::Commands {

// clang-format off
constinit const CommandRow CancelCmdDef::kRow = {
    .key = L"CancelCommand", .title = "Cancel", .icon = &Resources::Cancel,
    .groups = {&CommandGroup::BaseGroup}, .readonly = true, .reportable = false};

constinit const CommandRow CommitCmdDef::kRow = {
    .key = L"CommitCommand", .title = "OK", .icon = &Resources::Commit,
    .groups = {&CommandGroup::BaseGroup}, .reportable = false};
// clang-format on

bool CancelCmdDef::onIsApplicable(CommandContext* context) const
{
    return hasAssetSession(context);
}

bool CancelCmdDef::onIsVisible(CommandContext* context) const
{
    return hasAssetSession(context);
}

CancelCmd::CancelCmd(CancelCmdDef* definition, CommandContext* context) : Implements(definition, context)
{
    repeatable(false);
}

ECommandType CancelCmd::onCommandType() const
{
    return ECommandType::Nested;
}

void CancelCmd::onExecute(Vs::Status&)
{
    AssetSession* session = assetSession();
    if (!session)
        return;
    if (CommandBase* command = activeCommandOf(session))
        command->destroy(ETerminationReason::Cancel);
    // Everything that shows the document refreshes after the abort, even if there was nothing to abort.
    tellDocumentUpdated(*session);
}

bool CommitCmdDef::onIsApplicable(CommandContext* context) const
{
    AssetSession* session = context->assetSession();
    CommandMgr* manager = session ? session->commandManager() : nullptr;
    CommandBase* command = manager ? manager->activeCommand() : nullptr;
    if (!command)
        return false;
    CommandInputSet* inputs = command->commandInputSet();
    if (!inputs)
        return true;
    if (manager->GetAlertController()->isInErrorState())
        return false;
    if (inputs->valid() && command->areInputsValidForCommit())
        return true;
    return command->getPossibleMidCommandUndoContext() == EMidCommandUndoRedoContext::Step;
}

bool CommitCmdDef::onIsVisible(CommandContext* context) const
{
    return hasAssetSession(context);
}

CommitCmd::CommitCmd(CommitCmdDef* definition, CommandContext* context) : Implements(definition, context)
{
    repeatable(false);
}

ECommandType CommitCmd::onCommandType() const
{
    return ECommandType::Nested;
}

void CommitCmd::onExecute(Vs::Status&)
{
    if (CommandBase* command = activeCommandOf(assetSession()))
        command->destroy(ETerminationReason::Commit);
}

} // namespace Vu::Commands
