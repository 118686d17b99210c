#include "UI/Commands/Selection/UndoCmds.h"

#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/DataModel/TransactionMgr.h"
#include "UI/Base/Command/Command.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/StepSurroundings.h"
#include "UI/Commands/ActiveCommand.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Selection/UndoRedoDropDown.h"

namespace Vu::Commands {

using DropDown = UndoRedoDropDownCommandDef;

// clang-format off
constinit const CommandRow UndoCmdDef::kRow = {
    .key = L"UndoCommand", .title = "Undo", .icon = &Resources::Undo,
    .tooltip = "Undo", .tooltipKey = "UndoCommandDesc", .hotkey = "Ctrl+Z",
    .groups = {&CommandGroup::BaseGroup}, .arguments = {L"TxnIndex"}};

constinit const CommandRow RedoCmdDef::kRow = {
    .key = L"RedoCommand", .title = "Redo", .icon = &Resources::Redo,
    .tooltip = "Redo", .tooltipKey = "RedoCommandDesc", .hotkey = "Ctrl+Y",
    .groups = {&CommandGroup::BaseGroup}, .arguments = {L"TxnIndex"}};
// clang-format on

bool UndoCmdDef::onIsApplicable(CommandContext* context) const
{
    return DropDown::canUndoRedo(context->assetSession(), true);
}

void UndoCmdDef::onUpdateTooltip(ToolTipInfo& tooltip)
{
    tooltip.description(txnTooltip(true));
}

bool RedoCmdDef::onIsApplicable(CommandContext* context) const
{
    return DropDown::canUndoRedo(context->assetSession(), false);
}

void RedoCmdDef::onUpdateTooltip(ToolTipInfo& tooltip)
{
    tooltip.description(txnTooltip(false));
}

UndoRedoCmd::UndoRedoCmd(CommandDefinition* definition, CommandContext* context, bool undo)
    : Implements(definition, context), m_undo(undo)
{
    repeatable(false);
}

ECommandType UndoRedoCmd::onCommandType() const
{
    return DropDown::canMidCmdUndoRedo(assetSession(), m_undo) ? ECommandType::Nested
                                                               : ECommandType::Exclusive;
}

void UndoRedoCmd::step(CommandBase& command)
{
    if (m_undo)
        command.undoStep();
    else
        command.redoStep();
}

/// The step that no index names, if the running tool has it.
bool UndoRedoCmd::runningToolTakesIt()
{
    const EMidCommandUndoRedoContext possible = DropDown::getMidCmdUndoRedoContext(m_undo);
    if (possible != EMidCommandUndoRedoContext::Step &&
        possible != EMidCommandUndoRedoContext::ControllingStep)
        return false;
    CommandBase* active = CommandBase::getActiveCommand();
    // The keys belong to the tool while it guards the selection.
    const auto* tool = Vs::cast<Command>(active);
    const bool guarded = tool && tool->selectionChangeAllowMode() == 1;
    if (!guarded || commandContext()->commandAccessPoint() != ECommandAccessPoint::HotKey)
        step(*active);
    return true;
}

void UndoRedoCmd::onExecute(Vs::Status&)
{
    AssetSession* session = assetSession();
    if (!session)
        return;
    const Vs::TransactionNode* txn = nullptr;
    int index = 0;
    if (commandContext()->argument(DropDown::txnIndexArgumentName(), CommandContext::EArgType::Int, &index)) {
        if (DropDown::canMidCmdUndoRedo(session, m_undo)) {
            for (int i = 0; i <= index && DropDown::canMidCmdUndoRedo(session, m_undo); ++i)
                step(*activeCommandOf(session));
            return;
        }
        txn = DropDown::getTxnFromIndex(session, index, m_undo);
    } else if (runningToolTakesIt()) {
        return;
    }
    Vs::TransactionMgr transactions(session->asset());
    if (!(m_undo ? transactions.canUndo(txn) : transactions.canRedo(txn)))
        return;
    session->selectionManager()->invalidate();
    if (m_undo)
        transactions.undo(txn);
    else
        transactions.redo(txn);
    StepSurroundings::bringBack(*session, m_undo);
}

void UndoRedoCmd::onEnd(ETerminationReason reason)
{
    SimpleCommand::onEnd(reason);
    if (const AssetSession* session = assetSession())
        tellDocumentUpdated(*session);
}

} // namespace Vu::Commands
