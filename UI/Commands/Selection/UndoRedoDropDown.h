#pragma once

#include "Server/DataModel/TransactionNode.h"
#include "UI/Commands/CommandRow.h"
#include "UI/Commands/OwnedList.h"

namespace Vu::Commands {

/// The list beside the button of undo, or of redo: its steps, the nearest first. Choosing one takes all of
/// them to that one. There are two definitions of this class.
class UndoRedoDropDownCommandDef
    : public Vs::Implements<UndoRedoDropDownCommandDef, CommandDefinition, IListControlHandler>
{
public:
    static Info* UndoDropDownInfo();
    static Info* RedoDropDownInfo();
    /// Makes the two at the first call; they aren't among the add-in's members.
    static void createCommandDefs();
    explicit UndoRedoDropDownCommandDef(bool isUndo);

    /// "TxnIndex": the place in the list, from 0.
    static const Vs::UniqueString* txnIndexArgumentName();

    /// Whether the session's active command can take a step of its own. False without either.
    static bool canMidCmdUndoRedo(AssetSession* session, bool undo);
    /// What the active session's active command answers; None without one.
    static EMidCommandUndoRedoContext getMidCmdUndoRedoContext(bool undo);
    /// Whether anything can be taken back, or done again. A running tool that changes the model bars the
    /// steps that were before it.
    static bool canUndoRedo(AssetSession* session, bool undo);
    /// The step of the asset at that place; null if there is none.
    static const Vs::TransactionNode* getTxnFromIndex(AssetSession* session, int index, bool undo);

    /// Of whose steps the lists and tooltips speak: the session's or, if a tool takes its own steps, the one
    /// that holds these. Null only for a tool that changes no asset.
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
    /// Those steps that a user can tell by a command, the nearest first.
    OwnedList::Items populateListItems(const Vs::TransactionNode& txn) const;
    /// The steps of the active tool, by the names that it gave them.
    OwnedList::Items stepsOfTool(const Vs::TransactionNode& txn, const CommandBase& tool) const;
    int getTxnIndex(const Info* item) const;

    bool m_isUndo;
    OwnedList m_list;
};

/// What a tooltip of undo, or redo, says will happen; empty if nothing would.
std::wstring txnTooltip(bool undo);

} // namespace Vu::Commands
