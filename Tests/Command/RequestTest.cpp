#include "Server/DataModel/Request.h"

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Server/DataModel/Transaction.h"
#include "Tests/Command/Recorder.h"

#include <gtest/gtest.h>

using namespace Vu;
using CommandTest::Definition;

namespace {

/// Adds a box of some edge to the model; an edge of 0 is no box.
class AddBox : public Vs::Request
{
public:
    explicit AddBox(double edge) : Request(L"Box"), m_edge(edge) {}

protected:
    void onExecute(Vs::Asset& asset, Vs::Status& status) override
    {
        Vs::ModelBuilder(&asset).box(m_edge, m_edge, m_edge, {}, status);
    }

private:
    double m_edge;
};

Vs::DocumentType& documentType()
{
    static Vs::DocumentType type("CommandTestDocType", L"Design", L".ctd");
    return type;
}

Vs::AssetType& assetType()
{
    static Vs::AssetType type("CommandTestAssetType", L"Design", "CommandTestDocType");
    return type;
}

/// An interactive command that runs on a real asset.
class Requests : public testing::Test
{
protected:
    void SetUp() override
    {
        Vs::DocumentMgr::get()->registerDocumentType(&documentType());
        Vs::AssetTypeMgr::get()->registerType(&assetType());
        Vs::Document* document = Vs::DocumentMgr::get()->create(&assetType(), status);
        ASSERT_NE(document, nullptr);
        asset = document->activeAsset();
        host.assetOfSessions = asset;
        session.executeCommand(&sketch, CommandContext());
        ASSERT_NE(session.activeCommand(), nullptr);
    }
    void TearDown() override
    {
        session.terminateAll(ETerminationReason::Cancel);
        while (Vs::DocumentMgr::get()->documents() > 0)
            Vs::DocumentMgr::get()->close(Vs::DocumentMgr::get()->document(0u));
        Vs::AssetTypeMgr::get()->unregisterType(&assetType());
        Vs::DocumentMgr::get()->unregisterDocumentType(&documentType());
    }

    bool addBox(double edge, bool preview, ExecutionOptions options = {})
    {
        AddBox request(edge);
        return session.activeCommand()->executeRequest(&request, preview, options, status);
    }
    size_t boxes() const { return asset->components()->children.size(); }

    CommandTest::Log log;
    CommandTest::Host host;
    Definition sketch{log, "Sketch", true};
    CommandMgr session{CommandTest::Host::session(1)};
    Vs::Asset* asset = nullptr;
    Vs::Status status;
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

TEST_F(Requests, MayBeStepsOfTheCommand)
{
    addBox(10.0, false, {.asStep = true});
    addBox(20.0, false, {.asStep = true});
    CommandBase& command = *session.activeCommand();
    EXPECT_TRUE(command.canUndoStep());
    command.undoStep();
    EXPECT_TRUE(command.canUndoStep() && command.canRedoStep());
}
