#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/Transaction.h"
#include "Server/DataModel/TransactionMgr.h"
#include "Tests/Server/DataModel/Fixture.h"
#include "Tests/Support/Seed.h"

#include <random>

using namespace Vs;

namespace {

class Watcher : public AssetEventSite
{
public:
    Watcher() { AssetEventSource::get()->subscribe(this); }
    ~Watcher() override { AssetEventSource::get()->unsubscribe(this); }
    void assetComponentsChanged(ComponentsEvent*) override { ++components; }
    void assetSettingsChanged(AssetEvent* event) override { seen.push_back(event->asset()->setting("a")); }

    int components = 0;
    std::vector<std::wstring> seen; ///< The value of "a" at each notification of a change.
};

/// The model and the settings, as text.
std::string stateOf(const Asset& asset)
{
    std::string state = digestOf(asset);
    for (const auto& [key, value] : asset.settings())
        state += key + "=" + testing::PrintToString(value) + ";";
    return state;
}

} // namespace

class HistoryTest : public DataModelTest
{
protected:
    /// One step that does what the number's bits say: adds a box, sets one value, removes or sets another.
    void step(Asset* asset, unsigned what, unsigned number)
    {
        Transaction transaction(asset, L"Step " + std::to_wstring(number));
        if (what & 1) {
            ASSERT_TRUE(ModelBuilder(asset).box(1 + number, 1, 1, {}, status));
        }
        if (what & 2)
            asset->setting("a", std::to_wstring(number));
        if (what & 4)
            asset->setting("b", asset->setting("b").empty() ? L"b" : L"");
        transaction.commit();
    }
};

TEST_F(HistoryTest, AStepOfSettingsIsUndoneWithoutTheKernel)
{
    Asset* asset = newAsset();
    asset->markClean();
    const Watcher watcher;
    step(asset, 2, 1);
    EXPECT_TRUE(asset->isDirty(false));
    EXPECT_EQ(Transaction::undoName(asset), L"Step 1");
    ASSERT_TRUE(Transaction::undo(asset));
    EXPECT_EQ(asset->setting("a"), L"");
    EXPECT_EQ(Transaction::redoName(asset), L"Step 1");
    ASSERT_TRUE(Transaction::redo(asset));
    EXPECT_EQ(watcher.seen, (std::vector<std::wstring>{L"1", L"", L"1"}));
    EXPECT_FALSE(Transaction::redo(asset));
    EXPECT_FALSE(asset->data().source().kernelLoaded());
    EXPECT_EQ(watcher.components, 0);
}

TEST_F(HistoryTest, WhatIsAbortedOrComesBackToWhatItWasLeavesNoStep)
{
    Asset* asset = newAsset();
    step(asset, 7, 1);
    asset->markClean();
    const std::string before = stateOf(*asset);
    const Watcher watcher;
    {
        Transaction transaction(asset, L"Given up");
        asset->setting("a", L"2");
        asset->setting("a", L"3");
        asset->setting("c", L"new");
        ASSERT_TRUE(ModelBuilder(asset).box(5, 5, 5, {}, status));
        EXPECT_FALSE(Transaction::undo(asset));
    }
    EXPECT_EQ(stateOf(*asset), before);
    EXPECT_EQ(watcher.seen.back(), L"1");
    {
        Transaction transaction(asset, L"To and fro");
        asset->setting("a", L"2");
        asset->setting("a", L"1");
        transaction.commit();
    }
    EXPECT_EQ(Transaction::undoSteps(asset), 1u);
    EXPECT_FALSE(asset->isDirty(false));
    EXPECT_FALSE(asset->isSmudge());
    // Outside of every transaction there is nothing to undo.
    asset->setting("c", L"outside");
    EXPECT_TRUE(asset->isSmudge());
    EXPECT_EQ(Transaction::undoSteps(asset), 1u);
}

