// The areas of the window: shown, hidden, collapsed, docked; the user's preferences for them; the layout kept
// from one window to the next; the list of toolbars.

#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/Base/Warning.h"
#include "Tests/UI/Commands/CommandsProgram.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/Workspace/Arrangement.h"
#include "UI/Base/Workspace/Layout.h"
#include "UI/Base/Workspace/LayoutStrategy.h"
#include "UI/Base/Workspace/PaletteCollapseHelper.h"
#include "UI/Base/Workspace/ShellMgr.h"
#include "UI/Base/Workspace/ToolbarManager.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/operations.hpp>

using namespace Vu;

namespace {

namespace fs = boost::filesystem;

class AreasTest : public CommandsTests::WithProgram
{
protected:
    void SetUp() override
    {
        WithProgram::SetUp();
        answer(L"Design.New");
        answer(L"VuCommands.ResetToDefaultLayoutCommand");
        UIBaseOptionGroup::get()->reset();
    }
    void TearDown() override
    {
        run(L"VuCommands.ResetToDefaultLayoutCommand");
        UIBaseOptionGroup::get()->reset();
        SplitViewMgr::get()->validToShowBrowser(true);
        WithProgram::TearDown();
        // The next test's shell starts with the layout of the file.
        fs::remove(keptFile());
    }

    static fs::path keptFile() { return Vs::PathInfo::optionsDirectory() / "VULastDisplayedLayout.xml"; }
    static Area* area(const wchar_t* name) { return WorkspaceWindow::activeWorkspaceWindow()->area(name); }
    static UIBaseOptionGroup& wishes() { return *UIBaseOptionGroup::get(); }
    static const Toolbar* toolbar(const wchar_t* id) { return ToolbarManager::get()->toolbarById(id); }

    /// Another run's window: the workspace ends, and a new one reopens the document.
    static void beginAnotherWindow()
    {
        WorkspaceMgr::get()->closeAll();
        WorkspaceMgr::get()->create();
        answer(L"Design.New");
    }
};

struct Pair
{
    const wchar_t* area;
    const wchar_t* showCommand;
    const wchar_t* hideCommand;
    Vs::Option<bool> UIBaseOptionGroup::*wish;
};

constexpr Pair kPairs[] = {
    {L"Browser", L"ShowBrowserCommand", L"HideBrowserCommand", &UIBaseOptionGroup::wantToShowBrowser},
    {L"DesignFeed", L"ShowDesignFeedCommand", L"HideDesignFeedCommand",
     &UIBaseOptionGroup::wantToShowDesignFeed},
    {L"Properties", L"ShowPropertiesCommand", L"HidePropertiesCommand",
     &UIBaseOptionGroup::wantToShowProperties},
    {L"ScriptPanel", L"ShowScriptPanelCommand", L"HideScriptPanelCommand",
     &UIBaseOptionGroup::wantToShowScriptPanel},
    {L"TextCommands", L"ShowTextCommandsCommand", L"HideTextCommandsCommand",
     &UIBaseOptionGroup::wantToShowTextCommands},
    {L"CommandToolbarQuillet3", L"ShowCommandToolbarCommand", L"HideCommandToolbarCommand",
     &UIBaseOptionGroup::wantToShowCommandToolbar},
    {L"ItemhubSearch", L"ShowCommandToolbarCommand", L"HideCommandToolbarCommand",
     &UIBaseOptionGroup::wantToShowCommandToolbar},
    {L"NavToolbar", L"ShowNavigationToolbarCommand", L"HideNavigationToolbarCommand",
     &UIBaseOptionGroup::wantToShowNavigationToolbar},
};

} // namespace

TEST_F(AreasTest, EachAreaIsShownAndHiddenAndOnlyTheOtherOfItsCommandsIsOffered)
{
    for (const Pair& pair : kPairs) {
        SCOPED_TRACE(Vs::Strings::narrow(pair.area));
        answer(std::wstring(L"Commands.Start ") + pair.showCommand);
        EXPECT_TRUE(area(pair.area)->visible());
        EXPECT_TRUE((wishes().*pair.wish)());
        EXPECT_FALSE(applicable(pair.showCommand));
        EXPECT_TRUE(applicable(pair.hideCommand));
        answer(std::wstring(L"Commands.Start ") + pair.hideCommand);
        EXPECT_FALSE(area(pair.area)->visible());
        EXPECT_FALSE((wishes().*pair.wish)());
        EXPECT_TRUE(applicable(pair.showCommand));
        EXPECT_FALSE(applicable(pair.hideCommand));
        // A change made elsewhere is visible at once.
        (wishes().*pair.wish)(true);
        EXPECT_TRUE(area(pair.area)->visible());
    }
    answer(L"Document.CloseAll");
    EXPECT_FALSE(applicable(L"HideDesignFeedCommand")) << "a feed is that of a document";
}

