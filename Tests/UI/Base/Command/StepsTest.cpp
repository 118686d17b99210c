// Steps inside a running command, which change a real model.

#include "Server/DataModel/ModelDigest.h"
#include "Server/DataModel/SteppedTransaction.h"
#include "Server/DataModel/TransactionMgr.h"
#include "Server/DataModel/TransactionStepUserCache.h"
#include "Tests/UI/Base/Command/WithAsset.h"
#include "UI/Base/Command/Command.h"
#include "UI/Base/Command/Info.h"

using namespace Vu;
using CommandTest::AddBox;

namespace {

using EKind = CommandInputValueChangeEvent::EKind;

Info kEdge(L"EdgeInput", L"Edge", nullptr);
Info kNote(L"NoteInput", L"Note", nullptr);

/// Adds a box for each edge that is entered, and shows one while it is typed. A note is not a step.
class Pile : public Vs::Implements<Pile, Command>
{
public:
    Pile(CommandDefinition* definition, CommandContext* context) : Implements(definition, context) {}

    CommandInputSet* onCreateCommandInputs() override
    {
        CommandInputSet* inputs = CommandInputSet::make(this);
        edge = IntegerValueCommandInput::make(inputs, 1, &kEdge);
        note = StringValueCommandInput::make(inputs, 2, &kNote);
        return inputs;
    }
    void onCommandInputEventSink(CommandInputEvent* event) override
    {
        const auto* change = Vs::cast<CommandInputValueChangeEvent>(event);
        if (change && change->commandInput() == edge)
            add(edge->value(), change->kind() == EKind::Typing);
    }
    void onValidateInputs(CommandInputStatus&, bool) override {}
    void onClearCommandRequests(bool) override {}

    bool add(int size, bool preview)
    {
        AddBox request(size);
        Vs::Status status;
        return executeRequest(&request, preview, {.asStep = true}, status);
    }

    IntegerValueCommandInput* edge = nullptr;
    StringValueCommandInput* note = nullptr;
};

Info kPile(L"PileCommand", L"Pile", nullptr);

class Steps : public CommandTest::WithAsset
{
protected:
    void SetUp() override
    {
        WithAsset::SetUp();
        // One step before the command, and one that could be redone.
        for (int i = 0; i < 2; ++i)
            AddBox(1).execute(asset, status);
        Vs::Transaction::undo(asset);
        before = Vs::modelDigest(*asset);
        std::ignore = session.executeCommand(&definition, CommandContext());
        pile = definition.latest;
    }

    CommandTest::DefinitionOf<Pile> definition{kPile};
    Pile* pile = nullptr;
    uint64_t before = 0;
};

} // namespace

TEST_F(Steps, AreTakenBackAndDoneAgainWithTheInputs)
{
    std::vector<uint64_t> digests{before};
    for (const int edge : {10, 20, 30}) {
        pile->edge->value(edge);
        digests.push_back(Vs::modelDigest(*asset));
    }
    EXPECT_EQ(boxes(), 4u);
    EXPECT_EQ(Vs::Transaction::undoSteps(asset), 1u) << "the command isn't over";
    for (const size_t done : {2u, 1u, 0u}) {
        pile->undoStep();
        EXPECT_EQ(Vs::modelDigest(*asset), digests[done]);
        EXPECT_EQ(pile->edge->value(), static_cast<int>(done) * 10);
        EXPECT_EQ(pile->canUndoStep(), done > 0);
    }
    pile->redoStep();
    pile->redoStep();
    EXPECT_EQ(Vs::modelDigest(*asset), digests[2]);
    EXPECT_EQ(pile->edge->value(), 20);
    pile->edge->value(40);
    EXPECT_FALSE(pile->canRedoStep());
    EXPECT_EQ(boxes(), 4u);
}

TEST_F(Steps, AreOneStepOfTheAssetInTheEnd)
{
    for (const int edge : {10, 20, 30})
        pile->edge->value(edge);
    pile->undoStep();
    const uint64_t done = Vs::modelDigest(*asset);
    pile->destroy(ETerminationReason::Commit);
    EXPECT_EQ(Vs::modelDigest(*asset), done);
    EXPECT_EQ(Vs::Transaction::undoSteps(asset), 2u);
    EXPECT_EQ(Vs::Transaction::undoName(asset), L"Pile");
    EXPECT_EQ(Vs::Transaction::redoSteps(asset), 0u);
    EXPECT_TRUE(Vs::Transaction::undo(asset));
    EXPECT_EQ(Vs::modelDigest(*asset), before);
    EXPECT_TRUE(Vs::Transaction::redo(asset));
    EXPECT_EQ(Vs::modelDigest(*asset), done);
    EXPECT_TRUE(Vs::Transaction::undo(asset));
    EXPECT_TRUE(Vs::Transaction::undo(asset));
    EXPECT_EQ(boxes(), 0u);
}

