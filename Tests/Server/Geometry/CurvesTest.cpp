#include "Server/Geometry/GkCircArc3d.h"
#include "Server/Geometry/GkLine3d.h"
#include "Server/Geometry/GkPlane.h"
#include "Tests/Server/Geometry/Near.h"

namespace {

constexpr double kHalf = 3.141592653589793;

TEST(Plane, ALineMeetsThePlaneOnWhicheverSideItStarts)
{
    const GkPlane plane({0, 0, 10}, {0, 0, 4});
    GkPoint3d where;
    ASSERT_TRUE(plane.intersectWith(GkLine3d(GkPoint3d(1, 2, 0), GkVector3d(1, 0, 1)), where));
    EXPECT_TRUE(isNear(where, {11, 2, 10}));
    ASSERT_TRUE(plane.intersectWith(GkLine3d(GkPoint3d(1, 2, 30), GkPoint3d(1, 2, 31)), where));
    EXPECT_TRUE(isNear(where, {1, 2, 10}));
}

TEST(Plane, AParallelLineMeetsItNowhereAndLeavesTheResultAlone)
{
    const GkPlane plane({0, 0, 10}, {0, 0, 1});
    GkPoint3d where(7, 8, 9);
    EXPECT_FALSE(plane.intersectWith(GkLine3d(GkPoint3d(0, 0, 0), GkVector3d(1, 1, 0)), where));
    // Not even if the line lies in it: there is no single point.
    EXPECT_FALSE(plane.intersectWith(GkLine3d(GkPoint3d(0, 0, 10), GkVector3d(1, 1, 0)), where));
    EXPECT_FALSE(plane.intersectWith(GkLine3d(GkPoint3d(1, 1, 1), GkPoint3d(1, 1, 1)), where));
    EXPECT_TRUE(isNear(where, {7, 8, 9}));
}

TEST(Plane, DistancesCarryTheSideThatTheNormalPointsTo)
{
    const GkPlane plane({0, 0, 10}, {0, 0, -2});
    EXPECT_DOUBLE_EQ(plane.signedDistanceTo({5, 5, 4}), 6);
    EXPECT_DOUBLE_EQ(plane.signedDistanceTo({5, 5, 14}), -4);
    EXPECT_TRUE(isNear(plane.closestPointTo({5, 6, 4}), {5, 6, 10}));
    EXPECT_TRUE(plane.isOn(plane.closestPointTo({1e3, -2e3, 7})));
}

TEST(Line, TheNearestPointIsTheFootOfThePerpendicular)
{
    const GkLine3d line(GkPoint3d(0, 0, 0), GkVector3d(3, 4, 0));
    const GkPoint3d p(10, 0, 5);
    const GkPoint3d foot = line.closestPointTo(p);
    EXPECT_NEAR((p - foot).dotProduct(line.direction()), 0, 1e-12);
    EXPECT_TRUE(line.isOn(foot));
    EXPECT_NEAR(line.distanceTo(p), std::sqrt(8.0 * 8.0 + 5 * 5), 1e-12);
}

TEST(Line, ALineThroughTwoEqualPointsIsThatPoint)
{
    const GkLine3d line(GkPoint3d(1, 2, 3), GkPoint3d(1, 2, 3));
    EXPECT_TRUE(line.direction().isZeroLength());
    EXPECT_TRUE(isNear(line.closestPointTo({9, 9, 9}), {1, 2, 3}));
}

TEST(Arc, RunsCounterClockwiseAboutItsNormalFromTheReference)
{
    const GkCircArc3d arc({1, 1, 0}, {0, 0, 3}, {2, 0, 5}, 2, 0, kHalf);
    EXPECT_TRUE(isNear(arc.startPoint(), {3, 1, 0})) << "the reference is brought into the arc's plane";
    EXPECT_TRUE(isNear(arc.pointAt(kHalf / 2), {1, 3, 0}));
    EXPECT_TRUE(isNear(arc.endPoint(), {-1, 1, 0}));
    EXPECT_NEAR(arc.length(), 2 * kHalf, 1e-12);
    EXPECT_FALSE(arc.isClosed());
}

TEST(Arc, AWholeCircleClosesAndKeepsToItsPlaneEvenIfTheReferenceIsTheNormal)
{
    const GkVector3d normal(1, 2, 2);
    const GkCircArc3d circles[] = {{{5, 0, 0}, normal, 4},
                                   {{5, 0, 0}, normal, normal, 4, 0, GkCircArc3d::kFullTurn}};
    for (const GkCircArc3d& circle : circles) {
        EXPECT_TRUE(circle.isClosed());
        EXPECT_TRUE(isNear(circle.startPoint(), circle.endPoint()));
        for (double angle = 0; angle < GkCircArc3d::kFullTurn; angle += 0.3) {
            EXPECT_NEAR(circle.pointAt(angle).distanceTo({5, 0, 0}), 4, 1e-12);
            EXPECT_NEAR((circle.pointAt(angle) - GkPoint3d(5, 0, 0)).dotProduct(normal), 0, 1e-12);
        }
    }
}

} // namespace
