#include "UI/Base/Command/CommandBase.h"

#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Request.h"
#include "Server/DataModel/Transaction.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandGroup.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/CommandMgr.h"
#include "UI/Base/Command/Private/CommandHost.h"
#include "UI/Base/Command/Private/CommandStack.h"
#include "UI/Base/Command/Private/CommandSteps.h"

#include <algorithm>
#include <exception>

namespace Vu {

CommandBase::CommandBase(CommandDefinition* definition, CommandContext* context)
    : m_definition(definition),
      m_context(context ? *context : CommandContext::emptyContext()),
      m_manager(CommandStack::creatingManager())
{
    if (!m_context.assetSession() && m_manager)
        m_context.assetSession(m_manager->assetSession());
}

CommandBase::~CommandBase()
{
    CommandSteps::end(this, false);
    if (m_usesHost)
        CommandHost::get()->commandGone(this);
}

Vs::SelectionMgr* CommandBase::selectionManager() const
{
    AssetSession* session = assetSession();
    return session ? CommandHost::get()->selectionManager(session) : nullptr;
}

CursorController* CommandBase::cursorController() const
{
    m_usesHost = true;
    return CommandHost::get()->cursorController(const_cast<CommandBase*>(this));
}

CommandDialog* CommandBase::commandDialog() const
{
    m_usesHost = true;
    return CommandHost::get()->commandDialog(const_cast<CommandBase*>(this));
}

CommandBase* CommandBase::getActiveCommand()
{
    CommandMgr* manager = CommandMgr::getActiveCommandManager();
    return manager ? manager->activeCommand() : nullptr;
}

void CommandBase::destroy(ETerminationReason reason)
{
    if (m_manager)
        m_manager->m_stack->destroy(this, reason);
}

bool CommandBase::isRunning() const
{
    return m_state != State::Made && m_state != State::Ended;
}
bool CommandBase::isActive() const
{
    return m_state == State::Active;
}
bool CommandBase::isSuspended() const
{
    return m_state == State::Suspended;
}

void CommandBase::commandInputSet(CommandInputSet* inputs)
{
    Vs::require(!inputs || inputs->command() == this, "a command gets the inputs that were made for it");
    m_inputs.reset(inputs);
}

namespace {

/// Null for a command of no session.
Vs::Asset* assetOf(const CommandBase& command)
{
    AssetSession* session = command.assetSession();
    return session ? CommandHost::get()->asset(session) : nullptr;
}

} // namespace

void CommandBase::beginStep(bool undoable, bool keepOpenStep)
{
    endStep(keepOpenStep ? ETerminationReason::Commit : ETerminationReason::Cancel);
    m_preview.reset();
    m_openStepUndoable = CommandSteps::of(*this).begin(assetOf(*this)) && undoable;
    m_stepOpen = true;
    onStepBegin();
}

void CommandBase::endStep(ETerminationReason reason)
{
    if (!m_stepOpen)
        return;
    m_stepOpen = false;
    CommandSteps& steps = CommandSteps::of(*this);
    m_preview.reset();
    if (reason == ETerminationReason::Commit) {
        onPreStepEnd();
        steps.keep(m_openStepUndoable);
        m_stepsUndone = 0;
        // What can't be undone blocks the way to the steps before it.
        m_stepsDone = m_openStepUndoable ? m_stepsDone + 1 : 0;
    } else {
        onPreStepAbort();
        steps.abandon();
    }
    onStepEnd(reason);
}

void CommandBase::undoStep()
{
    if (!canUndoStep())
        return;
    const CommandInUse inUse(this);
    CommandSteps& steps = CommandSteps::of(*this);
    m_preview.reset();
    // What the open step has changed becomes a step, so that it can be done again.
    endStep(steps.isOpenOneChanged() ? ETerminationReason::Commit : ETerminationReason::Cancel);
    if (!canUndoStep())
        return;
    steps.undo();
    --m_stepsDone;
    ++m_stepsUndone;
    onStepUndo();
}

void CommandBase::redoStep()
{
    if (!canRedoStep())
        return;
    const CommandInUse inUse(this);
    m_preview.reset();
    endStep(ETerminationReason::Cancel);
    CommandSteps::of(*this).redo();
    --m_stepsUndone;
    ++m_stepsDone;
    onStepRedo();
}

void CommandBase::applyStep()
{
    endStep(ETerminationReason::Commit);
}

namespace {

/// For a command that has steps to undo or redo: between them, its own transaction is the current one.
EMidCommandUndoRedoContext contextOf(const CommandBase& command, bool stepOpen)
{
    const CommandSteps* steps = CommandSteps::find(&command);
    return steps && steps->isStepped() && !stepOpen ? EMidCommandUndoRedoContext::ControllingStep
                                                    : EMidCommandUndoRedoContext::Step;
}

} // namespace

EMidCommandUndoRedoContext CommandBase::getPossibleMidCommandUndoContext() const
{
    return canUndoStep() ? contextOf(*this, m_stepOpen) : EMidCommandUndoRedoContext::None;
}

EMidCommandUndoRedoContext CommandBase::getPossibleMidCommandRedoContext() const
{
    return canRedoStep() ? contextOf(*this, m_stepOpen) : EMidCommandUndoRedoContext::None;
}

namespace {

/// Null, with the reason, if the asset may not be changed.
std::unique_ptr<Vs::Transaction> openTransaction(Vs::Asset* asset, const std::wstring& name, bool preview,
                                                 Vs::Status& status)
{
    using Purpose = Vs::Transaction::Purpose;
    try {
        return std::make_unique<Vs::Transaction>(asset, name, preview ? Purpose::Preview : Purpose::Step);
    } catch (const std::exception& error) {
        status.addError(name + L": " + Vs::Strings::widen(error.what()));
        return nullptr;
    }
}

bool beginStepFor(CommandBase& command, bool keepOpenStep, const std::wstring& name, Vs::Status& status)
{
    try {
        command.beginStep(true, keepOpenStep);
        return true;
    } catch (const std::exception& error) {
        status.addError(name + L": " + Vs::Strings::widen(error.what()));
        return false;
    }
}

} // namespace

bool CommandBase::executeRequest(Vs::Request* request, bool preview, ExecutionOptions options,
                                 Vs::Status& status)
{
    Vs::Asset* asset = assetOf(*this);
    if (!asset || !request) {
        status.addError(L"There is no asset to change.");
        return false;
    }
    m_preview.reset();
    if (const CommandInputSet* inputs = commandInputSet())
        for (const auto& input : inputs->inputs())
            input->modelWillChange();
    std::vector<Vs::Request*> requests{request};
    onPreExecuteRequest(requests, preview);

    CommandSteps* const steps = CommandSteps::find(this);
    // Once there are steps, every change is one, so that none is undone beneath another.
    const bool asStep = !preview && (options.asStep || (steps && steps->isStepped() && !m_stepOpen));
    Vs::Status outcome;
    if (asStep && !beginStepFor(*this, steps && steps->isOpenOneChanged(), request->name(), outcome)) {
        status.merge(outcome);
        return false;
    }
    std::unique_ptr<Vs::Transaction> transaction = openTransaction(asset, request->name(), preview, outcome);
    for (Vs::Request* each : requests)
        if (!transaction || !each->execute(asset, outcome))
            break;
    const bool made = transaction && (outcome.isOk() || !onAbortTransactionOnFailure(outcome));
    if (made && preview)
        m_preview = std::move(transaction);
    else if (made)
        transaction->commit();
    else
        transaction.reset();
    if (asStep)
        endStep(made ? ETerminationReason::Commit : ETerminationReason::Cancel);
    status.merge(outcome);
    return outcome.isOk();
}

void CommandBase::releasePreview()
{
    m_preview.reset();
}

bool CommandBase::canCommandRunAsNested(const CommandBase*) const
{
    return true;
}

bool CommandBase::onAreInputsValid()
{
    return !m_inputs || m_inputs->valid();
}

bool CommandBase::onAreInputsValidForCommit()
{
    return onAreInputsValid();
}

ECommandType CommandBase::onCommandType() const
{
    return ECommandType::Exclusive;
}

EStackingBehavior CommandBase::onStackingBehavior() const
{
    return EStackingBehavior::ByType;
}

const Vs::UniqueString* CommandBase::onStackingCategory() const
{
    return StackingCategory::defaultStackingCategory();
}

std::wstring CommandBase::onToString()
{
    return m_definition ? m_definition->id() : std::wstring();
}

std::wstring CommandBase::onToDetailedString()
{
    std::wstring text = onToString();
    for (size_t i = 0; i < m_context.arguments(); ++i) {
        const Vs::UniqueString* name = m_context.argumentName(i);
        text += L" " + name->wideText() + L"=" + Vs::Strings::quote(m_context.argumentAsString(name));
    }
    return text;
}

CommandInUse::CommandInUse(CommandBase* command) : m_command(command)
{
    if (m_command)
        ++m_command->m_uses;
}

CommandInUse::~CommandInUse()
{
    Vs::require(!m_command || m_command->m_uses > 0, "a command is in use as long as somebody holds it");
    if (m_command && --m_command->m_uses == 0 && m_command->m_deleteWhenUnused)
        delete m_command;
}

} // namespace Vu
