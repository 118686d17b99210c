// How the window lays out its areas: in their places, one by one, with panels, collapse bars and toolbars
// that overflow.

#include "Tests/UI/Base/Fixture.h"
#include "Tests/UI/Becomes.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Window/CommandButton.h"
#include "UI/Base/Window/MainWindow.h"
#include "UI/Base/Window/PanelFrame.h"
#include "UI/Base/Window/ToolbarStrip.h"
#include "UI/Base/Workspace/Arrangement.h"
#include "UI/Base/Workspace/Layout.h"
#include "UI/Base/Workspace/LayoutStrategy.h"
#include "UI/Base/Workspace/ToolbarManager.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <QApplication>
#include <QMenu>
#include <QPointer>
#include <QToolButton>
#include <QtTest/QTest>

#include <deque>

using namespace Vu;

namespace {

class AreasInWindowTest : public UiTest
{
protected:
    void SetUp() override
    {
        UiTest::SetUp();
        for (int i = 0; i < kCommands; ++i)
            m_commands.emplace_back((L"AreaTest" + std::to_wstring(i)).c_str(),
                                    [this, i](CommandContext&) { ran = i; });
        Toolbar toolbar{L"AreaTestTools", L"Tools", "CommandToolbar", {}};
        for (int i = 0; i < kCommands; ++i)
            toolbar.items.push_back({L"AreaTest" + std::to_wstring(i), L"", {}});
        ToolbarManager::get()->add(toolbar);
        m_window = WorkspaceMgr::get()->create()->window();
        ArrangementMgr* arrangements = m_window->arrangementManager();
        arrangements->arrangement(Arrangement::make(arrangements, layout()));
        m_window->show();
        m_window->widget()->resize(1500, 700);
        settle();
    }
    void TearDown() override
    {
        WorkspaceMgr::get()->closeAll();
        ToolbarManager::get()->add({L"AreaTestTools", L"Tools", "CommandToolbar", {}});
        UIBaseOptionGroup::get()->reset();
        UiTest::TearDown();
    }

    static Layout* layout()
    {
        auto* layout = new Layout;
        const auto add = [&](const wchar_t* name, const char* contents, EPlacement placement) {
            auto area = std::make_unique<Area>(name, Vs::UniqueString::find(contents));
            area->placement(placement);
            layout->addChild(std::move(area));
        };
        add(L"Tools", "CommandToolbar", EPlacement::Top);
        add(L"Browser", "BrowserWindow", EPlacement::Left);
        add(L"Canvas", "GraphicsCanvas", EPlacement::Fill);
        add(L"Line", "TextCommands", EPlacement::Bottom);
        return layout;
    }

    void settle() const
    {
        m_window->settleLayout();
        QApplication::processEvents();
    }
    Area* area(const wchar_t* name) const { return m_window->area(name); }
    template <class Widget = QWidget>
    Widget* find(const char* name) const
    {
        return static_cast<Widget*>(m_window->widget()->findChild<QWidget*>(QString::fromLatin1(name)));
    }
    QRect placeOf(const char* name) const
    {
        const QWidget* widget = find(name);
        return {widget->mapTo(m_window->widget(), QPoint()), widget->size()};
    }
    CommandButton* button(int i) const
    {
        return m_window->mainWindow()->buttons().at(static_cast<size_t>(i));
    }

    static constexpr int kCommands = 12;
    int ran = -1;
    WorkspaceWindow* m_window = nullptr;

private:
    std::deque<FunctionCommandDef> m_commands;
};

} // namespace

TEST_F(AreasInWindowTest, AnAreaComesAndGoesWithoutAnyOtherBeingMadeAnew)
{
    const QPointer<QWidget> tool = button(0);
    const QPointer<QWidget> canvas = find("canvasFrame");
    const int width = canvas->width();
    LayoutStrategy* strategy = LayoutStrategy::activeStrategy();
    strategy->hide(area(L"Browser"));
    settle();
    EXPECT_FALSE(find("areaPanel")->isVisible());
    EXPECT_GT(canvas->width(), width);
    strategy->show(area(L"Browser"));
    settle();
    EXPECT_TRUE(find("areaPanel")->isVisible());
    EXPECT_EQ(canvas->width(), width) << "and takes the room that it had";
    strategy->dock(area(L"Browser"), EPlacement::Right);
    settle();
    EXPECT_GT(placeOf("areaPanel").left(), placeOf("canvasFrame").right());
    strategy->dock(area(L"Browser"), EPlacement::Bottom);
    settle();
    EXPECT_GT(placeOf("areaPanel").top(), placeOf("canvasFrame").bottom());
    ASSERT_TRUE(canvas);
    EXPECT_EQ(find("canvasFrame"), canvas);

    ArrangementMgr* arrangements = m_window->arrangementManager();
    arrangements->arrangement(Arrangement::make(arrangements, layout()));
    settle();
    EXPECT_TRUE(tool) << "also another layout has the same buttons";
    EXPECT_EQ(button(0), tool);
    EXPECT_EQ(m_window->mainWindow()->buttons().size(), static_cast<size_t>(kCommands));
    Toolbar changed = *ToolbarManager::get()->toolbarById(L"AreaTestTools");
    changed.items.pop_back();
    ToolbarManager::get()->add(changed);
    EXPECT_TRUE(UiTests::becomes([&] { return m_window->mainWindow()->buttons().size() == kCommands - 1u; }));
    EXPECT_EQ(button(0), tool) << "nor do those beside one that goes change";
}

