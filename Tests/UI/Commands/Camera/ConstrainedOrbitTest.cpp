#include "Server/CommonData/CommonDataAssetSettings.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/Server/Geometry/Near.h"
#include "Tests/UI/Commands/Navigation.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Commands/Camera/OrbitMode.h"

#include <cmath>

using namespace Vu;
using namespace Vu::Commands;
using Vs::Scene::Camera;

namespace {

using ConstrainedOrbitTest = CommandsTests::Navigation;

TEST_F(ConstrainedOrbitTest, AConstrainedOrbitKeepsTheModelUpright)
{
    camera()->look({1, 1, -1}, {0, 0, 1});
    camera()->fit(view()->modelFragment()->bounds());
    drag(kRightButton, 0, 0, 130, 45);
    EXPECT_NEAR(camera()->right().z, 0, 1e-9);
    UIBaseOptionGroup::get()->useContrainedOrbit(false);
    press(kRightButton, 0, 0);
    move(130, 45);
    const double distance = camera()->distance();
    move(260, 0);
    move(100, 0);
    EXPECT_NEAR(camera()->distance(), distance, distance * 1e-9);
    release(kRightButton, 100, 0);
    EXPECT_GT(std::abs(camera()->right().z), 1e-3);
}

TEST_F(ConstrainedOrbitTest, NoConstrainedOrbitPutsTheModelOnItsHead)
{
    for (const int way : {-1, 1}) {
        camera()->look({1, 1, -0.6}, {0, 0, 1});
        camera()->fit(view()->modelFragment()->bounds());
        // The second drag starts at the pole, where an axis other than Z is nearest to the up direction.
        for (int time = 0; time < 3; ++time) {
            drag(kRightButton, 0, -way * 300, 0, way * 300);
            EXPECT_GE(camera()->screenUp().z, -1e-9) << time;
        }
        EXPECT_NEAR(camera()->direction().z, way > 0 ? -1 : 1, 1e-6);
        drag(kRightButton, 0, way * 60, 0, 0);
        EXPECT_GT(camera()->screenUp().z, 0.1);
    }
    // Neither does the tool, nor a drag of the cube.
    start(L"ConstrainedOrbitCommand");
    for (int time = 0; time < 3; ++time)
        drag(kLeftButton, 0, -150, 0, 150);
    EXPECT_GE(camera()->screenUp().z, -1e-9);
}

TEST_F(ConstrainedOrbitTest, TheAxisIsTheOneThatTheViewerTakesForUp)
{
    Camera someView;
    someView.look({0, 1, 0}, {0, 0, 1});
    EXPECT_TRUE(computeUpForConstrainedOrbit(someView).isEqualTo({0, 0, 1}));
    // Upside down.
    someView.look({0, 1, 0}, {0, 0, -1});
    EXPECT_TRUE(computeUpForConstrainedOrbit(someView).isEqualTo({0, 0, -1}));
    // From a steep angle above, Y is nearer to the camera's up, but only Z is vertical in the picture; that
    // takes precedence within 60 degrees.
    const GkVector3d steep(0.3, 0.2, -0.5);
    someView.look(steep, {0, 0, 1});
    someView.up(someView.screenUp());
    EXPECT_TRUE(computeUpForConstrainedOrbit(someView).isEqualTo({0, 0, 1}));
    // Rolled: no axis is vertical, and the nearest is used.
    someView.roll(1.2);
    const GkVector3d up = someView.up().normal();
    const GkVector3d axis = computeUpForConstrainedOrbit(someView);
    for (const GkVector3d& other : {GkVector3d::kXAxis, GkVector3d::kYAxis, GkVector3d::kZAxis})
        EXPECT_GE(up.dotProduct(axis), std::abs(up.dotProduct(other)) - 1e-12);
}

TEST_F(ConstrainedOrbitTest, TheAxesAreThoseOfTheModel)
{
    auto* settings = Vs::cast<Vs::CommonData::CommonDataAssetSettings>(ActiveAssetUtils::assetSettings());
    ASSERT_TRUE(settings);
    const GkVector3d up = GkVector3d(0, -1, 1).normal();
    ASSERT_TRUE(settings->sceneOrientation(up, {1, 0, 0}));
    Camera someView;
    someView.look({1, 0, 0}, {0, 0, 1});
    EXPECT_TRUE(isNear(computeUpForConstrainedOrbit(someView), up));
    someView.look({-1, 0, 0}, -up);
    EXPECT_TRUE(isNear(computeUpForConstrainedOrbit(someView), -up));

    // What a drag keeps vertical is the model's own axis.
    camera()->look(GkVector3d(1, 0.3, -0.2), up);
    drag(kRightButton, 0, 0, 130, 45);
    EXPECT_NEAR(camera()->right().dotProduct(up), 0, 1e-9);
    EXPECT_GT(std::abs(camera()->right().z), 1e-3);
}

} // namespace
