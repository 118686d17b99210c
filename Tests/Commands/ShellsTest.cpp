#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/DocumentType.h"
#include "Server/Scene/Camera.h"
#include "Tests/Commands/CommandsProgram.h"
#include "UI/Base/Application.h"
#include "UI/Base/AssetSession.h"
#include "UI/Base/Command/CommandContext.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/GraphicsCanvas.h"
#include "UI/Base/GraphicsView.h"
#include "UI/Base/SessionMgr.h"
#include "UI/Base/SplitViewEvents.h"
#include "UI/Base/SplitViewMgr.h"
#include "UI/Base/ViewMgr.h"
#include "UI/Base/Workspace.h"
#include "UI/Base/WorkspaceMgr.h"
#include "UI/Commands/Camera/ActiveView.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/FindShell.h"
#include "UI/Commands/Shells/ManagementShell.h"
#include "UI/Commands/Shells/SharedWorkflows.h"

using namespace Vu;
using namespace Vu::Commands;

namespace {

class ShellsTest : public CommandsTests::WithProgram
{
protected:
    static ShellMgr* shells() { return WorkspaceMgr::activeWorkspace()->shellManager(); }
    static AssetShell* shell() { return SharedWorkflows::activeAssetShell(); }
    static bool applicable(const wchar_t* id)
    {
        CommandContext context = CommandContext::activeContext();
        return CommandDefinitionMgr::get()->findCommandDefinitionById(id)->isApplicable(&context);
    }
};

class SessionChanges : public SessionEventSite
{
public:
    SessionChanges() { SessionEventSource::get()->subscribe(this); }
    ~SessionChanges() override { SessionEventSource::get()->unsubscribe(this); }
    void currentSessionChanged(SessionEvent*) override { ++count; }
    int count = 0;
};

TEST_F(ShellsTest, NextAndPreviousWalkTheListAndStopAtItsEnds)
{
    answer(L"Design.Sample");
    AssetSession* first = activeSession();
    EXPECT_FALSE(applicable(L"NextAssetCommand"));
    EXPECT_FALSE(applicable(L"PreviousAssetCommand"));
    answer(L"Design.Sample");
    AssetSession* second = activeSession();
    ASSERT_NE(first, second);
    EXPECT_EQ(shell()->nextAssetSession(), nullptr);
    EXPECT_EQ(shell()->previousAssetSession(), first);
    answer(L"VuCommands.PreviousAssetCmd");
    EXPECT_EQ(activeSession(), first);
    EXPECT_EQ(shell()->previousAssetSession(), nullptr);
    answer(L"VuCommands.NextAssetCmd");
    EXPECT_EQ(activeSession(), second);
}

TEST_F(ShellsTest, TheCurrentSessionSetAgainFiresNothing)
{
    answer(L"Design.Sample");
    SessionChanges changes;
    shell()->currentAssetSession(activeSession(), false, false);
    shell()->currentAssetSession(activeSession(), true, false);
    EXPECT_EQ(changes.count, 0);
}

TEST_F(ShellsTest, ARemovedDocumentStaysOpenUntilTheDeferredTasksHaveRun)
{
    answer(L"Design.Sample");
    AssetSession* session = activeSession();
    shell()->remove(session, false);
    EXPECT_EQ(shell()->currentAssetSession(), nullptr);
    EXPECT_FALSE(shell()->has(session));
    EXPECT_EQ(documents(), 1u);
    Application::get()->flushDeferredTasks();
    EXPECT_EQ(documents(), 0u);
}

TEST_F(ShellsTest, AddingASessionTwiceListsItOnceAndHoldsItOnce)
{
    answer(L"Design.Sample");
    AssetSession* session = activeSession();
    const unsigned locks = Vs::DocumentMgr::get()->document(0)->locks();
    shell()->add(session);
    EXPECT_EQ(shell()->assetSessions().size(), 1u);
    EXPECT_EQ(Vs::DocumentMgr::get()->document(0)->locks(), locks);
}

TEST_F(ShellsTest, TheHomeScreenComesAndGoesByLine)
{
    EXPECT_FALSE(applicable(L"AssetShellCommand"));
    answer(L"Design.Sample");
    EXPECT_EQ(shells()->activeShell(), shell());
    EXPECT_FALSE(applicable(L"AssetShellCommand"));
    answer(L"VuCommands.ManagementShellCmd");
    EXPECT_EQ(shells()->activeShell(), findShell<ManagementShell>(shells()));
    EXPECT_EQ(SessionMgr::get()->activeAssetSession(), nullptr);
    EXPECT_TRUE(applicable(L"AssetShellCommand"));
    answer(L"VuCommands.AssetShellCmd");
    EXPECT_NE(shells()->activeShell(), shell());
    answer(L"VuCommands.AssetShellCmd " + shell()->currentAssetSession()->serialize());
    EXPECT_EQ(shells()->activeShell(), shell());
}

TEST_F(ShellsTest, TheLastClosedDocumentGivesWayToTheHomeScreen)
{
    answer(L"Design.Sample");
    answer(L"VuCommands.CloseDocumentCmd");
    EXPECT_EQ(shells()->activeShell(), findShell<ManagementShell>(shells()));
}

TEST_F(ShellsTest, ClosingOneAssetOfTwoDocumentsLeavesTheOther)
{
    answer(L"Design.Sample");
    answer(L"Design.Sample");
    answer(L"VuCommands.CloseAssetCmd");
    EXPECT_EQ(documents(), 1u);
}

TEST_F(ShellsTest, TheStoredFormOfTheLayoutRebuildsNothing)
{
    answer(L"Design.Sample");
    Arrangement* arrangement = shell()->arrangement();
    ASSERT_NE(arrangement, nullptr);
    shell()->updateArrangement(shell()->arrangementFilter());
    EXPECT_EQ(shell()->arrangement(), arrangement);
}

TEST_F(ShellsTest, AnActivatedViewOfTheCurrentSessionChangesNothing)
{
    answer(L"Design.Sample");
    SessionChanges changes;
    SplitViewEvent event(graphicsViewOf(activeSession()));
    SplitViewEventSource::get()->fireSplitViewActivate(&event);
    EXPECT_EQ(changes.count, 0);
}

TEST_F(ShellsTest, TheDefaultShellIsTheHomeScreenWhateverWasProposed)
{
    WorkspaceShellEvent event(WorkspaceMgr::activeWorkspace(), shell());
    WorkspaceEventSource::get()->fireWorkspaceDefaultShell(&event);
    EXPECT_EQ(event.shell(), findShell<ManagementShell>(shells()));
}

TEST_F(ShellsTest, InASplitLayoutEachCanvasGetsAViewAndTheActiveOneAloneIsServedAfterwards)
{
    answer(L"Design.Sample");
    shell()->updateArrangement(L"SideBySide");
    std::vector<GraphicsCanvas*> canvases;
    GraphicsCanvas::allCanvases(canvases);
    ASSERT_EQ(canvases.size(), 2u);
    EXPECT_EQ(activeSession()->viewManager()->views().size(), 2u);
    ASSERT_TRUE(canvases[0]->view() && canvases[1]->view());
    EXPECT_NE(canvases[0]->view(), canvases[1]->view());

    GraphicsView* other = canvases[1]->view();
    shell()->unbindView(nullptr);
    EXPECT_TRUE(canvases[0]->view() && canvases[1]->view() == other);
    ASSERT_EQ(SplitViewMgr::get()->activeCanvas(), canvases[0]);
    shell()->bindView(false, false);
    EXPECT_EQ(activeSession()->viewManager()->views().size(), 2u);
    shell()->unbindView(canvases[0]->view());
    EXPECT_EQ(canvases[0]->view(), nullptr);
    EXPECT_EQ(SplitViewMgr::get()->visibleViews(), 1);
    shell()->bindView(false, false);
    shell()->updateArrangement(L"");
    EXPECT_EQ(SplitViewMgr::get()->visibleViews(), 1);
}

TEST_F(ShellsTest, TheLinesOfSplitViewsLayOutCountAndGoAround)
{
    EXPECT_EQ(failure(L"SplitView.NewDoc"), L"Invalid Asset Type");
    EXPECT_EQ(failure(L"SplitView.NewDoc NoSuchAssetType"), L"Invalid Asset Type");
    failure(L"SplitView.NextAsset");
    answer(L"Design.Sample");
    AssetSession* first = activeSession();
    answer(L"SplitView.ResetLayout Quad");
    EXPECT_EQ(shell()->arrangementFilter(), L"Quad");
    EXPECT_EQ(answer(L"SplitView.ViewCount"), L"The number of visible views is 4\n");
    answer(L"SplitView.NewDoc SimulationAssetType");
    AssetSession* second = activeSession();
    ASSERT_NE(second, first);
    EXPECT_EQ(second->asset()->document()->documentType()->identifier(), "SimulationDocType");
    EXPECT_EQ(SplitViewMgr::get()->activeCanvas()->view(), graphicsViewOf(second));
    answer(L"SplitView.NextAsset");
    EXPECT_EQ(activeSession(), first);
    answer(L"SplitView.NextAsset");
    EXPECT_EQ(activeSession(), second);
    answer(L"SplitView.CancelCommandInOtherView");
    EXPECT_EQ(activeSession(), second);
    answer(L"SplitView.DefaultLayout");
    EXPECT_EQ(answer(L"SplitView.ViewCount"), L"The number of visible views is 1\n");
}

TEST_F(ShellsTest, TheWelcomeComesAtEachActivationButNotInTestRuns)
{
    Vs::Tasks* idle = Application::get()->idleTasks();
    answer(L"Design.Sample");
    idle->flush();
    answer(L"VuCommands.ManagementShellCmd");
    EXPECT_TRUE(idle->empty());
    for (int i = 0; i < 2; ++i) {
        answer(L"VuCommands.AssetShellCmd " + shell()->currentAssetSession()->serialize());
        idle->flush();
        Application::testing(false);
        answer(L"VuCommands.ManagementShellCmd");
        Application::testing(true);
        EXPECT_FALSE(idle->empty());
        idle->flush();
    }
}

class CameraTest : public CommandsTests::WithProgram
{
};

TEST_F(CameraTest, WhatDumpPrintsSetReproduces)
{
    answer(L"Design.Sample");
    answer(L"Camera.Set 100.125,-200,300 1,2,3 0,0.6,0.8 0.1 54321.75 33.3 44.4 1");
    const std::wstring dump = answer(L"Camera.Dump");
    EXPECT_EQ(dump,
              L"Camera: E100.125,-200,300 P1,2,3 U0,0.6,0.8 Near0.1 Far54321.75 Width33.3 Height44.4 1");
    answer(L"Camera.ZoomIn 3");
    EXPECT_NE(answer(L"Camera.Dump"), dump);
    answer(L"Camera.Set 100.125,-200,300 1,2,3 0,0.6,0.8 0.1 54321.75 33.3 44.4 1");
    EXPECT_EQ(answer(L"Camera.Dump"), dump);
}

TEST_F(CameraTest, SetTakesExactlyEightParametersOfTheRightKinds)
{
    answer(L"Design.Sample");
    const std::wstring dump = answer(L"Camera.Dump");
    const std::wstring message = L"Not enough parameters specified on command line.";
    EXPECT_EQ(failure(L"Camera.Set"), message);
    EXPECT_EQ(failure(L"Camera.Set 1,1,1 0,0,0 0,0,1 1 2 3 4"), message);
    EXPECT_EQ(failure(L"Camera.Set 1,1,1 0,0,0 0,0,1 1 2 3 4 1 9"), message);
    failure(L"Camera.Set nowhere 0,0,0 0,0,1 1 2 3 4 1");
    failure(L"Camera.Set 1,1,1 0,0,0 0,0,1 1 2 3 4 flat");
    EXPECT_EQ(answer(L"Camera.Dump"), dump);
}

TEST_F(CameraTest, ZoomingWithoutAViewOnlySaysSo)
{
    EXPECT_EQ(answer(L"Camera.ZoomIn"), L"Zoom in.");
    EXPECT_EQ(answer(L"Camera.ZoomOut"), L"Zoom Out.");
    EXPECT_NE(failure(L"Camera.ZoomIn fast").find(L"\"fast\" is no number."), std::wstring::npos);
}

TEST_F(CameraTest, FitBringsAStrayCameraBackToTheModel)
{
    answer(L"Design.Sample");
    answer(L"Commands.Start FitCommand");
    const GkPoint3d target = activeCamera()->target();
    answer(L"Camera.Set 9000,9000,9000 8000,8000,8000 0,0,1 1 100000 5 5 2");
    answer(L"Commands.Start FitCommand");
    EXPECT_LT(activeCamera()->target().distanceTo(target), 60.0);
    EXPECT_GT(activeCamera()->extentsWidth(), 100.0);
}

TEST_F(CameraTest, SleepAnswersWithItsDelay)
{
    EXPECT_EQ(answer(L"Sleeper.Sleep 0"), L"Sleep 0 ms.");
    failure(L"Sleeper.Sleep soon");
    failure(L"Sleeper.Sleep -1");
}

} // namespace