TEST_F(AreasInWindowTest, WhatHasNoRoomInTheToolbarStandsInItsMenu)
{
    auto* strip = find<ToolbarStrip>("strip");
    EXPECT_FALSE(strip->chevron()->isVisible());
    m_window->widget()->resize(640, 480);
    settle();
    EXPECT_EQ(m_window->widget()->width(), 640) << "nothing keeps the window wider";
    ASSERT_TRUE(strip->chevron()->isVisible());
    int shown = 0;
    for (int i = 0; i < kCommands; ++i)
        shown += button(i)->isVisible() ? 1 : 0;
    EXPECT_GT(shown, 0);
    EXPECT_LT(shown, kCommands);
    QMenu* menu = strip->chevron()->menu();
    Q_EMIT menu->aboutToShow();
    ASSERT_EQ(menu->actions().size(), kCommands - shown);
    menu->actions().back()->trigger();
    Application::get()->flushDeferredTasks();
    EXPECT_EQ(ran, kCommands - 1);
    m_window->widget()->resize(1500, 700);
    settle();
    EXPECT_FALSE(strip->chevron()->isVisible());
    EXPECT_TRUE(button(kCommands - 1)->isVisible());
}

TEST_F(AreasInWindowTest, APanelGivesWayInANarrowWindowAndHasItsWidthAgainInAWideOne)
{
    area(L"Browser")->extent(500);
    m_window->mainWindow()->rebuild();
    m_window->widget()->resize(640, 480);
    settle();
    EXPECT_EQ(m_window->widget()->width(), 640);
    EXPECT_GE(placeOf("canvasFrame").width(), 300);
    EXPECT_GE(placeOf("areaPanel").width(), 120);
    EXPECT_EQ(area(L"Browser")->extent(), 500) << "what the user wished";
    m_window->widget()->resize(1500, 700);
    settle();
    EXPECT_EQ(placeOf("areaPanel").width(), 500);
}

TEST_F(AreasInWindowTest, APanelIsFloatedDraggedCollapsedAndClosedByItsHead)
{
    auto* panel = find<PanelFrame>("areaPanel");
    const auto choose = [&](int entry) {
        QMenu* menu = panel->menuButton()->menu();
        Q_EMIT menu->aboutToShow();
        menu->actions().at(entry)->trigger();
        settle();
    };
    choose(4);
    EXPECT_EQ(area(L"Browser")->placement(), EPlacement::Floating);
    EXPECT_EQ(find("areaPanel"), panel);
    EXPECT_EQ(placeOf("canvasFrame").left(), 0) << "it lies over the others";
    QWidget* head = find("areaHead");
    const QPoint before = panel->pos();
    QTest::mousePress(head, Qt::LeftButton, {}, {5, 5});
    QTest::mouseMove(head, {105, 65});
    QTest::mouseRelease(head, Qt::LeftButton, {}, {5, 5});
    EXPECT_EQ(panel->pos(), before + QPoint(100, 60));
    EXPECT_EQ(area(L"Browser")->point(), (Vs::Point2{panel->x(), panel->y()}));
    m_window->widget()->resize(640, 480);
    settle();
    EXPECT_TRUE(m_window->widget()->rect().contains(
        QRect(panel->mapTo(m_window->widget(), QPoint()), QSize(panel->width(), head->height()))));
    choose(0);
    EXPECT_LT(placeOf("areaPanel").left(), placeOf("canvasFrame").left());

    choose(6);
    EXPECT_FALSE(panel->isVisible());
    QTest::mouseClick(find("collapsedArea"), Qt::LeftButton);
    settle();
    EXPECT_TRUE(panel->isVisible());
    EXPECT_FALSE(area(L"Browser")->collapsed());
    EXPECT_FALSE(find("collapseBar")->isVisible());

    int hidden = 0;
    const FunctionCommandDef hide(L"HideBrowserCommand", [&](CommandContext&) { ++hidden; });
    QTest::mouseClick(panel->closeButton(), Qt::LeftButton);
    Application::get()->flushDeferredTasks();
    EXPECT_EQ(hidden, 1) << "by the command, so that it is in the transcript";
}
