#pragma once

#include "Server/Base/Object.h"
#include "Server/Base/Status.h"
#include "UI/Base/Command/CommandContext.h"

#include <memory>
#include <string>
#include <vector>

namespace Vs {
class Request;
class SelectionMgr;
class Transaction;
} // namespace Vs

namespace Vu {

class CommandDefinition;
class CommandDialog;
class CommandInputSet;
class CommandMgr;
class CursorController;
struct SelectionCompleteEventArg;
struct SequentialInputEventArg;

/// How a request is run for a command.
struct ExecutionOptions
{
    /// Whether the change is a step of the command (CommandBase::beginStep), which can be undone by itself.
    bool asStep = false;
};

/// One run of a command: made by its definition, run and deleted by a CommandMgr.
///
/// The manager calls, in this order, `onBegin`; for an interactive command `onActivate`, `onPostActivate`,
/// then, each time another one stacks over it, `onDeactivate`, `onSuspend`, and when that one has gone
/// `onResume`, `onActivate`, `onPostActivate`. At its end: `onPreCommandEnd`, `onDeactivate` if it is active,
/// `onEnd`, while the command is still on the stack; then, off the stack, `onTerminate`, `onDestroy`,
/// `onPreDelete`, and the object is deleted, though never while one of its functions runs (see CommandInUse).
///
/// An exception in `onBegin`, `onActivate` or an execution ends the command with reason Cancel; one in any of
/// the later functions is reported and doesn't stop the end. Main thread only.
class CommandBase : public Vs::Implements<CommandBase>
{
public:
    /// Called by the definition's factory, with what the factory was given.
    CommandBase(CommandDefinition* definition, CommandContext* context);
    ~CommandBase() override;

    /// The session the command works on; may be null. A context without one gets that of the manager that
    /// runs the command.
    AssetSession* assetSession() const { return m_context.assetSession(); }
    Vs::SelectionMgr* selectionManager() const;
    /// The manager that runs it; null once the command has ended, or has closed the session of its manager.
    CommandMgr* commandManager() const { return m_manager; }
    /// The command's own copy of the context it was called with. What the command adds to it is recorded.
    CommandContext* commandContext() const { return &m_context; }
    /// Null once the definition is being destroyed.
    CommandDefinition* commandDefinition() const { return m_definitionGone ? nullptr : m_definition; }
    CursorController* cursorController() const;
    CommandDialog* commandDialog() const;
    /// The inputs, or null for a command without any.
    CommandInputSet* commandInputSet() const { return m_inputs.get(); }

    /// The active command of the active session, or null.
    [[nodiscard]] static CommandBase* getActiveCommand();

    /// Ends the command. A command that isn't running, or is ending already, is left as it is; a one-shot
    /// command that asks for its own end from inside its execution ends, with this reason, when that returns.
    void destroy(ETerminationReason reason);
    void destroy(int reason) { destroy(static_cast<ETerminationReason>(reason)); }

    /// Whether "repeat" offers the command. Default true.
    bool repeatable() const { return m_repeatable; }
    /// Whether the command shows its inputs in a dialog. Default true.
    bool usesCommandDialog() const { return m_usesDialog; }
    [[nodiscard]] bool isRunning() const;
    /// Running and not suspended under another one.
    bool isActive() const;
    bool isSuspended() const;

    /// Steps inside the command. `beginStep` closes the step that is open, keeping it if `keepOpenStep` holds
    /// and aborting it otherwise, and opens one; `undoable` says whether it can be undone once it is kept.
    void beginStep(bool undoable, bool keepOpenStep);
    void endStep(ETerminationReason reason);
    bool canUndoStep() const { return m_stepsDone > 0; }
    bool canRedoStep() const { return m_stepsUndone > 0; }
    /// How many steps can be undone, and redone.
    int stepsDone() const { return m_stepsDone; }
    int stepsUndone() const { return m_stepsUndone; }
    /// Undo or redo one step; nothing happens if there is none.
    void undoStep();
    void redoStep();
    EMidCommandUndoRedoContext getPossibleMidCommandUndoContext() const;
    EMidCommandUndoRedoContext getPossibleMidCommandRedoContext() const;

    /// Whether the inputs allow the command to be committed.
    [[nodiscard]] bool areInputsValidForCommit() { return onAreInputsValidForCommit(); }
    [[nodiscard]] bool areInputsValid() { return onAreInputsValid(); }

