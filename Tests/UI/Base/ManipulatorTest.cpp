#include "UI/Base/Session/Manipulator.h"

#include "Server/DataModel/ModelBuilder.h"
#include "Server/Scene/Camera.h"
#include "Tests/UI/Base/Fixture.h"
#include "UI/Base/Session/AssetGraphicsView.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/Session/SnapManager.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/MouseEvents.h"
#include "UI/Base/View/ViewMgr.h"

#include <cmath>
#include <numbers>
#include <optional>

using namespace Vu;
using Kind = ManipulatorHandle::Kind;

namespace {

class ManipulatorTest : public UiTest
{
protected:
    ManipulatorTest()
    {
        Vs::Asset* asset = newAsset();
        Vs::Status status;
        Vs::ModelBuilder(asset).box(30, 20, 10, {}, status);
        session = SessionMgr::get()->assetSession(asset);
        view = Vs::cast<AssetGraphicsView>(session->viewManager()->view(GraphicsView::interfaceId()));
        canvas.view(view, true, false);
        view->modelFragment()->camera()->projection(Vs::Scene::kParallelProjection);
        manipulator.emplace(*view, Manipulator::handlesOf({Kind::Along, Kind::Plane, Kind::Turn}),
                            [this](const Manipulator::Drag& drag) { drags.push_back(drag); });
        manipulator->frame(GkMatrix3d::translation({15, 10, 5}));
        view->overlays().layOut(canvas.width(), canvas.height());
        Inference::SnapManager::get()->enableDistanceSnapping(false);
    }
    ~ManipulatorTest() override { Inference::SnapManager::get()->enableDistanceSnapping(true); }

    /// The position of a point of the model in the canvas.
    GkPoint3d seen(const GkPoint3d& point) const
    {
        const Vs::Scene::Projection projection(*view->modelFragment()->camera(), canvas.width(),
                                               canvas.height());
        const GkPoint3d screen = projection.worldToScreen(point);
        return {screen.x, canvas.height() - screen.y, 0};
    }
    /// The length of an arrow in the model.
    double length() const
    {
        const Vs::Scene::Projection projection(*view->modelFragment()->camera(), canvas.width(),
                                               canvas.height());
        return 105 * projection.pixelSize(view->modelFragment()->camera()->distance());
    }

    void drag(const GkPoint3d& from, const GkPoint3d& to, unsigned modifiers = 0)
    {
        const GkPoint3d a = seen(from), b = seen(to);
        auto* source = MouseEventSource::get();
        MouseEvent over(&canvas, {kNoMouseButton, 0, a.x, a.y, 0});
        source->fireMouseMove(&over);
        MouseEvent down(&canvas, {kLeftButton, modifiers, a.x, a.y, 0});
        source->fireMouseDown(&down);
        MouseEvent half(&canvas, {kLeftButton, modifiers, (a.x + b.x) / 2, (a.y + b.y) / 2, 0});
        source->fireMouseMove(&half);
        MouseEvent up(&canvas, {kLeftButton, modifiers, b.x, b.y, 0});
        source->fireMouseUp(&up);
    }

    const GkPoint3d middle{15, 10, 5};
    AssetSession* session;
    AssetGraphicsView* view;
    GraphicsCanvas canvas;
    std::vector<Manipulator::Drag> drags;
    std::optional<Manipulator> manipulator;
};

} // namespace

TEST_F(ManipulatorTest, AnArrowMovesAlongItsAxisAlone)
{
    const double grip = 0.6 * length();
    const GkVector3d axes[] = {GkVector3d::kXAxis, GkVector3d::kYAxis, GkVector3d::kZAxis};
    for (const GkVector3d& axis : axes) {
        drags.clear();
        // A hand that strays from the axis still moves along it.
        drag(middle + axis * grip, middle + axis * (grip + 7.5));
        ASSERT_GE(drags.size(), 2u);
        EXPECT_FALSE(drags.front().done);
        EXPECT_TRUE(drags.back().done);
        EXPECT_EQ(drags.back().handle.kind, Kind::Along);
        EXPECT_NEAR((drags.back().shift - axis * 7.5).length(), 0, 1e-6);
        EXPECT_NEAR(drags.front().shift.length(), 3.75, 1e-6);
    }
}

TEST_F(ManipulatorTest, ASquareMovesInItsPlaneAndARingTurns)
{
    const double grip = 0.37 * length(), ring = 0.78 * length();
    drag(middle + GkVector3d(grip, grip, 0), middle + GkVector3d(grip + 4, grip - 3, 0));
    ASSERT_FALSE(drags.empty());
    EXPECT_EQ(drags.back().handle, (ManipulatorHandle{Kind::Plane, 2}));
    EXPECT_NEAR((drags.back().shift - GkVector3d(4, -3, 0)).length(), 0, 1e-6);

    drags.clear();
    const auto onRing = [&](double degrees) {
        const double angle = degrees * std::numbers::pi / 180;
        return middle + GkVector3d(std::cos(angle), std::sin(angle), 0) * ring;
    };
    drag(onRing(-20), onRing(25));
    ASSERT_FALSE(drags.empty());
    EXPECT_EQ(drags.back().handle, (ManipulatorHandle{Kind::Turn, 2}));
    EXPECT_NEAR(drags.back().angle * 180 / std::numbers::pi, 45, 1e-6);
}

TEST_F(ManipulatorTest, WhatIsDraggedSnapsAsTheUserWantsIt)
{
    auto* snap = Inference::SnapManager::get();
    const double grip = 0.6 * length();
    const auto along = [&](unsigned modifiers) {
        drags.clear();
        drag(middle + GkVector3d(grip, 0, 0), middle + GkVector3d(grip + 7.3, 0, 0), modifiers);
        return drags.empty() ? -1 : drags.back().shift.x;
    };
    snap->enableDistanceSnapping(true);
    snap->adaptiveSnap(false);
    snap->snapIncrement(2.5);
    EXPECT_NEAR(along(0), 7.5, 1e-9);
    EXPECT_NEAR(along(kAltModifier), 7.3, 1e-6);
    snap->adaptiveSnap(true);
    EXPECT_NEAR(along(0), 7.3, 1.5) << "a step of some pixels";
    snap->snapIncrement(1);
}

TEST_F(ManipulatorTest, BesideTheHandlesAndAfterItsEndTheMouseIsTheViews)
{
    const double grip = 0.6 * length();
    drag({200, 200, 200}, {210, 200, 200});
    EXPECT_TRUE(drags.empty());
    const size_t fragments = view->viewFragments().size();
    manipulator->visible(false);
    drag(middle + GkVector3d(grip, 0, 0), middle + GkVector3d(grip + 5, 0, 0));
    EXPECT_TRUE(drags.empty());
    manipulator.reset();
    EXPECT_EQ(view->viewFragments().size(), fragments - 1);
    drag(middle + GkVector3d(grip, 0, 0), middle + GkVector3d(grip + 5, 0, 0));
    EXPECT_TRUE(drags.empty());
}