TEST_F(Steps, AreNothingIfTheCommandIsCancelled)
{
    pile->edge->value(10);
    pile->edge->value(20);
    pile->undoStep();
    pile->destroy(ETerminationReason::Cancel);
    EXPECT_EQ(Vs::modelDigest(*asset), before);
    EXPECT_EQ(Vs::Transaction::undoSteps(asset), 1u);
    EXPECT_TRUE(Vs::Transaction::redo(asset)) << "what could be redone before can be again";
    EXPECT_EQ(boxes(), 2u);

    std::ignore = session.executeCommand(&definition, CommandContext());
    definition.latest->edge->value(10);
    while (definition.latest->canUndoStep())
        definition.latest->undoStep();
    definition.latest->destroy(ETerminationReason::Commit);
    EXPECT_EQ(Vs::Transaction::undoSteps(asset), 2u) << "nothing is left of it";
}

TEST_F(Steps, LeaveOutWhatIsOnlyShownAndWhatFails)
{
    pile->edge->value(10);
    pile->edge->typed(L"20", EKind::Typing);
    EXPECT_EQ(boxes(), 3u);
    pile->undoStep();
    EXPECT_EQ(boxes(), 1u);
    EXPECT_EQ(pile->edge->value(), 0);
    EXPECT_FALSE(pile->add(0, false));
    EXPECT_FALSE(pile->canUndoStep());
    EXPECT_EQ(Vs::modelDigest(*asset), before);
    EXPECT_TRUE(pile->canRedoStep()) << "what failed changes nothing";

    // Values entered without a step stay when steps are undone.
    pile->note->value(L"top");
    pile->edge->value(10);
    pile->undoStep();
    EXPECT_EQ(pile->note->value(), L"top");
    EXPECT_EQ(pile->edge->value(), 0);
}

TEST_F(Steps, StandInTheTreeOfTransactionsBelowTheirCommand)
{
    const Vs::TransactionMgr transactions(asset);
    EXPECT_EQ(pile->getPossibleMidCommandUndoContext(), EMidCommandUndoRedoContext::None);
    pile->edge->value(10);
    pile->edge->value(20);
    pile->undoStep();
    EXPECT_EQ(pile->getPossibleMidCommandUndoContext(), EMidCommandUndoRedoContext::ControllingStep);
    const Vs::TransactionNode* whole = transactions.currentTransaction();
    EXPECT_EQ(whole->parent(), transactions.sessionTransaction());
    ASSERT_EQ(whole->stepUserCaches(true).size(), 1u);
    EXPECT_EQ(whole->stepUserCaches(true)[0]->getCacheName(), L"Pile - Step 1");
    EXPECT_EQ(whole->stepUserCaches(false)[0]->getCacheName(), L"Pile - Step 2");
    EXPECT_TRUE(whole->canDoMidStep(true) && whole->canDoMidStep(false));
    EXPECT_FALSE(transactions.canUndo(nullptr)) << "the command is amid its change";

    pile->beginStep(true, true);
    EXPECT_EQ(pile->getPossibleMidCommandUndoContext(), EMidCommandUndoRedoContext::Step);
    EXPECT_EQ(transactions.currentTransaction()->parent(), whole);
    EXPECT_EQ(transactions.currentTransaction()->userName(), L"Pile Inner Step");
    AddBox(30).execute(asset, status);
    EXPECT_TRUE(transactions.currentTransaction()->isChanged());
    pile->undoStep();
    EXPECT_EQ(boxes(), 2u) << "the open step is the first to go";
    pile->redoStep();
    EXPECT_EQ(boxes(), 3u);

    // Another command's change is undone along with the step before it.
    AddBox(40).execute(asset, status);
    EXPECT_EQ(boxes(), 4u);
    pile->undoStep();
    EXPECT_EQ(boxes(), 2u);
    pile->redoStep();
    EXPECT_EQ(boxes(), 4u);
    pile->destroy(ETerminationReason::Cancel);
    EXPECT_EQ(Vs::modelDigest(*asset), before);
}