    /// Makes a change of the session's asset, as a whole or not at all. A `preview` is undone by the next
    /// request and by the command's end. The caller keeps owning the request. Returns whether the change was
    /// made; the status says why not.
    bool executeRequest(Vs::Request* request, bool preview, ExecutionOptions options, Vs::Status& status);

    /// For messages and the debug dialog.
    std::wstring toString() { return onToString(); }
    std::wstring toDetailedString() { return onToDetailedString(); }

protected:
    void repeatable(bool value) { m_repeatable = value; }
    void usesCommandDialog(bool value) { m_usesDialog = value; }
    /// Undoes what the last request shows, if that was a preview.
    void releasePreview();
    /// Gives the command its inputs, which it then owns.
    void commandInputSet(CommandInputSet* inputs);

public:
    virtual void onInputSequencingEvent(SequentialInputEventArg&) {}
    virtual void onSelectionCompleteEvent(SelectionCompleteEventArg&) {}
    virtual bool onEnablePreHighlightProcessing() const { return true; }
    virtual void onBegin() {}
    virtual void onSuspend() {}
    virtual void onResume() {}
    virtual void onEnd(ETerminationReason) {}
    virtual void onActivate() {}
    virtual void onPostActivate() {}
    /// The requests are about to run; an override may add or change some.
    virtual void onPreExecuteRequest(std::vector<Vs::Request*>&, bool /*preview*/) {}
    virtual void onDeactivate() {}
    /// Asked of the active command: whether `command`, of type Nested, may run inside this one. If not, this
    /// one is ended first. Default true.
    virtual bool canCommandRunAsNested(const CommandBase* command) const;
    virtual void onPreDelete() {}
    virtual void onPreCommandEnd() {}
    /// The default asks the input set; a command without one is valid.
    virtual bool onAreInputsValid();
    virtual void onDestroy(ETerminationReason) {}
    /// Keeps the open step.
    virtual void applyStep();
    virtual bool onAreInputsValidForCommit();
    virtual void onTerminate(ETerminationReason) {}
    virtual ECommandType onCommandType() const;
    virtual void onStepBegin() {}
    virtual void onPreStepAbort() {}
    virtual void onPreStepEnd() {}
    virtual void onStepEnd(ETerminationReason) {}
    virtual void onStepUndo() {}
    virtual void onStepRedo() {}
    virtual EStackingBehavior onStackingBehavior() const;
    virtual const Vs::UniqueString* onStackingCategory() const;
    /// Whether the transaction of the command beneath is aborted when this one stacks over it. Default false.
    virtual bool onAbortsParentTransactionWhenStacked() const { return false; }
    /// Whether a run that failed with this status undoes its changes. Default true.
    virtual bool onAbortTransactionOnFailure(const Vs::Status&) const { return true; }
    virtual std::wstring onToString();
    virtual std::wstring onToDetailedString();

private:
    friend class CommandMgr;
    friend class CommandStack;
    friend class CommandInUse;
    enum class State { Made, Begun, Active, Suspended, Ending, Ended };

    CommandDefinition* m_definition;
    mutable CommandContext m_context;
    CommandMgr* m_manager;
    std::unique_ptr<CommandInputSet> m_inputs;
    std::unique_ptr<Vs::Transaction> m_preview;
    /// The category in which it stacks; null if it doesn't.
    const Vs::UniqueString* m_category = nullptr;
    int m_uses = 0;
    int m_runDepth = 0;
    int m_stepsDone = 0;
    int m_stepsUndone = 0;
    State m_state = State::Made;
    ETerminationReason m_askedReason = ETerminationReason::Commit;
    bool m_endAsked = false;
    bool m_deleteWhenUnused = false;
    bool m_observed = false;
    bool m_definitionGone = false;
    bool m_repeatable = true;
    bool m_usesDialog = true;
    mutable bool m_usesHost = false; ///< Has asked the host for a pointer or a dialog.
    bool m_stepOpen = false;
    bool m_openStepUndoable = false;
};

/// Keeps a command from being deleted. Whoever calls a function of a command that might end it (a mouse or
/// key handler, say) holds one meanwhile: the command may end, but its object exists until the last of these
/// is destroyed.
class [[nodiscard]] CommandInUse
{
public:
    /// Null is allowed and does nothing.
    explicit CommandInUse(CommandBase* command);
    ~CommandInUse();
    CommandInUse(const CommandInUse&) = delete;
    CommandInUse& operator=(const CommandInUse&) = delete;

private:
    CommandBase* m_command;
};

} // namespace Vu
