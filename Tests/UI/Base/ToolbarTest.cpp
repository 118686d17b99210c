#include "Server/Base/Strings.h"
#include "Tests/UI/Base/Fixture.h"
#include "UI/Base/Workspace/HUDPersister.h"
#include "UI/Base/Workspace/MenuBar.h"
#include "UI/Base/Workspace/ToolbarPersister.h"

#include <algorithm>

using namespace Vu;

namespace {

class ToolbarTest : public UiTest
{
protected:
    bool load(const std::string& xml)
    {
        status.clear();
        return ToolbarPersister::get()->loadToolbars(write("bars.xml", xml), L"VuCommands", status);
    }
    bool loadHud(const std::string& xml)
    {
        status.clear();
        return HUDPersister::get()->loadHUDs(write("hud.xml", xml), status);
    }
    Vs::Status status;
};

} // namespace

TEST_F(ToolbarTest, ToolbarsHoldItemsLinesAndMenus)
{
    ASSERT_TRUE(load(R"(<toolbars><toolbar id="T" title="Tools" contents="CommandToolbar">
        <item command="A"/><separator/><menu title="More"><item command="B"/></menu></toolbar></toolbars>)"));
    const Toolbar* toolbar = ToolbarManager::get()->toolbarById(L"T");
    ASSERT_NE(toolbar, nullptr);
    ASSERT_EQ(toolbar->items.size(), 3u);
    EXPECT_EQ(toolbar->items[0].command, L"A");
    EXPECT_TRUE(toolbar->items[1].separator());
    EXPECT_EQ(toolbar->items[2].menu.at(0).command, L"B");
    ToolbarManager::get()->hideToolbar(L"T");
    ToolbarManager::get()->hideToolbar(L"NoSuchBar");
    EXPECT_FALSE(toolbar->visible);
}

TEST_F(ToolbarTest, AMenuMayHaveTheTitleAndPictureOfACommand)
{
    EXPECT_TRUE(load(R"(<toolbars><toolbar id="T"><menu command="Head"><item command="B"/></menu>
                        <menu title="Empty"/></toolbar></toolbars>)"));
    const std::vector<ToolbarItem>& items = ToolbarManager::get()->toolbarById(L"T")->items;
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0].command, L"Head");
    EXPECT_TRUE(items[0].isMenu() && items[1].isMenu());
    EXPECT_FALSE(items[0].menu.at(0).isMenu());
    const std::vector<std::wstring> unknown = ToolbarManager::get()->unknownCommands();
    EXPECT_NE(std::find(unknown.begin(), unknown.end(), L"Head"), unknown.end());
    EXPECT_FALSE(load(R"(<toolbars><toolbar id="T"><menu><item command="B"/></menu></toolbar></toolbars>)"));
}