TEST_F(AreasTest, ASplitViewKeepsWhatTheUserWantsAndMayHaveNoRoomForTheBrowser)
{
    answer(L"Commands.Start ShowDesignFeedCommand");
    answer(L"VuCommands.HideBrowserCommand");
    answer(L"VuCommands.HideNavigationToolbarCmd");
    answer(L"VuCommands.DockAssetToolbarsToBottomCmd");
    answer(L"Commands.Start SplitViewLayoutCommand Layout=Quad");
    EXPECT_TRUE(area(L"DesignFeed")->visible());
    EXPECT_FALSE(area(L"Browser")->visible());
    EXPECT_FALSE(area(L"NavToolbar")->visible());
    EXPECT_EQ(area(L"CommandToolbarQuillet3")->placement(), EPlacement::Bottom);
    EXPECT_TRUE(applicable(L"ShowBrowserCommand")) << "it isn't the layout that hides it";

    SplitViewMgr::get()->validToShowBrowser(false);
    EXPECT_FALSE(applicable(L"ShowBrowserCommand"));
    wishes().wantToShowBrowser(true);
    EXPECT_FALSE(applicable(L"HideBrowserCommand"));
}

TEST_F(AreasTest, ACollapsedAreaIsShownOnItsBarAndOpensFromThere)
{
    PaletteCollapseHelper* bars = PaletteCollapseHelper::getInstance();
    Area* browser = area(L"Browser");
    LayoutStrategy::activeStrategy()->collapse(browser, EPlacement::Right);
    EXPECT_TRUE(bars->isCollapseBarVisible(EPlacement::Right));
    EXPECT_FALSE(bars->isCollapseBarVisible(EPlacement::Left));

    answer(L"VuCommands.HideBrowserCommand");
    EXPECT_FALSE(bars->isCollapseBarVisible(EPlacement::Right));
    bars->showCollapseBar(EPlacement::Right, false);
    answer(L"VuCommands.ShowBrowserCommand");
    EXPECT_TRUE(browser->collapsed()) << "as a button of the bar, not as an open panel";
    EXPECT_TRUE(bars->isCollapseBarVisible(EPlacement::Right)) << "also if somebody had hidden it";

    bars->removePaletteFromBar(Vs::UniqueString::find("Browser"), true);
    EXPECT_FALSE(browser->collapsed());
    EXPECT_TRUE(browser->visible());
    EXPECT_FALSE(bars->isCollapseBarVisible(EPlacement::Right));
    bars->collapsePalette(L"NoSuchArea", EPlacement::Left);
    bars->removePaletteFromBar(nullptr, true);
}

TEST_F(AreasTest, AnAreaInAPaletteIsShownAndHiddenWithIt)
{
    auto layout = std::make_unique<Layout>();
    Area* palette = layout->addChild(std::make_unique<Area>(L"Side", Vs::UniqueString::find("Palette")));
    Area* browser =
        palette->addChild(std::make_unique<Area>(L"Browser", Vs::UniqueString::find("BrowserWindow")));
    layout->addChild(std::make_unique<Area>(L"Canvas", Area::graphicsCanvas()));
    Arrangement* arrangement = WorkspaceWindow::activeWorkspaceWindow()->activeArrangement();
    LayoutStrategy::activeStrategy()->apply(arrangement, layout.release())->destroy();
    answer(L"VuCommands.HideBrowserCommand");
    EXPECT_FALSE(palette->visible());
    EXPECT_TRUE(browser->visible());
    answer(L"VuCommands.ShowBrowserCommand");
    EXPECT_TRUE(palette->visible());
    answer(L"VuCommands.HideTextCommandsCommand"); // This layout has none.
    EXPECT_TRUE(palette->visible());
}

TEST_F(AreasTest, EachDockingTakesItsOwnAreaFirstAndBringsTheOtherBack)
{
    const auto places = [] {
        return std::pair(area(L"CommandToolbarQuillet3")->placement(),
                         area(L"CommandToolbarNew")->placement());
    };
    const auto is = [&](EPlacement a, EPlacement b) { return places() == std::pair(a, b); };
    EXPECT_FALSE(applicable(L"DockAssetToolbarsToTopCommand"));
    answer(L"VuCommands.DockAssetToolbarsToBottomCmd");
    EXPECT_TRUE(is(EPlacement::Bottom, EPlacement::Top));
    answer(L"VuCommands.DockAssetToolbarsToBottomCmd");
    EXPECT_TRUE(is(EPlacement::Bottom, EPlacement::Bottom));
    EXPECT_FALSE(applicable(L"DockAssetToolbarsToBottomCommand"));
    answer(L"VuCommands.DockAssetToolbarsToTopCmd");
    EXPECT_TRUE(is(EPlacement::Bottom, EPlacement::Top));
    answer(L"VuCommands.DockAssetToolbarsToTopCmd");
    EXPECT_TRUE(is(EPlacement::Top, EPlacement::Top));
}

