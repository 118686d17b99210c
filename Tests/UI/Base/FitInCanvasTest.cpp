#include "Server/DataModel/ModelBuilder.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/Projection.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/UI/Base/Fixture.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/Private/FreeArea.h"
#include "UI/Base/View/ViewMgr.h"

#include <QFrame>

#include <algorithm>
#include <memory>

using namespace Vu;

namespace {

void expectSame(const CanvasRect& found, const CanvasRect& wanted)
{
    EXPECT_EQ(found.left, wanted.left);
    EXPECT_EQ(found.top, wanted.top);
    EXPECT_EQ(found.right, wanted.right);
    EXPECT_EQ(found.bottom, wanted.bottom);
}

} // namespace

TEST(FreeArea, IsWhereSomethingOfTheShapeBecomesLargest)
{
    expectSame(freeArea(800, 600, {}, 1), {0, 0, 800, 600});
    const CanvasRect bar{200, 550, 600, 590}, cube{680, 5, 795, 120}, panel{10, 10, 300, 400};
    expectSame(freeArea(800, 600, {bar}, 1), {0, 0, 800, 550});
    // Something tall goes beside the bar, something low above it.
    expectSame(freeArea(800, 600, {bar}, 0.1), {0, 0, 200, 600});
    expectSame(freeArea(800, 600, {bar, cube}, 1), {0, 0, 680, 550});
    expectSame(freeArea(800, 600, {bar, cube}, 3), {0, 120, 800, 550});
    expectSame(freeArea(800, 600, {bar, cube, panel}, 1), {300, 120, 800, 550});
    // What extends beyond the canvas covers only what is inside.
    expectSame(freeArea(800, 600, {{-50, -50, 900, 100}}, 1), {0, 100, 800, 600});
    expectSame(freeArea(800, 600, {{10, 10, 790, 590}}, 1), {0, 0, 800, 600});
}

/// A long box in a canvas with a bar over its lower edge and the cube in its corner.
class FitInCanvas : public UiTest
{
protected:
    FitInCanvas()
    {
        Application::get()->needGui();
        frame = std::make_unique<QWidget>();
        Vs::Asset* asset = newAsset();
        Vs::Status status;
        Vs::ModelBuilder(asset).box(60, 20, 10, {}, status);
        AssetSession* session = SessionMgr::get()->assetSession(asset);
        view = Vs::cast<GraphicsView>(session->viewManager()->view(GraphicsView::interfaceId()));
        canvas.view(view, true, false);
        frame->resize(700, 500);
        canvas.widget(frame.get())->resize(700, 500);
        bar = new QFrame(frame.get());
        bar->setGeometry(100, 400, 500, 80);
        frame->show();
    }
    ~FitInCanvas() override
    {
        canvas.view(nullptr, false, false);
        UIBaseOptionGroup::get()->wantToShowOrbicon(true);
    }

    /// Of the box on the screen, in pixels from the upper left corner.
    QRectF seen() const
    {
        const Vs::Scene::ViewFragment* fragment = view->modelFragment();
        const Vs::Scene::Projection projection(*fragment->camera(), canvas.width(), canvas.height());
        double left = 1e9, right = -1e9, top = 1e9, bottom = -1e9;
        for (int i = 0; i < 8; ++i) {
            const GkPoint3d p =
                projection.worldToScreen({i & 1 ? 60.0 : 0, i & 2 ? 20.0 : 0, i & 4 ? 10.0 : 0});
            left = std::min(left, p.x), right = std::max(right, p.x);
            top = std::min(top, canvas.height() - p.y), bottom = std::max(bottom, canvas.height() - p.y);
        }
        return {left, top, right - left, bottom - top};
    }

    GraphicsView* view;
    std::unique_ptr<QWidget> frame;
    GraphicsCanvas canvas;
    QFrame* bar;
};

TEST_F(FitInCanvas, NothingIsFramedBehindTheBarsAndTheCube)
{
    for (const GkVector3d& direction : {GkVector3d(0, 1, 0), {0, 0, -1}, {1, 1, -1}, {1, 0, 0}})
        for (const bool cube : {true, false}) {
            SCOPED_TRACE(testing::Message() << testing::PrintToString(direction) << cube);
            UIBaseOptionGroup::get()->wantToShowOrbicon(cube);
            view->modelFragment()->camera()->look(direction, {0, 0, 1});
            view->fit();
            const QRectF box = seen();
            EXPECT_TRUE(QRectF(canvas.existingWidget()->rect()).contains(box));
            EXPECT_FALSE(box.intersects(bar->geometry()));
            EXPECT_FALSE(cube && box.intersects(QRectF(700 - 122, 6, 116, 116)));
            // No space is wasted.
            const std::vector<CanvasRect> covered = canvas.covered();
            EXPECT_EQ(covered.size(), cube ? 2u : 1u);
            const CanvasRect free = freeArea(700, 500, covered, box.width() / box.height());
            EXPECT_NEAR(std::max(box.width() / free.width(), box.height() / free.height()), 1 / 1.06, 0.01);
        }
    // Anything hidden or transparent to the mouse covers nothing.
    bar->setAttribute(Qt::WA_TransparentForMouseEvents);
    EXPECT_TRUE(canvas.covered().empty());
    bar->setAttribute(Qt::WA_TransparentForMouseEvents, false);
    bar->hide();
    EXPECT_TRUE(canvas.covered().empty());
}

TEST_F(FitInCanvas, WhatComesOverTheCanvasAfterAFitMovesNothing)
{
    view->fit();
    const uint64_t before = view->modelFragment()->camera()->revision();
    bar->setGeometry(0, 0, 700, 250);
    canvas.existingWidget()->resize(650, 480);
    view->update();
    EXPECT_EQ(view->modelFragment()->camera()->revision(), before);
    view->fit();
    EXPECT_TRUE(QRectF(0, 250, 650, 230).contains(seen())) << "below the bar";
}