TEST_F(ToolbarTest, AToolbarStandsInTheEnvironmentsThatItNamesOrInAll)
{
    ASSERT_TRUE(load(R"(<toolbars><toolbar id="Some" environments=" A  B " align="end"/>
                        <toolbar id="All" environments=""/></toolbars>)"));
    const Toolbar* some = ToolbarManager::get()->toolbarById(L"Some");
    EXPECT_TRUE(some->standsIn(L"A") && some->standsIn(L"B"));
    EXPECT_FALSE(some->standsIn(L"") || some->standsIn(L"AB"));
    EXPECT_TRUE(some->atEnd);
    const Toolbar* all = ToolbarManager::get()->toolbarById(L"All");
    EXPECT_TRUE(all->standsIn(L"") && all->standsIn(L"C"));
    ToolbarManager::get()->hideToolbar(L"All");
    EXPECT_FALSE(all->standsIn(L"C"));
    EXPECT_FALSE(load(R"(<toolbars><toolbar id="Odd" align="middle"/></toolbars>)"));
}

TEST_F(ToolbarTest, AFileThatIsNoXmlAddsNothingAndGivesOneMessage)
{
    EXPECT_FALSE(load("<toolbars>\n<toolbar id=\"Broken\"><item command=\"A\"/>\n"));
    EXPECT_EQ(ToolbarManager::get()->toolbarById(L"Broken"), nullptr);
    const std::string message = Vs::Strings::narrow(status.toString());
    EXPECT_EQ(std::count(message.begin(), message.end(), '\n'), 0) << message;
    EXPECT_NE(message.find("bars.xml:3:"), std::string::npos) << message;
    EXPECT_FALSE(load(std::string("\0\x01\xff garbage", 11)));
    EXPECT_FALSE(load(""));
    EXPECT_FALSE(ToolbarPersister::get()->loadToolbars(L"/no/such/file.xml", L"", status));
}

TEST_F(ToolbarTest, WrongEntriesAreLeftOutAndTheRestWorks)
{
    EXPECT_FALSE(load(R"(<toolbars><toolbar id="Mended"><item/><button/><item command="A"/></toolbar>
                         <toolbar><item command="B"/></toolbar></toolbars>)"));
    const Toolbar* toolbar = ToolbarManager::get()->toolbarById(L"Mended");
    ASSERT_NE(toolbar, nullptr);
    ASSERT_EQ(toolbar->items.size(), 1u);
    EXPECT_TRUE(status.matchingError("\"command\""));
    EXPECT_TRUE(status.matchingError("<button>"));
    EXPECT_TRUE(status.matchingError("\"id\""));
}

TEST_F(ToolbarTest, CommandsThatNobodyHasAreListedOnceEach)
{
    FunctionCommandDef known(L"KnownToolbarCommand", [](CommandContext&) {});
    load(R"(<toolbars><toolbar id="U"><item command="KnownToolbarCommand"/><item command="MissingCommand"/>
            <menu title="M"><item command="MissingCommand"/></menu></toolbar></toolbars>)");
    const std::vector<std::wstring> unknown = ToolbarManager::get()->unknownCommands();
    EXPECT_EQ(std::count(unknown.begin(), unknown.end(), L"MissingCommand"), 1);
    EXPECT_EQ(std::count(unknown.begin(), unknown.end(), L"KnownToolbarCommand"), 0);
}

TEST_F(ToolbarTest, AnAddInPutsItsEntriesAtAPlaceOfAnothersMenuOrAtItsEnd)
{
    MenuBar bar;
    // The file that adds may be read before the one it adds to.
    bar.addFile(
        write("more.xml", R"(<menus><add menu="File" place="Here"><item command="New" title="Mine"/></add>
                                     <add menu="Inner"><separator/><item command="Show" off="Hide"/></add></menus>)"),
        L"");
    const std::wstring menus = write("menus.xml", R"(<menus><menu id="File" title="&amp;File">
        <item command="First"/><place id="Here"/><item command="Last"/><menu id="Inner" title="Inner"/></menu>
        </menus>)");
    for (int time = 0; time < 2; ++time) // Like an add-in that is loaded again.
        bar.addFile(menus, L"");
    ASSERT_EQ(bar.menus().size(), 1u);
    const std::vector<ToolbarItem>& entries = bar.menus()[0].menu;
    ASSERT_EQ(entries.size(), 5u);
    EXPECT_EQ(bar.menus()[0].title, L"&File");
    EXPECT_EQ(entries[1].command + entries[1].title, L"NewMine");
    EXPECT_FALSE(entries[1].isMenu() || entries[2].separator() || entries[4].menu.at(1).separator());
    EXPECT_EQ(entries[4].menu.at(1).off, L"Hide");
    EXPECT_TRUE(bar.problems().isOk());
    EXPECT_EQ(bar.unknownCommands(),
              (std::vector<std::wstring>{L"First", L"New", L"Last", L"Show", L"Hide"}));
}

TEST_F(ToolbarTest, WrongMenusAreToldAndLeaveTheOthers)
{
    MenuBar bar;
    bar.addFile(write("good.xml", R"(<menus><menu id="A" title="A"><item command="X"/></menu></menus>)"),
                L"");
    bar.addFile(L"/no/such/menus.xml", L"");
    bar.addFile(write("broken.xml", "<menus>\n<menu id=\"B\" title=\"B\">"), L"");
    bar.addFile(
        write("odd.xml", R"(<menus><menu id="C"/><button/><add menu="Z"/><menu id="D" title="D"><place/>
                                    </menu><add menu="A" place="No"><item command="Y"/></add></menus>)"),
        L"");
    ASSERT_EQ(bar.menus().size(), 2u);
    EXPECT_EQ(bar.menus()[0].menu.at(1).command, L"Y");
    EXPECT_EQ(bar.menus()[1].id, L"D");
    EXPECT_TRUE(bar.menus()[1].menu.empty());
    for (const char* told : {"/no/such/menus.xml: ", "broken.xml:2: ", "<button>", "\"title\"", "\"id\"",
                             "no menu \"Z\"", "no place \"No\""})
        EXPECT_TRUE(bar.problems().matchingError(told)) << told;
    // Places are for menus only.
    EXPECT_FALSE(load(R"(<toolbars><toolbar id="P"><place id="Q"/></toolbar></toolbars>)"));
}

TEST_F(ToolbarTest, AHudOfTheSameNameReplacesTheOldOneAndABrokenFileLeavesIt)
{
    ASSERT_TRUE(loadHud(R"(<huds><hud id="N" placement="left"><item command="A"/></hud></huds>)"));
    ASSERT_TRUE(loadHud(R"(<huds><hud id="N" placement="top"><item command="B"/></hud></huds>)"));
    EXPECT_FALSE(loadHud("<huds><hud id=\"N\"/>"));
    ASSERT_EQ(HUDPersister::get()->huds().size(), 1u);
    EXPECT_EQ(HUDPersister::get()->huds().front().placement, L"top");
    EXPECT_EQ(HUDPersister::get()->huds().front().items.at(0).command, L"B");
}