TEST_F(AreasTest, TheNextWindowHasTheAreasWhereTheLastOneLeftThem)
{
    LayoutStrategy::activeStrategy()->dock(area(L"Browser"), EPlacement::Right, {3, 4});
    area(L"Browser")->extent(333);
    LayoutStrategy::activeStrategy()->collapse(area(L"DesignFeed"), EPlacement::Bottom);
    answer(L"VuCommands.HideTextCommandsCommand");
    // It is also kept in a form of the layout with other canvases.
    answer(L"Commands.Start SplitViewLayoutCommand Layout=Quad");
    beginAnotherWindow();
    const Area* browser = area(L"Browser");
    EXPECT_EQ(browser->placement(), EPlacement::Right);
    EXPECT_EQ(browser->point(), (Vs::Point2{3, 4}));
    EXPECT_EQ(browser->extent(), 333);
    EXPECT_TRUE(area(L"DesignFeed")->collapsed());
    EXPECT_FALSE(area(L"TextCommands")->visible());
    EXPECT_EQ(answer(L"SplitView.ViewCount"), L"The number of visible views is 1\n");
}

TEST_F(AreasTest, ABrokenKeptLayoutIsToldAndTheDefaultOneShows)
{
    std::wstring told;
    const Vs::WarningHandler handler([&](const std::wstring& text) { told += text; });
    for (const char* content :
         {"<layout><area name=\"Browser\" placement=\"right\"/>\n<area", "", "\x01\x02\xff", "<toolbars/>",
          "<layout><area name=\"Browser\" contents=\"BrowserWindow\" placement=\"upstairs\"/></layout>"}) {
        WorkspaceMgr::get()->closeAll();
        fs::ofstream(keptFile()) << content;
        told.clear();
        WorkspaceMgr::get()->create();
        answer(L"Design.New");
        EXPECT_EQ(area(L"Browser")->placement(), EPlacement::Left);
        EXPECT_NE(told.find(L"default layout"), std::wstring::npos) << content;
        EXPECT_NE(told.find(L"VULastDisplayedLayout.xml"), std::wstring::npos) << content;
    }
    // Unknown areas are skipped, and nothing gets a canvas from there.
    WorkspaceMgr::get()->closeAll();
    fs::ofstream(keptFile())
        << "<layout><area name=\"Other\" contents=\"Strange\"/>"
           "<area name=\"Canvas\" contents=\"BrowserWindow\" placement=\"right\"/></layout>";
    told.clear();
    WorkspaceMgr::get()->create();
    answer(L"Design.New");
    EXPECT_EQ(told, L"");
    EXPECT_EQ(area(L"Other"), nullptr);
    EXPECT_NE(area(L"Canvas")->canvas(), nullptr);
    EXPECT_EQ(area(L"Canvas")->placement(), EPlacement::Fill);
}

TEST_F(AreasTest, AToolbarComesBackFromTheListAndWhatTheUserHidStaysHidden)
{
    answer(L"VuCommands.ShowWorkspaceFullScreenCmd");
    answer(L"VuCommands.ShowWorkspaceNormalCmd");
    ASSERT_FALSE(toolbar(L"QATRight")->visible);
    EXPECT_TRUE(wishes().hiddenToolbars().empty()) << "the next start shows it";
    answer(L"Commands.Start ToolbarsCommand Toolbar=Solids Visible=0");
    EXPECT_FALSE(toolbar(L"Solids")->visible);
    EXPECT_FALSE(toolbar(L"QATRight")->visible);
    EXPECT_EQ(wishes().hiddenToolbars(), std::vector<std::wstring>{L"Solids"});
    answer(L"Commands.Start ToolbarsCommand Toolbar=QATRight");
    EXPECT_TRUE(toolbar(L"QATRight")->visible);
    // One that is added later, such as an add-in's, starts as the user left it.
    ToolbarManager::get()->add(*toolbar(L"Solids"));
    EXPECT_FALSE(toolbar(L"Solids")->visible);
    wishes().hiddenToolbars({});
    EXPECT_TRUE(toolbar(L"Solids")->visible);
    EXPECT_NE(failure(L"Commands.Start ToolbarsCommand Toolbar=Nonsense").find(L"no toolbar \"Nonsense\""),
              std::wstring::npos);
}
