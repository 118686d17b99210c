#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/DocumentType.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/UI/Commands/Navigation.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/SplitViewEvents.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/View/ViewMgr.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Camera/ActiveView.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/FindShell.h"
#include "UI/Commands/Shells/ManagementShell.h"
#include "UI/Commands/Shells/SharedWorkflows.h"

#include <QApplication>
#include <QImage>
#include <QTest>
#include <QWidget>

#include <cmath>
#include <cwchar>

using namespace Vu;
using namespace Vu::Commands;

namespace {

class ShellsTest : public CommandsTests::WithProgram
{
protected:
    static ShellMgr* shells() { return WorkspaceMgr::activeWorkspace()->shellManager(); }
    static AssetShell* shell() { return SharedWorkflows::activeAssetShell(); }
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
    EXPECT_EQ(failure(L"VuCommands.NextAssetCmd"), L"There is no next asset.");
    EXPECT_EQ(failure(L"VuCommands.PreviousAssetCmd"), L"There is no previous asset.");
    EXPECT_EQ(activeSession(), first);
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

TEST_F(ShellsTest, TheWelcomeComesAtEachActivationButNotInTestRuns)
{
    Vs::Tasks* idle = Application::get()->idleTasks();
    answer(L"Design.Sample");
    idle->flush();
    // The marker of an earlier orbit may still be waiting to be hidden.
    size_t others = idle->size();
    answer(L"VuCommands.ManagementShellCmd");
    EXPECT_EQ(idle->size(), others);
    for (int i = 0; i < 2; ++i) {
        answer(L"VuCommands.AssetShellCmd " + shell()->currentAssetSession()->serialize());
        idle->flush();
        others = idle->size();
        Application::testing(false);
        answer(L"VuCommands.ManagementShellCmd");
        Application::testing(true);
        EXPECT_GT(idle->size(), others);
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
    EXPECT_NE(failure(L"Camera.ZoomIn fast").find(L"parameter 1 must be a number, not \"fast\"."),
              std::wstring::npos);
}

TEST_F(CameraTest, NonsenseIsToldAndLeavesACameraThatWorks)
{
    answer(L"Design.Sample");
    const std::pair<const wchar_t*, const wchar_t*> nonsense[] = {
        {L"5,5,5 5,5,5 0,0,1 1 100 50 50 2", L"The position is at the target."},
        {L"100,0,0 0,0,0 0,0,0 1 100 50 50 2", L"The up vector has no length."},
        {L"100,0,0 0,0,0 -7,0,0 1 100 50 50 2", L"The up vector lies along the view direction."},
        {L"100,0,0 0,0,0 0,0,1 100 100 50 50 2", L"The near distance is not below the far one."},
        {L"100,0,0 0,0,0 0,0,1 1 -100 50 50 1", L"The near distance is not below the far one."},
        {L"100,0,0 0,0,0 0,0,1 1 100 0 50 1", L"The extents are not above zero."},
        {L"100,0,0 0,0,0 0,0,1 1 100 50 -50 2", L"The extents are not above zero."},
        {L"1e200,0,0 0,0,0 0,0,1 1 100 50 50 2", L"The position or the target is too far away"},
        {L"100,0,0 0,0,0 0,1e200,0 1 100 50 50 2", L"The up vector is too long"},
        {L"100,0,0 0,0,0 0,0,1 1 1e200 50 50 2", L"The near or the far distance is too large"},
        {L"100,0,0 0,0,0 0,0,1 1 100 1e200 50 2", L"The width or the height is too large"},
        {L"100,0,0 0,0,0 0,0,1 -1 100 50 50 2", L"The near distance is not above zero."},
        {L"100,0,0 0,0,0 0,0,1 1 100 50 50 7", L"There is no projection 7"},
        {L"5,5,5 5,5,5 0,0,0 9 1 -1 0 2", L"The position is at the target. The up vector has no length. The "
                                          L"near distance is not below the far "
                                          L"one. The extents are not above zero."}};
    for (const auto& [line, message] : nonsense) {
        SCOPED_TRACE(testing::PrintToString(line));
        const std::wstring told = failure(std::wstring(L"Camera.Set ") + line);
        EXPECT_EQ(told.substr(0, std::wcslen(message)), message);
        Vs::Scene::Camera* camera = activeCamera();
        const auto usable = [&] {
            const GkPoint3d seen = graphicsViewOf(activeSession())->windowToWorld({10, 20});
            for (const double number : {camera->position().x, camera->target().y, camera->up().z, seen.x,
                                        seen.y, seen.z, camera->right().x, camera->screenUp().y})
                if (!std::isfinite(number))
                    return false;
            return camera->right().length() > 0.99 && camera->screenUp().length() > 0.99 &&
                   std::abs(camera->right().dotProduct(camera->direction())) < 1e-9;
        };
        EXPECT_TRUE(usable());
        camera->orbit(20, 10);
        camera->constrainedOrbit(15, false, {0, 0, 1}, camera->target());
        camera->zoom(1.5);
        camera->roll(0.1);
        camera->dolly({1, 2, 3});
        EXPECT_TRUE(usable());
        // The way back is the usual one.
        answer(L"Camera.Set 300,-300,300 0,0,0 0,0,1 1 1000 200 200 2");
        answer(L"Commands.Start FitCommand");
        EXPECT_TRUE(usable());
        EXPECT_GT(activeCamera()->extentsWidth(), 100.0);
    }
    for (const wchar_t* word : {L"nan", L"inf", L"-inf", L"1e999"}) {
        failure(std::wstring(L"Camera.Set ") + word + L",0,0 0,0,0 0,0,1 1 100 50 50 2");
        failure(std::wstring(L"Camera.Set 1,0,0 0,0,0 0,0,1 1 100 ") + word + L" 50 2");
    }
}

TEST_F(CameraTest, FactorsThatCannotScaleAreTold)
{
    answer(L"Design.Sample");
    const std::wstring dump = answer(L"Camera.Dump");
    for (const wchar_t* factor : {L"0", L"-1", L"-1e300"}) {
        EXPECT_NE(failure(std::wstring(L"Camera.ZoomIn ") + factor).find(L"not above zero"),
                  std::wstring::npos);
        EXPECT_NE(failure(std::wstring(L"Camera.ZoomOut ") + factor).find(L"not above zero"),
                  std::wstring::npos);
    }
    for (const wchar_t* factor : {L"1e30", L"1e-30", L"1e308"})
        EXPECT_NE(failure(std::wstring(L"Camera.ZoomIn ") + factor).find(L"any more"), std::wstring::npos);
    EXPECT_EQ(answer(L"Camera.Dump"), dump);
    EXPECT_EQ(answer(L"Camera.ZoomIn 1"), L"Zoom in.");
    EXPECT_EQ(answer(L"Camera.ZoomIn 1e-2"), L"Zoom in.");
}

TEST_F(CameraTest, ZoomingInEndsBeforeWhatIsLookedAt)
{
    answer(L"Design.New");
    answer(L"Design.Box 40 40 40");
    answer(L"Camera.Set 20,-200,20 20,20,20 0,0,1 1 1000 100 100 2");
    answer(L"Camera.ZoomIn 2");
    EXPECT_NEAR(activeCamera()->position().y, -90, 1e-9) << "towards the target, which is within the box";
    for (int i = 0; i < 4; ++i) {
        answer(L"Camera.ZoomIn 3");
        EXPECT_LT(activeCamera()->position().y, 0);
    }
    EXPECT_GT(activeCamera()->position().y, -5) << "it comes near";
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
