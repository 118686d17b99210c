#include "Server/Base/Task.h"
#include "Server/Base/Timer.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/GeometryNode.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/UI/Commands/Navigation.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Program/UIBaseOptionGroup.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/View/GraphicsView.h"

#include <algorithm>

using namespace Vu;
using CommandsTests::stand;

namespace {

/// With a clock that the test controls.
class PivotMarkerTest : public CommandsTests::Navigation
{
protected:
    void SetUp() override
    {
        Navigation::SetUp();
        seconds = 100;
        Vs::Utility::timer::clock([] { return seconds; });
        camera()->pivot({5, 5, 5});
        camera()->pivotEnabled(true);
    }
    void TearDown() override
    {
        idle(2);
        idle(2);
        Vs::Utility::timer::clock(nullptr);
        Navigation::TearDown();
    }
    static bool markerShows()
    {
        const auto& nodes = view()->modelFragment()->viewFragmentNode()->children();
        return std::any_of(nodes.begin(), nodes.end(), [](const auto& node) {
            return Vs::cast<Rendra::Graphics::InstanceNode>(node.get()) != nullptr;
        });
    }
    static void idle(double passed)
    {
        seconds += passed;
        Application::get()->idleTasks()->runOnce();
    }

    static double seconds;
};

double PivotMarkerTest::seconds = 0;

TEST_F(PivotMarkerTest, TheMarkerStaysForASecondBehindAnOrbit)
{
    press(kRightButton, 0, 0);
    EXPECT_FALSE(markerShows());
    move(40, 40);
    EXPECT_TRUE(markerShows());
    idle(5);
    EXPECT_TRUE(markerShows());
    release(kRightButton, 40, 40);
    // The time counts from the first turn of the queue.
    idle(5);
    EXPECT_TRUE(markerShows());
    idle(0.9);
    EXPECT_TRUE(markerShows());
    idle(0.2);
    EXPECT_FALSE(markerShows());
    EXPECT_TRUE(Application::get()->idleTasks()->empty());
}

TEST_F(PivotMarkerTest, ANewOrbitWithinTheSecondKeepsTheMarker)
{
    drag(kRightButton, 0, 0, 40, 40);
    idle(0);
    idle(0.6);
    press(kRightButton, 0, 0);
    move(40, 40);
    idle(3);
    EXPECT_TRUE(markerShows());
    release(kRightButton, 40, 40);
    idle(0);
    idle(0.9);
    EXPECT_TRUE(markerShows());
    idle(0.2);
    EXPECT_FALSE(markerShows());
}

TEST_F(PivotMarkerTest, NoMarkerWithoutAPivotOrAgainstTheUsersOption)
{
    UIBaseOptionGroup::get()->pivotUnderPointer(false);
    camera()->pivotEnabled(false);
    drag(kRightButton, 0, 0, 40, 40);
    EXPECT_FALSE(markerShows());
    camera()->pivotEnabled(true);
    UIBaseOptionGroup::get()->cameraPivotEnabled(false);
    drag(kRightButton, 0, 0, 40, 40);
    EXPECT_FALSE(markerShows());
}

TEST_F(PivotMarkerTest, LookAtMovesThePivotToThePickedPlaceAndShowsIt)
{
    camera()->look({1, 1, -1}, {0, 0, 1});
    camera()->fit(view()->modelFragment()->bounds());
    const double distance = camera()->distance();
    start(L"LookAtCommand");
    EXPECT_EQ(activeKey(), L"LookAtCommand");
    move(0, -120);
    click(kLeftButton, 0, -120); // On the top of the box.
    EXPECT_EQ(activeKey(), L"");
    EXPECT_TRUE(camera()->direction().isEqualTo({0, 0, -1}, {1e-6, 1e-6}));
    EXPECT_NEAR(camera()->distance(), distance, distance * 1e-9);
    EXPECT_NEAR(camera()->target().z, 20, 1e-4);
    EXPECT_TRUE(camera()->pivot().isEqualTo(camera()->target()));
    EXPECT_TRUE(camera()->pivotEnabled());
    EXPECT_TRUE(markerShows());
    // The normal is that of the ground, so up must be something else: the back, as in the top view.
    EXPECT_TRUE(camera()->up().isEqualTo({0, 1, 0}, {1e-6, 1e-6}));
}

TEST_F(PivotMarkerTest, LookAtWaitsForABodyAndIgnoresDragsAndTheBackground)
{
    start(L"LookAtCommand");
    const std::string before = stand(*camera());
    click(kLeftButton, canvas()->width() / 2 - 3, 0);
    drag(kLeftButton, 0, 0, 30, 30);
    EXPECT_EQ(stand(*camera()), before);
    EXPECT_EQ(activeKey(), L"LookAtCommand");
    // A side of the box: its normal is horizontal, and the model is upright.
    click(kLeftButton, 0, 0);
    EXPECT_EQ(activeKey(), L"");
    EXPECT_TRUE(camera()->direction().isEqualTo({0, 1, 0}, {1e-6, 1e-6}));
    EXPECT_TRUE(camera()->up().isEqualTo({0, 0, 1}));
}

} // namespace
