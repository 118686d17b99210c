#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDialog.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/Workspace/Area.h"
#include "UI/Base/Workspace/ToolbarManager.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

using namespace Vu;

namespace {

constexpr int kNormal = 0;
constexpr int kMinimized = 1;
constexpr int kZoomed = 2;

/// A window keeps its state even before it is shown.
class WindowCommandsTest : public CommandsTests::WithProgram
{
protected:
    static bool showsViews(int count)
    {
        return answer(L"SplitView.ViewCount") ==
               L"The number of visible views is " + std::to_wstring(count) + L"\n";
    }
    static WorkspaceWindow* window() { return WorkspaceWindow::activeWorkspaceWindow(); }
    static std::vector<GraphicsCanvas*> canvases()
    {
        std::vector<GraphicsCanvas*> all;
        GraphicsCanvas::allCanvases(all);
        return all;
    }
};

} // namespace

TEST_F(WindowCommandsTest, AWindowIsMinimizedAndZoomedAndOneThatIsMinimizedIsNotZoomed)
{
    answer(L"VuCommands.ZoomWindowCmd");
    EXPECT_EQ(window()->windowState(), kZoomed);
    answer(L"VuCommands.ZoomWindowCmd");
    EXPECT_EQ(window()->windowState(), kNormal);
    answer(L"VuCommands.MinimizeCmd");
    EXPECT_EQ(window()->windowState(), kMinimized);
    answer(L"VuCommands.ZoomWindowCmd");
    EXPECT_EQ(window()->windowState(), kMinimized);
}

TEST_F(WindowCommandsTest, FullScreenHidesTheRightToolbarAndLeavingItDoesNotBringItBack)
{
    const Toolbar* right = ToolbarManager::get()->toolbarById(L"QATRight");
    ASSERT_NE(right, nullptr);
    EXPECT_TRUE(right->visible);
    EXPECT_TRUE(applicable(L"ShowWorkspaceFullScreenCommand"));
    EXPECT_FALSE(applicable(L"ShowWorkspaceNormalCommand")) << "the two share a key";
    answer(L"VuCommands.ShowWorkspaceFullScreenCmd");
    EXPECT_FALSE(right->visible);
    answer(L"VuCommands.ShowWorkspaceNormalCmd");
    EXPECT_FALSE(right->visible);
}

TEST_F(WindowCommandsTest, TheDefaultLayoutComesBackWithTheCanvasAndWithoutTouchingWhatTheUserWants)
{
    answer(L"Design.New");
    GraphicsCanvas* canvas = canvases().at(0);
    answer(L"Commands.Start SplitViewLayoutCommand Layout=Quad");
    window()->area(L"Browser")->visible(false);
    window()->area(L"TextCommands")->placement(EPlacement::Top);
    UIBaseOptionGroup::get()->wantToShowBrowser(false);
    answer(L"VuCommands.ResetToDefaultLayoutCommand");
    EXPECT_TRUE(showsViews(1));
    EXPECT_EQ(canvases().at(0), canvas);
    EXPECT_TRUE(window()->area(L"Browser")->visible());
    EXPECT_FALSE(window()->area(L"DesignFeed")->visible()) << "shows at first only when it is wanted";
    EXPECT_EQ(window()->area(L"TextCommands")->placement(), EPlacement::Bottom);
    EXPECT_FALSE(UIBaseOptionGroup::get()->wantToShowBrowser());
    // A new layout can be divided again.
    answer(L"Commands.Start SplitViewLayoutCommand Layout=SideBySide");
    EXPECT_TRUE(showsViews(2));
    answer(L"VuCommands.ResetToDefaultLayoutCommand");
}

TEST_F(WindowCommandsTest, WithoutAModelThereIsNoLayoutToReset)
{
    answer(L"VuCommands.ManagementShellCmd");
    EXPECT_FALSE(applicable(L"ResetToDefaultLayoutCommand"));
    EXPECT_NE(failure(L"VuCommands.ResetToDefaultLayoutCommand").find(L"No model"), std::wstring::npos);
}

TEST_F(WindowCommandsTest, TheActiveCommandsPanelIsHiddenAndShown)
{
    answer(L"VuCommands.HideCommandPaletteCmd"); // Nothing is active.
    answer(L"Design.New");
    answer(L"VuCommands.SetSnapValueCmd");
    const CommandDialog* dialog = CommandBase::getActiveCommand()->commandDialog();
    EXPECT_TRUE(dialog->shown());
    answer(L"VuCommands.HideCommandPaletteCmd");
    EXPECT_FALSE(dialog->shown());
    answer(L"Commands.Start ShowCommandPaletteCommand");
    EXPECT_TRUE(dialog->shown());
    answer(L"Commands.Cancel");
}

TEST_F(WindowCommandsTest, TheActiveWindowsDocumentIsClosedAfterItsQuestion)
{
    answer(L"Design.New");
    answer(L"Design.Box 1 2 3");
    answerBoxes(2);
    run(L"Commands.Start CloseWndCommand");
    EXPECT_EQ(documents(), 1u) << "Cancel";
    answerBoxes(1);
    answer(L"Commands.Start CloseWndCommand");
    EXPECT_EQ(documents(), 0u) << "Don't Save";
    EXPECT_EQ(boxes().size(), 2u);
    EXPECT_FALSE(applicable(L"CloseWndCommand"));
}

TEST_F(WindowCommandsTest, ClosingTheWorkspaceAsksAboutWhatHasChanged)
{
    answer(L"Design.New");
    answer(L"Design.Box 1 2 3");
    answerBoxes(2);
    run(L"VuCommands.CloseWorkspaceCmd");
    EXPECT_EQ(boxes().size(), 1u);
    EXPECT_FALSE(Application::get()->exiting());
    EXPECT_EQ(documents(), 1u);
}
