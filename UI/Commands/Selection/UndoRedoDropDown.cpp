#include "UI/Commands/Selection/UndoRedoDropDown.h"

#include "Server/DataModel/TransactionMgr.h"
#include "Server/DataModel/TransactionStepUserCache.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/ActiveCommand.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Selection/UndoCmds.h"

#include <algorithm>

namespace Vu::Commands {
namespace {

using DropDown = UndoRedoDropDownCommandDef;

constexpr CommandRow kUndoRow = {
    .key = L"UndoDropDown", .title = "Undo Multiple", .icon = &Resources::Undo, .arguments = {L"TxnIndex"}};
constexpr CommandRow kRedoRow = {
    .key = L"RedoDropDown", .title = "Redo Multiple", .icon = &Resources::Redo, .arguments = {L"TxnIndex"}};
constexpr const wchar_t* kTextCommandKey = L"TextCommand";
/// What follows the command's name in the name of a step that is part of another.
constexpr const wchar_t* kInnerStep = L" Inner Step";

bool canStep(const CommandBase& command, bool undo)
{
    return undo ? command.canUndoStep() : command.canRedoStep();
}

/// Whether a tool that changes the model runs, be it under one that doesn't: the step would end both.
bool changesModel(const CommandMgr& manager)
{
    const std::vector<CommandBase*>& running = manager.commandStack();
    return std::any_of(running.begin(), running.end(), [](const CommandBase* command) {
        const CommandDefinition* definition = command->commandDefinition();
        return definition && !definition->readonly();
    });
}

const Vs::TransactionNode::Changes& changesOf(const Vs::TransactionNode& txn, bool undo)
{
    return undo ? txn.doneChanges() : txn.undoneChanges();
}

/// The one at that place from the present state; the index must be one of the list's.
const Vs::TransactionNode& nearest(const Vs::TransactionNode& txn, size_t index, bool undo)
{
    const Vs::TransactionNode::Changes& changes = changesOf(txn, undo);
    return *changes[undo ? changes.size() - index - 1 : index];
}

/// By the key of the step, else by its name; null if no command is known by either.
CommandDefinition* definitionOf(const Vs::TransactionNode& step)
{
    CommandDefinitionMgr* definitions = CommandDefinitionMgr::get();
    if (CommandDefinition* found = definitions->findCommandDefinitionById(step.cmdKey()))
        return found;
    const std::wstring name = step.userName().substr(0, step.userName().rfind(kInnerStep));
    for (CommandDefinition* each : definitions->commandDefinitions())
        if (each->info()->name() == name)
            return each;
    return nullptr;
}

/// The one that would be taken. A change that is still open is the one that undo would take back.
const Vs::TransactionNode* nextStep(const Vs::TransactionNode& current, bool undo)
{
    if (!undo)
        return current.transactionToRedo();
    const Vs::TransactionNode* parent = current.parent();
    if (!parent)
        return current.transactionToUndo();
    return parent->parent() ? parent->parent()->transactionToUndo() : &current;
}

bool sameNames(const OwnedList::Items& some, const OwnedList::Items& others)
{
    return std::equal(some.begin(), some.end(), others.begin(), others.end(),
                      [](const auto& a, const auto& b) { return a->name() == b->name(); });
}

} // namespace

Info* UndoRedoDropDownCommandDef::UndoDropDownInfo()
{
    static Info record = makeInfo(kUndoRow);
    return &record;
}

Info* UndoRedoDropDownCommandDef::RedoDropDownInfo()
{
    static Info record = makeInfo(kRedoRow);
    return &record;
}

void UndoRedoDropDownCommandDef::createCommandDefs()
{
    static UndoRedoDropDownCommandDef undo(true);
    static UndoRedoDropDownCommandDef redo(false);
}

UndoRedoDropDownCommandDef::UndoRedoDropDownCommandDef(bool isUndo)
    : Implements(isUndo ? UndoDropDownInfo() : RedoDropDownInfo()), m_isUndo(isUndo)
{
    joinCommandGroup(CommandGroup::BaseGroup());
}

const Vs::UniqueString* UndoRedoDropDownCommandDef::txnIndexArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("TxnIndex", true);
    return name;
}

