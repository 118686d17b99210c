#pragma once

#include "Server/DataModel/TransactionNode.h"
#include "UI/Commands/CommandRow.h"
#include "UI/Commands/OwnedList.h"

namespace Vu::Commands {

/// The list beside the button of undo, or of redo: its steps, the nearest first. Choosing one undoes or
/// redoes all up to that one. There are two definitions of this class.
class UndoRedoDropDownCommandDef
    : public Vs::Implements<UndoRedoDropDownCommandDef, CommandDefinition, IListControlHandler>
{
public:
    static Info* UndoDropDownInfo();
    static Info* RedoDropDownInfo();
    /// Creates the two at the first call; they aren't among the add-in's members.
    static void createCommandDefs();
    explicit UndoRedoDropDownCommandDef(bool isUndo);

    /// "TxnIndex": the index in the list, from 0.
    static const Vs::UniqueString* txnIndexArgumentName();

    /// Whether the session's active command can undo or redo a step itself. False without either.
    static bool canMidCmdUndoRedo(AssetSession* session, bool undo);
    /// The answer of the active session's active command; None without one.
    static EMidCommandUndoRedoContext getMidCmdUndoRedoContext(bool undo);
    /// Whether anything can be undone, or redone. While a running tool changes the model, the steps before it
    /// are unavailable.
    static bool canUndoRedo(AssetSession* session, bool undo);
    /// The step of the asset at that index; null if there is none.
    static const Vs::TransactionNode* getTxnFromIndex(AssetSession* session, int index, bool undo);

    /// The owner of the steps in the lists and tooltips: the session's asset or, if a tool handles its own
    /// steps, the one that holds these. Null only for a tool that changes no asset.
    static const Vs::TransactionNode* getControllingTxn(AssetSession* session,
                                                        EMidCommandUndoRedoContext context);
    static const Vs::TransactionNode* getControllingTxn(AssetSession* session, bool mid);

    void onListSelectionChanged(Info* item) override;
    void onUpdateTooltip(ToolTipInfo& tooltip) override;

protected:
    bool onIsApplicable(CommandContext* context) const override;
    bool onIsVisible(CommandContext*) const override { return true; }
    CommandBase* onCreateCommand(CommandContext* context) override;
    InputControl* onInputControl() override;

private:
    std::wstring undoRedoName(const std::wstring& step) const;
    /// Those steps that a user can recognize by a command, the nearest first.
    OwnedList::Items populateListItems(const Vs::TransactionNode& txn) const;
    /// The steps of the active tool, under the names it gave them.
    OwnedList::Items stepsOfTool(const Vs::TransactionNode& txn, const CommandBase& tool) const;
    int getTxnIndex(const Info* item) const;

    bool m_isUndo;
    OwnedList m_list;
};

/// What the tooltip of undo, or redo, says will happen; empty if nothing would.
std::wstring txnTooltip(bool undo);

} // namespace Vu::Commands
