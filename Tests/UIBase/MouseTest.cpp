#include "Server/DataModel/ModelBuilder.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/UIBase/Fixture.h"
#include "UI/Base/AssetGraphicsView.h"
#include "UI/Base/AssetSession.h"
#include "UI/Base/GraphicsCanvas.h"
#include "UI/Base/SessionMgr.h"
#include "UI/Base/SplitViewMgr.h"
#include "UI/Base/ViewMgr.h"

using namespace Vu;

namespace {

/// Notes what it is told, and takes presses if it is asked to.
class MouseLog : public MouseEventSite
{
public:
    MouseLog() { MouseEventSource::get()->subscribe(this); }
    ~MouseLog() override { MouseEventSource::get()->unsubscribe(this); }
    void mouseDown(MouseEvent* event) override
    {
        text += "down ";
        if (takes)
            event->accept();
    }
    void mouseUp(MouseEvent*) override { text += "up "; }
    void mouseMove(MouseEvent*) override { text += "move "; }
    void mouseDragBegin(MouseEvent*) override { text += "begin "; }
    void mouseDrag(MouseEvent*) override { text += "drag "; }
    void mouseDragEnd(MouseEvent*) override { text += "end "; }
    std::string text;
    bool takes = false;
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

TEST_F(MouseTest, TheMiddleButtonPansWithoutTurningAndTheRightOneTurns)
{
    ASSERT_NE(view, nullptr);
    const GkVector3d direction = camera()->direction();
    const GkPoint3d target = camera()->target();
    down(kMiddleButton, 100, 100);
    move(200, 100);
    up(kMiddleButton, 200, 100);
    EXPECT_TRUE(camera()->direction().isEqualTo(direction));
    // The model follows the hand: the target goes the other way.
    EXPECT_LT((camera()->target() - target).dotProduct(camera()->right()), 0);

    const double distance = camera()->distance();
    down(kRightButton, 100, 100);
    move(160, 130);
    up(kRightButton, 160, 130);
    EXPECT_FALSE(camera()->direction().isEqualTo(direction));
    EXPECT_NEAR(camera()->distance(), distance, distance * 1e-9);
}

TEST_F(MouseTest, APressThatASiteTakesIsNotTheViewsUntilTheButtonGoesUp)
{
    MouseLog log;
    log.takes = true;
    const GkPoint3d position = camera()->position();
    down(kRightButton, 100, 100);
    move(200, 150);
    up(kRightButton, 200, 150);
    EXPECT_TRUE(camera()->position().isEqualTo(position));
    log.takes = false;
    down(kRightButton, 100, 100);
    move(200, 150);
    up(kRightButton, 200, 150);
    EXPECT_FALSE(camera()->position().isEqualTo(position));
}

TEST_F(MouseTest, TheWheelKeepsWhatLiesUnderThePointer)
{
    const double width = canvas.width(), height = canvas.height();
    const auto under = [&](double x, double y) {
        const double size = std::max(camera()->extentsWidth() / width, camera()->extentsHeight() / height);
        return camera()->target() + camera()->right() * ((x - width / 2) * size) +
               camera()->screenUp() * ((height / 2 - y) * size);
    };
    const GkPoint3d before = under(300, 200);
    const double extent = camera()->extentsWidth();
    MouseEvent event(&canvas, {kNoMouseButton, 0, 300, 200, 2.0});
    MouseEventSource::get()->fireMouseScroll(&event);
    EXPECT_LT(camera()->extentsWidth(), extent);
    EXPECT_LT(under(300, 200).distanceTo(before), 1e-6 * extent);
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
