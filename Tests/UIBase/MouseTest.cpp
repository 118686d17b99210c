#include "Server/Base/ResourceMgr.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/UIBase/Fixture.h"
#include "UI/Base/Application.h"
#include "UI/Base/AssetGraphicsView.h"
#include "UI/Base/AssetSession.h"
#include "UI/Base/CursorController.h"
#include "UI/Base/GraphicsCanvas.h"
#include "UI/Base/GraphicsView.h"
#include "UI/Base/MouseEvents.h"
#include "UI/Base/SceneEvaluator.h"
#include "UI/Base/SessionMgr.h"
#include "UI/Base/SplitViewMgr.h"
#include "UI/Base/ViewMgr.h"

#include <QWidget>

using namespace Vu;

namespace {

/// Notes what it is told.
class MouseLog : public MouseEventSite
{
public:
    MouseLog() { MouseEventSource::get()->subscribe(this); }
    ~MouseLog() override { MouseEventSource::get()->unsubscribe(this); }
    void mouseDown(MouseEvent*) override { text += "down "; }
    void mouseUp(MouseEvent*) override { text += "up "; }
    void mouseMove(MouseEvent*) override { text += "move "; }
    void mouseDragBegin(MouseEvent*) override { text += "begin "; }
    void mouseDrag(MouseEvent*) override { text += "drag "; }
    void mouseDragEnd(MouseEvent*) override { text += "end "; }
    std::string text;
};

class MouseTest : public UiTest
{
protected:
    MouseTest()
    {
        Vs::Asset* asset = newAsset();
        Vs::Status status;
        Vs::ModelBuilder(asset).box(30, 20, 10, {}, status);
        session = SessionMgr::get()->assetSession(asset);
        view = Vs::cast<GraphicsView>(session->viewManager()->view(GraphicsView::interfaceId()));
        canvas.view(view, true, false);
    }
    Vs::Scene::Camera* camera() const { return view->viewFragments().front()->camera(); }

    void down(int button, double x, double y, unsigned modifiers = 0)
    {
        MouseEvent event(&canvas, {button, modifiers, x, y, 0});
        MouseEventSource::get()->fireMouseDown(&event);
    }
    void move(double x, double y)
    {
        MouseEvent event(&canvas, {kNoMouseButton, 0, x, y, 0});
        MouseEventSource::get()->fireMouseMove(&event);
    }
    void up(int button, double x, double y)
    {
        MouseEvent event(&canvas, {button, 0, x, y, 0});
        MouseEventSource::get()->fireMouseUp(&event);
    }

    AssetSession* session;
    GraphicsView* view;
    GraphicsCanvas canvas;
};

} // namespace

TEST_F(MouseTest, AShakingHandClicksAndAMovingOneDrags)
{
    MouseLog log;
    down(kLeftButton, 100, 100);
    move(101, 101);
    up(kLeftButton, 101, 101);
    EXPECT_EQ(log.text, "down move up ");
    log.text.clear();
    down(kLeftButton, 100, 100);
    move(120, 100);
    move(130, 100);
    up(kLeftButton, 130, 100);
    move(140, 100);
    EXPECT_EQ(log.text, "down begin drag drag end up move ");
}

TEST_F(MouseTest, WhatLiesUnderThePointerIsFoundInTheCanvasOfTheEvent)
{
    /// Asks at each press what is there.
    class Asker : public MouseEventSite
    {
    public:
        Asker() { MouseEventSource::get()->subscribe(this); }
        ~Asker() override { MouseEventSource::get()->unsubscribe(this); }
        void mouseDown(MouseEvent* event) override
        {
            SceneEvaluator* evaluator = SceneEvaluator::get(event->position());
            found = evaluator != nullptr;
            body = evaluator && evaluator->sceneSelection(false);
            background = evaluator && evaluator->sceneSelection(true);
        }
        bool found = false, body = false, background = false;
    } asker;
    down(kLeftButton, canvas.width() / 2.0, canvas.height() / 2.0);
    EXPECT_TRUE(asker.found && asker.body && asker.background);
    down(kLeftButton, 2, 2);
    EXPECT_TRUE(asker.found && !asker.body && asker.background);
    GraphicsCanvas empty;
    MouseEvent event(&empty, {kLeftButton, 0, 2, 2, 0});
    MouseEventSource::get()->fireMouseDown(&event);
    EXPECT_FALSE(asker.found);
}

TEST_F(MouseTest, AFragmentOverTheModelIsLeftOutOfFitsAndDoesNotHideTheModel)
{
    auto over = Vs::Scene::ViewFragment::make(nullptr, "Over");
    over->data()->supportSelectBackground(false);
    const uint64_t aimed = over->camera()->revision();
    const size_t before = view->viewFragments().size();
    view->addFragment(over);
    view->fit();
    EXPECT_EQ(over->camera()->revision(), aimed);
    EXPECT_EQ(view->modelFragment(), view->viewFragments().front());
    view->removeFragment(over.get());
    view->removeFragment(over.get());
    EXPECT_EQ(view->viewFragments().size(), before);
}

TEST_F(MouseTest, APointerOfAToolIsShownOverTheCanvasesAloneAndTheLastOneWins)
{
    Application::get()->needGui();
    QWidget window;
    QWidget* shown = canvas.widget(&window);
    CursorController* first = CursorController::makeForCanvases(0);
    first->cursor(Vs::CursorResource::defaultCursor(Qt::PointingHandCursor));
    EXPECT_EQ(shown->cursor().shape(), Qt::ArrowCursor);
    first->enabled(true);
    EXPECT_EQ(shown->cursor().shape(), Qt::PointingHandCursor);
    EXPECT_EQ(window.cursor().shape(), Qt::ArrowCursor);
    CursorController* second = CursorController::makeForCanvases(0);
    second->cursor(Vs::CursorResource::defaultCursor(Qt::SizeAllCursor));
    second->enabled(true);
    EXPECT_EQ(shown->cursor().shape(), Qt::SizeAllCursor);
    GraphicsCanvas late;
    EXPECT_EQ(late.widget(&window)->cursor().shape(), Qt::SizeAllCursor);
    second->destroy();
    EXPECT_EQ(shown->cursor().shape(), Qt::PointingHandCursor);
    first->destroy();
    EXPECT_EQ(shown->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(MouseTest, AViewShowsInOneCanvasAtATime)
{
    GraphicsCanvas second;
    second.view(view, false, false);
    EXPECT_EQ(view->canvas(), &second);
    EXPECT_EQ(canvas.view(), nullptr);
    second.view(nullptr, false, false);
    EXPECT_EQ(view->canvas(), nullptr);
}

TEST_F(MouseTest, ASecondViewStartsWithTheCameraOfTheFirstAndMayShareIt)
{
    camera()->zoom(3);
    GraphicsView* other = session->createView();
    ASSERT_NE(other, nullptr);
    const Vs::Scene::Camera* copy = other->viewFragments().front()->camera();
    EXPECT_EQ(copy->extentsWidth(), camera()->extentsWidth());
    GraphicsCanvas second;
    second.view(other, false, false);
    SplitViewMgr::get()->activeCanvas(&canvas);
    EXPECT_EQ(SplitViewMgr::get()->visibleViews(), 2);
    camera()->zoom(2);
    EXPECT_NE(copy->extentsWidth(), camera()->extentsWidth());
    SplitViewMgr::get()->copyCamera();
    EXPECT_EQ(copy->extentsWidth(), camera()->extentsWidth());
}