bool UndoRedoDropDownCommandDef::canMidCmdUndoRedo(AssetSession* session, bool undo)
{
    const CommandBase* command = activeCommandOf(session);
    return command && canStep(*command, undo);
}

EMidCommandUndoRedoContext UndoRedoDropDownCommandDef::getMidCmdUndoRedoContext(bool undo)
{
    const CommandBase* command = CommandBase::getActiveCommand();
    if (!command)
        return EMidCommandUndoRedoContext::None;
    return undo ? command->getPossibleMidCommandUndoContext() : command->getPossibleMidCommandRedoContext();
}

bool UndoRedoDropDownCommandDef::canUndoRedo(AssetSession* session, bool undo)
{
    if (!session)
        return false;
    if (getMidCmdUndoRedoContext(undo) != EMidCommandUndoRedoContext::None)
        return true;
    if (changesModel(*session->commandManager()))
        return false;
    return !changesOf(*Vs::TransactionMgr(session->asset()).sessionTransaction(), undo).empty();
}

const Vs::TransactionNode* UndoRedoDropDownCommandDef::getTxnFromIndex(AssetSession* session, int index,
                                                                       bool undo)
{
    const Vs::TransactionNode* all = Vs::TransactionMgr(session->asset()).sessionTransaction();
    if (index < 0 || static_cast<size_t>(index) >= changesOf(*all, undo).size())
        return nullptr;
    return &nearest(*all, static_cast<size_t>(index), undo);
}

bool UndoRedoDropDownCommandDef::onIsApplicable(CommandContext* context) const
{
    return canUndoRedo(context->assetSession(), m_isUndo);
}

CommandBase* UndoRedoDropDownCommandDef::onCreateCommand(CommandContext* context)
{
    if (m_isUndo)
        return new UndoCmd(this, context);
    return new RedoCmd(this, context);
}

void UndoRedoDropDownCommandDef::onUpdateTooltip(ToolTipInfo& tooltip)
{
    tooltip.description(txnTooltip(m_isUndo));
}

std::wstring UndoRedoDropDownCommandDef::undoRedoName(const std::wstring& step) const
{
    return m_isUndo ? localizedFormat("UndoStepName", "Undo %1%", step)
                    : localizedFormat("RedoStepName", "Redo %1%", step);
}

OwnedList::Items UndoRedoDropDownCommandDef::populateListItems(const Vs::TransactionNode& txn) const
{
    OwnedList::Items items;
    for (size_t i = 0; i < changesOf(txn, m_isUndo).size(); ++i) {
        const Vs::TransactionNode& step = nearest(txn, i, m_isUndo);
        // A part of another step isn't undone by itself.
        if (txn.parent() && !step.userCache())
            continue;
        const std::wstring name = undoRedoName(step.userName());
        if (const CommandDefinition* definition = definitionOf(step))
            items.push_back(std::make_unique<Info>(definition->id(), name, definition->info()->icon(),
                                                   definition->info()->tooltip()));
        else if (step.cmdKey() == kTextCommandKey)
            items.push_back(std::make_unique<Info>(kTextCommandKey, name, Resources::TextCommand()));
    }
    return items;
}

OwnedList::Items UndoRedoDropDownCommandDef::stepsOfTool(const Vs::TransactionNode& txn,
                                                         const CommandBase& tool) const
{
    OwnedList::Items items;
    const CommandDefinition* definition = tool.commandDefinition();
    for (const Vs::TransactionStepUserCache* cache : txn.stepUserCaches(m_isUndo))
        items.push_back(std::make_unique<Info>(definition->id(), undoRedoName(cache->getCacheName()),
                                               definition->info()->icon()));
    return items;
}