TEST_F(HistoryTest, AnInnerTransactionsSettingsGoWithTheOuterOne)
{
    Asset* asset = newAsset();
    Transaction outer(asset, L"Outer");
    asset->setting("a", L"outer");
    {
        Transaction inner(asset, L"Inner");
        asset->setting("a", L"inner");
        inner.abort();
    }
    outer.commit();
    EXPECT_EQ(asset->setting("a"), L"");
    EXPECT_EQ(Transaction::undoSteps(asset), 0u);
}

TEST_F(HistoryTest, ModelAndSettingsGoThroughTheSameStates)
{
    std::mt19937 random(TestSupport::seed());
    Asset* asset = newAsset();
    std::vector<std::string> states{stateOf(*asset)};
    for (unsigned number = 1; number <= 40; ++number) {
        while (states.size() > 1 && random() % 3 == 0) {
            ASSERT_TRUE(Transaction::undo(asset));
            states.pop_back();
            ASSERT_EQ(stateOf(*asset), states.back());
        }
        step(asset, 1 + unsigned(random() % 7), number);
        states.push_back(stateOf(*asset));
        ASSERT_EQ(Transaction::redoSteps(asset), 0u);
        ASSERT_EQ(Transaction::undoSteps(asset), states.size() - 1);
    }
    for (size_t i = states.size() - 1; i-- > 0;) {
        ASSERT_TRUE(Transaction::undo(asset));
        ASSERT_EQ(stateOf(*asset), states[i]);
    }
    for (size_t i = 1; i < states.size(); ++i) {
        ASSERT_TRUE(Transaction::redo(asset));
        ASSERT_EQ(stateOf(*asset), states[i]);
    }
}

TEST_F(HistoryTest, TheOldestStepsAreForgottenTogether)
{
    Asset* asset = newAsset();
    std::vector<std::string> states{stateOf(*asset)};
    for (unsigned number = 1; number <= 130; ++number) {
        // Most belong to the model, so that its own list is full as well.
        step(asset, number % 10 == 0 ? 2 : 1, number);
        states.push_back(stateOf(*asset));
    }
    const unsigned kept = Transaction::undoSteps(asset);
    EXPECT_GE(kept, 50u);
    EXPECT_LT(kept, 130u);
    for (unsigned i = 1; i <= kept; ++i) {
        ASSERT_TRUE(Transaction::undo(asset));
        ASSERT_EQ(stateOf(*asset), states[130 - i]);
    }
    EXPECT_FALSE(Transaction::undo(asset));
}

TEST_F(HistoryTest, AStepStaysWhatItIsWhileItIsUndoneAndRedone)
{
    Asset* asset = newAsset();
    for (unsigned number = 1; number <= 4; ++number)
        step(asset, 3, number);
    const std::string last = stateOf(*asset);
    TransactionMgr transactions(asset);
    const TransactionNode* session = transactions.sessionTransaction();
    EXPECT_EQ(transactions.currentTransaction(), session);
    const TransactionNode* second = session->doneChanges()[1].get();
    EXPECT_EQ(second->userName(), L"Step 2");
    EXPECT_EQ(second->parent(), session);
    EXPECT_FALSE(transactions.canRedo(second));
    ASSERT_TRUE(transactions.undo(second));
    EXPECT_EQ(asset->setting("a"), L"1");
    EXPECT_EQ(session->undoneChanges().size(), 3u);
    EXPECT_EQ(session->transactionToRedo(), second);
    EXPECT_FALSE(transactions.undo(second));
    ASSERT_TRUE(transactions.redo(session->undoneChanges().back().get()));
    EXPECT_EQ(stateOf(*asset), last);

    const Transaction open(asset, L"Open");
    EXPECT_EQ(transactions.currentTransaction()->userName(), L"Open");
    EXPECT_FALSE(transactions.currentTransaction()->isChanged());
    asset->setting("a", L"open");
    EXPECT_TRUE(transactions.currentTransaction()->isChanged());
    EXPECT_FALSE(transactions.currentTransaction()->isCommitted());
    EXPECT_FALSE(transactions.canUndo(nullptr));
    EXPECT_FALSE(transactions.undo(second));
    EXPECT_EQ(asset->setting("a"), L"open");
}
