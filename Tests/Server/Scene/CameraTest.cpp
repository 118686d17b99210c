#include "Server/Scene/Camera.h"

#include "Server/Scene/CameraParameters.h"
#include "Server/Scene/Projection.h"
#include "Tests/Server/Geometry/Near.h"

#include <cmath>
#include <limits>
#include <random>

namespace {

using Vs::Scene::Camera;
using Vs::Scene::CameraParameters;
using Vs::Scene::Projection;

constexpr double kQuarter = 1.5707963267948966;
constexpr double kNotANumber = std::numeric_limits<double>::quiet_NaN();

/// Looks along +Y from 100 mm in front of the origin, Z up.
Camera& fromTheFront(Camera& camera)
{
    camera.position({0, -100, 0});
    camera.target({0, 0, 0});
    camera.up({0, 0, 1});
    return camera;
}

void expectRigid(const Camera& camera)
{
    EXPECT_NEAR(camera.right().dotProduct(camera.screenUp()), 0, 1e-9);
    EXPECT_NEAR(camera.right().dotProduct(camera.direction()), 0, 1e-9);
    EXPECT_NEAR(camera.right().length(), 1, 1e-9);
    EXPECT_NEAR(camera.viewMatrix().det(), 1, 1e-9);
}

TEST(Camera, LooksAtFirstFromTheRightInFrontAndAboveWithZUpwards)
{
    const Camera camera;
    EXPECT_TRUE(camera.position().x > 0 && camera.position().y < 0 && camera.position().z > 0);
    EXPECT_TRUE(isNear(camera.target(), {0, 0, 0}));
    EXPECT_GT(camera.screenUp().z, 0.5);
    EXPECT_NEAR(camera.perspectiveAngle(), kQuarter / 3, 1e-6);
}

TEST(Camera, GivesBackEveryValueThatWasSetToTheLastBit)
{
    std::mt19937 random(5);
    std::uniform_real_distribution<double> number(-1e4, 1e4);
    for (int i = 0; i < 20; ++i) {
        CameraParameters state;
        state.position = {number(random), number(random), number(random)};
        state.target = {number(random), number(random), number(random)};
        state.up = {number(random), number(random), number(random)};
        state.clipNear = number(random);
        state.clipFar = number(random);
        state.extentsWidth = std::abs(number(random));
        state.extentsHeight = std::abs(number(random));
        state.projection = 1 + i % 2;
        Camera camera;
        state.applyTo(camera);
        const CameraParameters back(camera);
        EXPECT_EQ(back.position.x, state.position.x);
        EXPECT_EQ(back.target.y, state.target.y);
        EXPECT_EQ(back.up.z, state.up.z);
        EXPECT_TRUE(back.isEqualTo(state));
    }
}

TEST(Camera, IgnoresWhatIsNoFiniteNumberAndNoProjection)
{
    Camera camera;
    const CameraParameters before(camera);
    const uint64_t revision = camera.revision();
    camera.position({kNotANumber, 0, 0});
    camera.target({0, HUGE_VAL, 0});
    camera.position({1e200, 0, 0});
    camera.target({0, 0, -1e101});
    camera.extentsHeight(-1e300);
    camera.up({0, 0, kNotANumber});
    camera.clipNear(kNotANumber);
    camera.extentsWidth(HUGE_VAL);
    camera.projection(0);
    camera.projection(7);
    camera.zoom(0);
    camera.zoom(-2);
    camera.zoom(kNotANumber);
    camera.dolly({kNotANumber, 0, 0});
    camera.fit(BBox());
    EXPECT_TRUE(CameraParameters(camera).isEqualTo(before));
    EXPECT_EQ(camera.revision(), revision);
}

TEST(Camera, StaysUsableWhereUpOrDirectionAreMissing)
{
    Camera camera;
    fromTheFront(camera);
    for (const GkVector3d& up : {GkVector3d(0, 1, 0), GkVector3d(0, -5, 0), GkVector3d(0, 0, 0)}) {
        camera.up(up);
        expectRigid(camera);
    }
    camera.target(camera.position());
    expectRigid(camera);
}

TEST(Camera, AModelFollowsTheCursorOfAnOrbit)
{
    Camera camera;
    fromTheFront(camera);
    const GkPoint3d nearest(0, -10, 0); // a place on the side that faces the viewer
    const GkPoint3d before = camera.viewMatrix() * nearest;
    camera.orbit(40, 0);
    EXPECT_GT((camera.viewMatrix() * nearest).x, before.x) << "dragged to the right";
    fromTheFront(camera).orbit(0, 40);
    EXPECT_GT((camera.viewMatrix() * nearest).y, before.y) << "dragged upwards";
}

TEST(Camera, ThousandsOfOrbitsKeepTheDistanceAndTheRightAngles)
{
    std::mt19937 random(9);
    std::uniform_real_distribution<double> pixels(-30, 30);
    Camera camera;
    const double distance = camera.distance();
    for (int i = 0; i < 5000; ++i)
        camera.orbit(pixels(random), pixels(random));
    EXPECT_NEAR(camera.distance(), distance, 1e-6);
    EXPECT_TRUE(isNear(camera.target(), {0, 0, 0}));
    expectRigid(camera);
}

TEST(Camera, AnOrbitAboutThePivotLeavesThePivotWhereItIsOnTheScreen)
{
    Camera camera;
    fromTheFront(camera);
    camera.pivot({20, 5, -8});
    const GkPoint3d before = camera.viewMatrix() * camera.pivot();
    camera.orbitAroundPivot(70, -25);
    EXPECT_TRUE(isNear(camera.viewMatrix() * camera.pivot(), before));
    EXPECT_FALSE(camera.target().isEqualTo({0, 0, 0}));
}

TEST(Camera, AConstrainedOrbitAboutAnAxisKeepsTheAxisUprightAndTheHeight)
{
    Camera camera;
    const double height = camera.position().z;
    camera.constrainedOrbit(123, false, {0, 0, 1}, camera.target());
    EXPECT_NEAR(camera.position().z, height, 1e-9);
    EXPECT_NEAR(camera.right().z, 0, 1e-9);
    camera.constrainedOrbit(20, true, {0, 0, 1}, camera.target());
    EXPECT_NEAR(camera.right().z, 0, 1e-9) << "the horizon stays level when the view tips";
}

TEST(Camera, AVerticalConstrainedOrbitEndsAtThePoleAndComesBackFromIt)
{
    const GkVector3d z(0, 0, 1), y(0, 1, 0);
    // The axis alone; then the axis that a drag from above uses, over which the model would still tip.
    for (const bool knowsUpright : {false, true})
        for (const double way : {-1.0, 1.0}) {
            SCOPED_TRACE(testing::Message() << knowsUpright << ' ' << way);
            Camera camera;
            if (knowsUpright)
                camera.upright(z * 3);
            const GkVector3d axis = knowsUpright ? y : z;
            for (int step = 0; step < 100; ++step) {
                camera.constrainedOrbit(17 * way, true, axis, {5, 6, 7});
                ASSERT_GE(camera.screenUp().z, -1e-9);
            }
            EXPECT_NEAR(camera.direction().z, way, 1e-9);
            expectRigid(camera);
            camera.constrainedOrbit(-20 * way, true, axis, camera.target());
            EXPECT_GT(camera.screenUp().z, 0.1);
        }
    // If it is upside down already it stays so: it turns as if that were upright.
    Camera camera;
    camera.upright(z);
    camera.roll(2 * kQuarter);
    camera.constrainedOrbit(-1e4, true, -z, camera.target());
    EXPECT_LE(camera.screenUp().z, 1e-9);
    // An axis that lies across the screen has no poles.
    fromTheFront(camera);
    camera.upright({});
    camera.constrainedOrbit(kQuarter / 0.0087266462599716477 * 2, true, {1, 0, 0}, {});
    EXPECT_TRUE(isNear(camera.direction(), GkVector3d(0, -1, 0)));
}

TEST(Camera, SlidingTheTargetToAnotherDepthLeavesThePictureAsItIs)
{
    const GkPoint3d places[] = {{3, 20, 5}, {-7, -30, 11}, {0, 800, -100}};
    for (const int kind : {Vs::Scene::kParallelProjection, Vs::Scene::kPerspectiveProjection})
        for (const double depth : {0.001, 40.0, 350.0, 1e5}) {
            Camera camera;
            fromTheFront(camera).projection(kind);
            const Projection before(camera, 1280, 800);
            const CameraParameters was(camera);
            camera.slideTarget(depth);
            const Projection after(camera, 1280, 800);
            EXPECT_NEAR((camera.target() - was.position).dotProduct(camera.direction()), depth, depth * 1e-9);
            for (const GkPoint3d& place : places) {
                const GkPoint3d a = before.worldToScreen(place), b = after.worldToScreen(place);
                EXPECT_NEAR(a.x, b.x, 1e-6) << depth;
                EXPECT_NEAR(a.y, b.y, 1e-6) << depth;
            }
        }
    Camera camera;
    const CameraParameters before(camera);
    for (const double depth : {0.0, -5.0, 1e-200, 1e90, kNotANumber})
        camera.slideTarget(depth);
    EXPECT_TRUE(CameraParameters(camera).isEqualTo(before));
}

TEST(Projection, ShowsWhatTheCameraIsTurnedToHoweverNearItIsToALargeScene)
{
    Camera camera;
    fromTheFront(camera).slideTarget(0.1);
    const Projection view(camera, 1280, 800, {{-1e4, -1e4, -1e4}, {1e4, 1e4, 1e4}});
    EXPECT_LT(view.clipNear(), 0.1);
    EXPECT_GT(view.clipFar(), 1e4);
}

TEST(Camera, ARollTurnsTheWholePictureAndNothingElse)
{
    Camera camera;
    fromTheFront(camera);
    camera.roll(kQuarter);
    EXPECT_TRUE(isNear(camera.position(), {0, -100, 0}));
    EXPECT_TRUE(isNear(camera.direction(), GkVector3d(0, 1, 0)));
    EXPECT_NEAR(std::abs(camera.screenUp().x), 1, 1e-9);

    fromTheFront(camera).roll(kQuarter, {10, 0, 0});
    EXPECT_FALSE(camera.target().isEqualTo({0, 0, 0})) << "turns about the other centre";
    EXPECT_NEAR(camera.target().distanceTo({10, 0, 0}), 10, 1e-9);
}

TEST(Camera, ZoomMakesTheTargetsSurroundingsLargerByTheFactorInBothProjections)
{
    for (const int projection : {Vs::Scene::kParallelProjection, Vs::Scene::kPerspectiveProjection}) {
        Camera camera;
        fromTheFront(camera).projection(projection);
        const auto sizeOnScreen = [&] {
            const Projection view(camera, 800, 600);
            return view.worldToScreen({1, 0, 0}).x - view.worldToScreen({-1, 0, 0}).x;
        };
        const double before = sizeOnScreen();
        const double angle = camera.perspectiveAngle();
        camera.zoom(1.1);
        EXPECT_NEAR(sizeOnScreen(), before * 1.1, 1e-9) << "projection " << projection;
        EXPECT_NEAR(camera.perspectiveAngle(), angle, 1e-12) << "the lens stays";
        camera.zoom(1 / 1.1);
        EXPECT_NEAR(sizeOnScreen(), before, 1e-9);
        for (int i = 0; i < 2000; ++i)
            camera.zoom(10);
        EXPECT_GT(camera.extentsWidth(), 0) << "nobody zooms out of the numbers";
        EXPECT_GT(camera.distance(), 0);
    }
}

TEST(Camera, TogglingTheProjectionKeepsTheSizeAtTheTarget)
{
    Camera camera;
    camera.projection(Vs::Scene::kParallelProjection);
    camera.position({0, -1, 0}); // far too near for a perspective
    camera.extentsWidth(300);
    camera.extentsHeight(100);
    const auto place = [&] { return Projection(camera, 900, 300).worldToScreen({50, 0, 20}); };
    const GkPoint3d parallel = place();
    camera.toggleProjection(Vs::Scene::kPerspectiveProjection);
    EXPECT_NEAR(place().x, parallel.x, 1e-6);
    EXPECT_NEAR(place().y, parallel.y, 1e-6);
    EXPECT_NEAR(camera.perspectiveAngle(), kQuarter / 3, 1e-6);
    camera.toggleProjection(Vs::Scene::kParallelProjection);
    EXPECT_NEAR(place().x, parallel.x, 1e-6);
}

TEST(Camera, EveryChangeIsToldAndCounted)
{
    struct Listener : Vs::Scene::CameraEventSite
    {
        ~Listener() override { Vs::Scene::CameraEventSource::get()->unsubscribe(this); }
        void cameraChanged(Vs::Scene::CameraEvent* event) override { last = event->camera(), ++count; }
        Camera* last = nullptr;
        int count = 0;
    } listener;
    Camera camera;
    Vs::Scene::CameraEventSource::get()->subscribe(&listener);
    const uint64_t before = camera.revision();
    camera.zoom(2);
    EXPECT_EQ(listener.last, &camera);
    EXPECT_EQ(listener.count, 1);
    EXPECT_GT(camera.revision(), before);
}

TEST(Projection, ScreenAndWorldAreEachOthersInverse)
{
    for (const int projection : {Vs::Scene::kParallelProjection, Vs::Scene::kPerspectiveProjection}) {
        Camera camera;
        camera.projection(projection);
        const Projection view(camera, 1920, 1080);
        for (const GkPoint3d& p : {GkPoint3d(10, 20, 30), GkPoint3d(-50, 3, 7), GkPoint3d()})
            EXPECT_TRUE(isNear(view.screenToWorld(view.worldToScreen(p)), p)) << projection;
        EXPECT_NEAR(view.worldToScreen(camera.target()).x, 960, 1e-9);
        EXPECT_NEAR(view.worldToScreen(camera.target()).y, 540, 1e-9);
    }
}

TEST(Projection, ShowsTheExtentsWholeInWindowsOfEveryShape)
{
    Camera camera;
    fromTheFront(camera).projection(Vs::Scene::kParallelProjection);
    camera.extentsWidth(200);
    camera.extentsHeight(50);
    const Projection wide(camera, 1600, 100), square(camera, 400, 400), tall(camera, 100, 900);
    for (const Projection& view : {wide, square, tall}) {
        const GkPoint3d corner = view.worldToScreen({100, 0, 25});
        EXPECT_LE(corner.x, view.width() + 1e-9);
        EXPECT_LE(corner.y, view.height() + 1e-9);
        const bool touchesSide = std::abs(corner.x - view.width()) < 1e-9;
        const bool touchesTop = std::abs(corner.y - view.height()) < 1e-9;
        EXPECT_TRUE(touchesSide || touchesTop) << "and no smaller than need be";
    }
}

TEST(Camera, TurningAboutWhatIsNoPlaceOrAxisChangesNothing)
{
    Camera camera;
    fromTheFront(camera);
    camera.pivot({1, 2, 3});
    const CameraParameters before(camera);
    const double infinite = std::numeric_limits<double>::infinity();
    camera.pivot({kNotANumber, 0, 0});
    EXPECT_TRUE(camera.pivot().isEqualTo({1, 2, 3}));
    camera.constrainedOrbit(10, false, {kNotANumber, 0, 1}, {});
    camera.constrainedOrbit(10, false, {0, 0, 0}, {});
    camera.constrainedOrbit(10, true, {0, 0, 1}, {0, infinite, 0});
    camera.roll(1, {0, 0, kNotANumber});
    camera.roll(infinite);
    camera.orbitAroundPivot(kNotANumber, infinite);
    EXPECT_TRUE(CameraParameters(camera).isEqualTo(before));
}

TEST(CameraParameters, ATransitionEndsExactlyWhereItShouldAndKeepsItsDistanceOnTheWay)
{
    Camera from, to;
    fromTheFront(from);
    to.position({100, 0, 0}); // a quarter turn to the right
    to.up({0, 0, 1});
    const CameraParameters a(from), b(to);
    EXPECT_TRUE(a.towards(b, 0).isEqualTo(a));
    EXPECT_TRUE(a.towards(b, 1).isEqualTo(b));
    EXPECT_TRUE(a.towards(b, 7).isEqualTo(b));
    for (double part = 0.1; part < 1; part += 0.2) {
        const CameraParameters way = a.towards(b, part);
        EXPECT_NEAR(way.position.distanceTo(way.target), 100, 1e-6) << "cuts no corner at " << part;
        EXPECT_NEAR(way.position.z, 0, 1e-6);
    }
    EXPECT_NEAR(a.towards(b, 0.5).position.x, 100 * std::sqrt(0.5), 1e-6) << "halfway is half the angle";
}

TEST(CameraParameters, ATransitionToTheOppositeSideGoesAroundTheModel)
{
    Camera from, to;
    fromTheFront(from);
    fromTheFront(to).position({0, 100, 0});
    const CameraParameters a(from), b(to);
    for (double part = 0.05; part < 1; part += 0.05) {
        const CameraParameters way = a.towards(b, part);
        EXPECT_NEAR(way.position.distanceTo(way.target), 100, 1e-6) << part;
        EXPECT_FALSE(way.up.isParallelTo(way.target - way.position)) << part;
    }
}

} // namespace