const Vs::TransactionNode* UndoRedoDropDownCommandDef::getControllingTxn(AssetSession* session,
                                                                         EMidCommandUndoRedoContext context)
{
    const Vs::TransactionMgr transactions(session->asset());
    switch (context) {
    case EMidCommandUndoRedoContext::None:
        return transactions.sessionTransaction();
    case EMidCommandUndoRedoContext::ControllingStep:
    case EMidCommandUndoRedoContext::ControllingCurrent:
        return transactions.currentTransaction();
    default:
        return transactions.currentTransaction()->parent();
    }
}

const Vs::TransactionNode* UndoRedoDropDownCommandDef::getControllingTxn(AssetSession* session, bool mid)
{
    const Vs::TransactionMgr transactions(session->asset());
    if (!mid)
        return transactions.sessionTransaction();
    const Vs::TransactionNode* current = transactions.currentTransaction();
    return current->canDoMidStep(true) || current->canDoMidStep(false) ? current : current->parent();
}

InputControl* UndoRedoDropDownCommandDef::onInputControl()
{
    if (!m_list.control()) {
        m_list.make(m_isUndo ? UndoCmdDef::info() : RedoCmdDef::info(), this);
        // A click takes one step, the arrow beside it opens the list.
        m_list.control()->split(true);
    }
    AssetSession* session = SessionMgr::get()->activeAssetSession();
    if (!session)
        return m_list.control();
    const EMidCommandUndoRedoContext context = getMidCmdUndoRedoContext(m_isUndo);
    const bool named = context == EMidCommandUndoRedoContext::ControllingStep ||
                       context == EMidCommandUndoRedoContext::ControllingCurrent;
    OwnedList::Items items;
    if (const Vs::TransactionNode* txn = getControllingTxn(session, context))
        items = named ? stepsOfTool(*txn, *activeCommandOf(session)) : populateListItems(*txn);
    // A menu may be open on the items: they stay as long as their texts are the same.
    if (!sameNames(items, m_list.items()))
        m_list.items(std::move(items));
    return m_list.control();
}

int UndoRedoDropDownCommandDef::getTxnIndex(const Info* item) const
{
    const std::vector<Info*>& items = m_list.control()->items();
    const auto found = std::find(items.begin(), items.end(), item);
    return found == items.end() ? -1 : static_cast<int>(found - items.begin());
}

void UndoRedoDropDownCommandDef::onListSelectionChanged(Info* item)
{
    if (item == m_list.control()->info()) {
        if (CommandDefinition* step = CommandDefinitionMgr::get()->findCommandDefinitionById(item->key()))
            step->onClicked();
        return;
    }
    const int index = getTxnIndex(item);
    // What was chosen once isn't what the next click means.
    m_list.control()->selectedItem(nullptr, false);
    if (index < 0 || !SessionMgr::get()->activeAssetSession())
        return;
    CommandContext context = CommandContext::activeContext();
    context.addArgument(txnIndexArgumentName(), index);
    executeLater(context);
}

std::wstring txnTooltip(bool undo)
{
    AssetSession* session = SessionMgr::get()->activeAssetSession();
    if (!session)
        return {};
    const Vs::TransactionNode* current = Vs::TransactionMgr(session->asset()).currentTransaction();
    const CommandBase* tool = activeCommandOf(session);
    const Vs::TransactionNode* steps = DropDown::getControllingTxn(session, true);
    if (tool && tool->commandDefinition() && canStep(*tool, undo) && steps) {
        size_t number = steps->stepUserCaches(true).size();
        // One that is still open becomes a step before it is taken back.
        if (!undo || (current->isChanged() && !current->isCommitted() && current != steps))
            ++number;
        return tool->commandDefinition()->info()->name() +
               localizedFormat("lclzTxnStep", " - Step %1%", number);
    }
    const Vs::TransactionNode* step = nextStep(*current, undo);
    const bool ofSession = step && step->parent() && !step->parent()->parent();
    return ofSession ? step->userName() : std::wstring();
}

} // namespace Vu::Commands
