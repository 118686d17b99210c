#include "Server/Base/Strings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentType.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/UI/Commands/Navigation.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/AssetGraphicsView.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/DocumentSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Base/View/ViewMgr.h"
#include "UI/Base/Workspace/Workspace.h"
#include "UI/Base/Workspace/WorkspaceMgr.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"
#include "UI/Commands/Camera/ActiveView.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/SharedWorkflows.h"

#include <QApplication>
#include <QImage>
#include <QTest>
#include <QWidget>

#include <set>
#include <utility>

using namespace Vu;
using namespace Vu::Commands;

namespace {

constexpr std::pair<const wchar_t*, size_t> kLayouts[] = {{L"SideBySide", 2}, {L"Triple", 3}, {L"Quad", 4}};

class SplitViewsTest : public CommandsTests::WithProgram
{
protected:
    void TearDown() override
    {
        // Without a document the line finds no shell to lay out.
        answer(L"Design.Sample");
        answer(L"SplitView.DefaultLayout");
        WithProgram::TearDown();
    }

    static AssetShell* shell() { return SharedWorkflows::activeAssetShell(); }
    static std::vector<GraphicsCanvas*> canvases()
    {
        std::vector<GraphicsCanvas*> all;
        GraphicsCanvas::allCanvases(all);
        return all;
    }
    static std::vector<GraphicsView*> views()
    {
        std::vector<GraphicsView*> all;
        for (const GraphicsCanvas* canvas : canvases())
            all.push_back(canvas->view());
        return all;
    }
    static AssetSession* sessionOf(const GraphicsCanvas* canvas)
    {
        auto* view = Vs::cast<AssetGraphicsView>(canvas->view());
        return view ? view->assetSession() : nullptr;
    }
    static void show(AssetSession* session)
    {
        answer(L"VuCommands.SwitchAssetCmd " + session->serialize());
        EXPECT_EQ(activeSession(), session);
    }
    /// Each canvas shows a view, and no view is shown twice.
    static void expectFull(size_t count)
    {
        const std::vector<GraphicsView*> shown = views();
        std::set<GraphicsView*> different(shown.begin(), shown.end());
        different.erase(nullptr);
        EXPECT_EQ(different.size(), count);
        EXPECT_EQ(answer(L"SplitView.ViewCount"),
                  L"The number of visible views is " + std::to_wstring(count) + L"\n");
    }
};

TEST_F(SplitViewsTest, HomeAndBackEachPaneShowsWhatItShowedWhicheverIsActive)
{
    answer(L"Design.Sample");
    AssetSession* const session = activeSession();
    for (const auto& [layout, count] : kLayouts) {
        answer(std::wstring(L"SplitView.ResetLayout ") + layout);
        const std::vector<GraphicsView*> before = views();
        for (size_t active = 0; active < count; ++active) {
            SplitViewMgr::get()->activeCanvas(canvases()[active]);
            answer(L"VuCommands.ManagementShellCmd");
            EXPECT_TRUE(canvases().empty());
            EXPECT_EQ(SplitViewMgr::get()->activeCanvas(), nullptr);
            EXPECT_EQ(answer(L"SplitView.ViewCount"), L"The number of visible views is 0\n");
            answer(L"VuCommands.AssetShellCmd " + session->serialize());
            EXPECT_EQ(views(), before);
            EXPECT_EQ(SplitViewMgr::get()->activeCanvas(), canvases()[active]);
            EXPECT_EQ(SplitViewMgr::get()->activeView(), before[active]);
        }
        expectFull(count);
    }
}

/// In a visible window.
class SplitViewsInWindow : public SplitViewsTest
{
protected:
    void SetUp() override
    {
        m_before = Vu::WorkspaceMgr::activeWorkspace();
        m_shown = Vu::WorkspaceMgr::get()->create();
        m_shown->window()->show();
        SplitViewsTest::SetUp();
    }
    void TearDown() override
    {
        SplitViewsTest::TearDown();
        Vu::WorkspaceMgr::get()->close(m_shown);
        Vu::WorkspaceMgr::activeWorkspace(m_before);
    }

private:
    Vu::Workspace* m_before = nullptr;
    Vu::Workspace* m_shown = nullptr;
};

TEST_F(SplitViewsInWindow, ALayoutThatIsLeftBeforeTheWindowHasShownItComesWithAllItsPanes)
{
    const auto settle = [] {
        QApplication::processEvents();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    answer(L"Design.Sample");
    const std::wstring back = L"VuCommands.AssetShellCmd " + activeSession()->serialize();
    for (const auto& [layout, count] : kLayouts) {
        answer(L"SplitView.DefaultLayout");
        settle();
        answer(std::wstring(L"SplitView.ResetLayout ") + layout);
        answer(L"VuCommands.ManagementShellCmd");
        settle();
        answer(back);
        settle();
        ASSERT_EQ(canvases().size(), count);
        for (const GraphicsCanvas* canvas : canvases()) {
            ASSERT_TRUE(canvas->existingWidget());
            EXPECT_TRUE(canvas->existingWidget()->isVisible()) << Vs::Strings::narrow(layout);
        }
    }
}

TEST_F(SplitViewsTest, AnotherAssetTakesTheActivePaneAloneAndTheFirstOneComesBackToIt)
{
    answer(L"Design.Sample");
    AssetSession* const first = activeSession();
    answer(L"Design.Sample");
    AssetSession* const second = activeSession();
    for (const auto& [layout, count] : kLayouts) {
        show(first);
        answer(std::wstring(L"SplitView.ResetLayout ") + layout);
        for (size_t active = 0; active < count; ++active) {
            GraphicsCanvas* const pane = canvases()[active];
            const std::vector<GraphicsView*> before = views();
            SplitViewMgr::get()->activeCanvas(pane);
            show(second);
            EXPECT_EQ(sessionOf(pane), second);
            for (size_t other = 0; other < count; ++other)
                EXPECT_EQ(canvases()[other]->view() == before[other], other != active);
            expectFull(count);
            // The pane beside it gets the same asset, though its view is already shown, and becomes active
            // with it.
            GraphicsCanvas* const beside = canvases()[(active + 1) % count];
            SplitViewMgr::get()->activeCanvas(beside);
            EXPECT_EQ(activeSession(), first);
            show(second);
            EXPECT_EQ(sessionOf(pane), second);
            EXPECT_EQ(sessionOf(beside), second);
            expectFull(count);
            // Clicks in either leave both as they are.
            const std::vector<GraphicsView*> both = views();
            for (GraphicsCanvas* clicked : {pane, beside}) {
                SplitViewMgr::get()->activeCanvas(clicked);
                EXPECT_EQ(views(), both);
                EXPECT_EQ(graphicsViewOf(second), clicked->view());
            }
            show(first);
            SplitViewMgr::get()->activeCanvas(pane);
            show(first);
            EXPECT_EQ(sessionOf(pane), first);
            EXPECT_EQ(sessionOf(beside), first);
            expectFull(count);
        }
        answer(L"SplitView.DefaultLayout");
    }
}

TEST_F(SplitViewsTest, TheListOfLayoutsShowsTheOneThatIsThereAndBringsAnotherAbout)
{
    CommandDefinition* const layouts = definition(L"SplitViewLayoutCommand");
    auto* const list = Vs::cast<ListControl>(layouts->inputControl());
    ASSERT_EQ(list->items().size(), 4u);
    EXPECT_FALSE(applicable(L"SplitViewLayoutCommand"));
    answer(L"Design.Sample");
    EXPECT_NE(failure(L"Commands.Start SplitViewLayoutCommand Layout=Nonsense").find(L"SideBySide, Triple"),
              std::wstring::npos);
    for (const size_t count : {4u, 2u, 3u, 1u}) {
        Info* const chosen = list->items()[count - 1];
        list->selectedItem(chosen, true);
        run(L"");
        expectFull(count);
        // It follows the line as well.
        answer(L"SplitView.DefaultLayout");
        CommandContext context = CommandContext::activeContext();
        layouts->updateInputControl(&context);
        EXPECT_EQ(list->selectedItem(), list->items()[0]);
    }
}

TEST_F(SplitViewsTest, TheLayoutWithOnePaneKeepsTheActiveView)
{
    answer(L"Design.Sample");
    answer(L"SplitView.ResetLayout Quad");
    SplitViewMgr::get()->activeCanvas(canvases()[2]);
    GraphicsView* const active = canvases()[2]->view();
    answer(L"SplitView.DefaultLayout");
    EXPECT_EQ(views(), std::vector<GraphicsView*>{active});
}

TEST_F(SplitViewsTest, APaneWhoseDocumentIsClosedShowsAnotherOne)
{
    for (const auto& [layout, count] : kLayouts)
        for (size_t active = 0; active < count; ++active)
            for (const bool closesActive : {false, true}) {
                answer(L"Design.Sample");
                AssetSession* const stays = activeSession();
                answer(std::wstring(L"SplitView.ResetLayout ") + layout);
                GraphicsCanvas* const pane = canvases()[active];
                SplitViewMgr::get()->activeCanvas(pane);
                answer(L"Design.Sample");
                AssetSession* const closed = activeSession();
                EXPECT_EQ(sessionOf(pane), closed);
                if (!closesActive)
                    SplitViewMgr::get()->activeCanvas(canvases()[(active + 1) % count]);
                answer(L"VuCommands.CloseDocumentCmd " + closed->documentSession()->serialize());
                if (SessionMgr::get()->activeAssetSession() != stays)
                    answer(L"VuCommands.AssetShellCmd " + stays->serialize());
                for (const GraphicsCanvas* canvas : canvases())
                    EXPECT_EQ(sessionOf(canvas), stays);
                expectFull(count);
                run(L"Document.CloseAll");
            }
}

TEST_F(SplitViewsTest, InASplitLayoutEachCanvasGetsAViewAndTheActiveOneAloneIsServedAfterwards)
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

TEST_F(SplitViewsTest, TheLinesOfSplitViewsLayOutCountAndGoAround)
{
    EXPECT_EQ(failure(L"SplitView.NewDoc"), L"Invalid Asset Type");
    EXPECT_EQ(failure(L"SplitView.NewDoc NoSuchAssetType"), L"Invalid Asset Type");
    EXPECT_EQ(failure(L"SplitView.NextAsset"), L"SplitView.NextAsset: invalid vector<T> subscript");
    answer(L"Design.Sample");
    AssetSession* first = activeSession();
    answer(L"SplitView.ResetLayout Quad");
    EXPECT_EQ(shell()->arrangementFilter(), L"Quad");
    EXPECT_EQ(answer(L"SplitView.ViewCount"), L"The number of visible views is 4\n");
    answer(L"SplitView.ResetLayout NoSuchLayout");
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

TEST_F(SplitViewsTest, TwoThreeOrFourCanvasesSeeTheSameIfTheyShareACamera)
{
    answer(L"Design.Sample");
    const std::pair<const wchar_t*, size_t> layouts[] = {{L"SideBySide", 2}, {L"Triple", 3}, {L"Quad", 4}};
    for (const auto& [layout, count] : layouts) {
        answer(std::wstring(L"SplitView.ResetLayout ") + layout);
        std::vector<GraphicsCanvas*> canvases;
        GraphicsCanvas::allCanvases(canvases);
        ASSERT_EQ(canvases.size(), count);
        const auto camera = [&](size_t index) { return canvases[index]->view()->modelFragment()->camera(); };
        const auto same = [&](size_t a, size_t b) {
            return CommandsTests::stand(*camera(a)) == CommandsTests::stand(*camera(b));
        };
        const size_t last = count - 1;
        camera(0)->orbit(30, 10);
        EXPECT_FALSE(same(0, last));
        answer(L"SplitView.CopyCamera");
        EXPECT_TRUE(same(0, last));
        camera(0)->zoom(2);
        EXPECT_FALSE(same(0, last));
        answer(L"SplitView.ShareCamera");
        EXPECT_TRUE(same(0, last));
        // Moving any of them moves the others along.
        camera(0)->orbit(5, 5);
        EXPECT_TRUE(same(0, last));
        camera(last)->zoom(0.7);
        for (size_t i = 0; i < last; ++i)
            EXPECT_TRUE(same(i, last));
        answer(L"SplitView.ShareCamera");
        camera(last)->zoom(0.7);
        EXPECT_FALSE(same(0, last));
    }
    answer(L"SplitView.DefaultLayout");
    EXPECT_EQ(answer(L"SplitView.ViewCount"), L"The number of visible views is 1\n");
}

TEST_F(SplitViewsTest, OfSeveralCanvasesTheActiveOneHasAFrame)
{
    Workspace* const before = WorkspaceMgr::activeWorkspace();
    Workspace* const workspace = WorkspaceMgr::get()->create();
    WorkspaceWindow* const window = workspace->window();
    window->show();
    answer(L"Design.Sample");
    answer(L"SplitView.ResetLayout Quad");
    // The window adopts a new layout after the events already queued.
    const auto visible = [&](size_t count) {
        std::vector<GraphicsCanvas*> canvases;
        for (int i = 0; i < 1000 && canvases.size() != count; ++i) {
            QTest::qWait(5);
            canvases.clear();
            GraphicsCanvas::allCanvases(canvases);
            std::erase_if(canvases, [&](const GraphicsCanvas* canvas) {
                return !canvas->existingWidget() || !canvas->existingWidget()->isVisible();
            });
        }
        return canvases;
    };
    const auto frame = [](const GraphicsCanvas* canvas) {
        QWidget* around = canvas->existingWidget()->parentWidget();
        QImage picture(1, 1, QImage::Format_RGB32);
        around->render(&picture, {}, QRegion(0, 0, 1, 1), QWidget::DrawWindowBackground);
        return picture.pixelColor(0, 0);
    };
    const QColor highlight = QApplication::palette().color(QPalette::Highlight);
    const std::vector<GraphicsCanvas*> four = visible(4);
    EXPECT_EQ(four.size(), 4u);
    for (GraphicsCanvas* active : four) {
        SplitViewMgr::get()->activeCanvas(active);
        for (const GraphicsCanvas* canvas : four)
            EXPECT_EQ(frame(canvas) == highlight, canvas == active);
    }
    // Rows and columns share the space.
    for (const GraphicsCanvas* canvas : four) {
        EXPECT_NEAR(canvas->height(), four[0]->height(), 10);
        EXPECT_NEAR(canvas->width(), four[0]->width(), 10);
    }
    answer(L"SplitView.DefaultLayout");
    const std::vector<GraphicsCanvas*> one = visible(1);
    EXPECT_EQ(one.size(), 1u);
    for (const GraphicsCanvas* canvas : one)
        EXPECT_NE(frame(canvas), highlight);
    run(L"Document.CloseAll");
    WorkspaceMgr::get()->close(workspace);
    WorkspaceMgr::activeWorkspace(before);
}

} // namespace
