#include "Tests/UI/Base/Command/WithAsset.h"

using namespace Vu;
using CommandTest::AddBox;
using CommandTest::Definition;

namespace {

/// An interactive command that runs on a real asset.
class Requests : public CommandTest::WithAsset
{
protected:
    void SetUp() override
    {
        WithAsset::SetUp();
        std::ignore = session.executeCommand(&sketch, CommandContext());
        ASSERT_NE(session.activeCommand(), nullptr);
    }

    bool addBox(double edge, bool preview, ExecutionOptions options = {})
    {
        AddBox request(edge);
        return session.activeCommand()->executeRequest(&request, preview, options, status);
    }

    Definition sketch{log, "Sketch", true};
};

} // namespace

TEST_F(Requests, AreMadeAsOneStepOfUndo)
{
    EXPECT_TRUE(addBox(10.0, false));
    EXPECT_EQ(boxes(), 1u);
    EXPECT_EQ(Vs::Transaction::undoSteps(asset), 1u);
    EXPECT_EQ(Vs::Transaction::undoName(asset), L"Box");
    EXPECT_TRUE(Vs::Transaction::undo(asset));
    EXPECT_EQ(boxes(), 0u);
}

TEST_F(Requests, ThatFailLeaveTheModelAsItWasAndSayWhy)
{
    EXPECT_FALSE(addBox(0.0, false, {.asStep = true}));
    EXPECT_TRUE(status.isError());
    EXPECT_EQ(boxes(), 0u);
    EXPECT_EQ(Vs::Transaction::undoSteps(asset), 0u);
    EXPECT_FALSE(session.activeCommand()->canUndoStep());
    host.assetOfSessions = nullptr;
    status.clear();
    EXPECT_FALSE(addBox(10.0, false));
    EXPECT_TRUE(status.isError());
}

TEST_F(Requests, ThatAreOnlyShownAreTakenBackByTheNextAndByTheEnd)
{
    EXPECT_TRUE(addBox(10.0, true));
    EXPECT_EQ(boxes(), 1u);
    EXPECT_TRUE(addBox(20.0, true));
    EXPECT_EQ(boxes(), 1u);
    EXPECT_TRUE(addBox(30.0, false));
    EXPECT_EQ(boxes(), 1u);
    EXPECT_EQ(Vs::Transaction::undoSteps(asset), 1u);
    EXPECT_TRUE(addBox(40.0, true));
    EXPECT_EQ(boxes(), 2u);
    session.activeCommand()->destroy(0);
    EXPECT_EQ(boxes(), 1u);
}
