#include "Server/Geometry/GkPlacement.h"
#include "Tests/Server/Geometry/Near.h"

#include <cstring>
#include <random>

namespace {

constexpr double kQuarter = 1.5707963267948966;

/// Some rigid motion; the same seed gives the same one.
GkMatrix3d randomMotion(unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> number(-10, 10);
    const GkVector3d axis(number(random), number(random), number(random));
    const GkPoint3d centre(number(random), number(random), number(random));
    return GkMatrix3d::translation({number(random), number(random), number(random)}) *
           GkMatrix3d::rotation(number(random), axis, centre);
}

TEST(Matrix, ARotationTurnsCounterClockwiseSeenAgainstItsAxis)
{
    EXPECT_TRUE(
        isNear(GkMatrix3d::rotation(kQuarter, GkVector3d::kZAxis) * GkVector3d::kXAxis, GkVector3d::kYAxis));
    EXPECT_TRUE(
        isNear(GkMatrix3d::rotation(kQuarter, GkVector3d::kXAxis) * GkVector3d::kYAxis, GkVector3d::kZAxis));
    // The axis' length doesn't matter.
    EXPECT_TRUE(isNear(GkMatrix3d::rotation(kQuarter, {0, 0, 250}) * GkVector3d::kXAxis, GkVector3d::kYAxis));
}

TEST(Matrix, ARotationAboutACentreLeavesItsAxisWhereItIs)
{
    const GkPoint3d centre(3, 4, 5);
    const GkMatrix3d turn = GkMatrix3d::rotation(1.1, {1, 2, -1}, centre);
    EXPECT_TRUE(isNear(turn * centre, centre));
    EXPECT_TRUE(isNear(turn * (centre + GkVector3d(2, 4, -2)), centre + GkVector3d(2, 4, -2)));
}

TEST(Matrix, TheRightFactorOfAProductActsFirst)
{
    const GkMatrix3d turnThenMove =
        GkMatrix3d::translation({10, 0, 0}) * GkMatrix3d::rotation(kQuarter, GkVector3d::kZAxis);
    EXPECT_TRUE(isNear(turnThenMove * GkPoint3d(1, 0, 0), {10, 1, 0}));
    // A direction is rotated but not moved.
    EXPECT_TRUE(isNear(turnThenMove * GkVector3d(1, 0, 0), GkVector3d(0, 1, 0)));
}

TEST(Matrix, AnInverseUndoesEveryMotionAndScaling)
{
    for (unsigned seed = 1; seed <= 50; ++seed) {
        const GkMatrix3d motion = randomMotion(seed) * GkMatrix3d::scaling(0.1 * seed, {1, 2, 3});
        EXPECT_TRUE((motion * motion.inverse()).isEqualTo(GkMatrix3d())) << "seed " << seed;
        EXPECT_TRUE((motion.inverse() * motion).isEqualTo(GkMatrix3d())) << "seed " << seed;
        EXPECT_NEAR(motion.det(), std::pow(0.1 * seed, 3), 1e-9) << "seed " << seed;
    }
}

TEST(Matrix, APlacementGivesBackEveryBitOfItsMatrix)
{
    GkMatrix3d projected, negativeZero;
    projected.entry[3][0] = 0.5;
    negativeZero.entry[1][2] = -0.0;
    std::vector<GkMatrix3d> matrices{{}, GkMatrix3d::translation({1, -0.0, 3e9}), projected, negativeZero};
    for (unsigned seed = 1; seed <= 20; ++seed)
        matrices.push_back(randomMotion(seed) * GkMatrix3d::scaling(seed % 2 ? 1 : -2));
    const BBox box({-1, -2, -3}, {4, 5, 6});
    for (const GkMatrix3d& matrix : matrices) {
        const GkPlacement placement = matrix, copy = placement;
        EXPECT_EQ(std::memcmp(placement.matrix().entry, matrix.entry, sizeof matrix.entry), 0);
        EXPECT_TRUE(copy == placement && copy == GkPlacement(matrix));
        EXPECT_TRUE(isNear(placement.placed(box).low(), box.transformed(matrix).low()));
        EXPECT_TRUE(isNear(placement.placed(box).high(), box.transformed(matrix).high()));
        EXPECT_TRUE(placement.placed(BBox()).isEmpty());
        EXPECT_FALSE(placement == GkPlacement(GkMatrix3d::translation({0, 0, 1}) * matrix));
    }
}

TEST(Matrix, TheInverseOfASingularMatrixIsTheIdentity)
{
    EXPECT_TRUE(GkMatrix3d::scaling(0).inverse().isEqualTo(GkMatrix3d()));
}

TEST(Vector, APerpendicularVectorIsAtRightAnglesAndOfLengthOneForEveryDirection)
{
    const GkVector3d directions[] = {{1, 0, 0}, {0, -3, 0},     {0, 0, 1e-6},
                                     {1, 1, 1}, {1e9, 1e-9, 5}, {-2, 7, 0}};
    for (const GkVector3d& v : directions) {
        EXPECT_NEAR(v.perpVector().dotProduct(v.normal()), 0, 1e-12) << testing::PrintToString(v);
        EXPECT_NEAR(v.perpVector().length(), 1, 1e-12) << testing::PrintToString(v);
    }
}

TEST(Vector, OppositeVectorsAreParallelAndHalfATurnApart)
{
    const GkVector3d v(1, -2, 3);
    EXPECT_TRUE(v.isParallelTo(v * -0.001));
    EXPECT_FALSE(v.isParallelTo(v + GkVector3d(1e-6, 0, 0)));
    EXPECT_NEAR(v.angleTo(-v), 2 * kQuarter, 1e-12);
    // An angle this small is lost if it is computed from the cosine.
    EXPECT_NEAR(GkVector3d(1, 0, 0).angleTo({1, 1e-9, 0}), 1e-9, 1e-18);
}

TEST(Vector, AZeroVectorStaysZeroWhenItIsNormalised)
{
    EXPECT_TRUE(GkVector3d().normal().isZeroLength());
    EXPECT_TRUE(GkVector3d().normalize().isZeroLength());
}

TEST(Box, AnEmptyBoxAddsNothingAndStaysEmptyThroughAMotion)
{
    BBox box;
    EXPECT_TRUE(box.isEmpty());
    EXPECT_EQ(box.diagonal(), 0);
    EXPECT_TRUE(box.transformed(randomMotion(7)).isEmpty());

    BBox other({1, 2, 3}, {4, 5, 6});
    other.add(box);
    EXPECT_TRUE(isNear(other.low(), {1, 2, 3}));
    EXPECT_TRUE(isNear(other.high(), {4, 5, 6}));
    box.add(other);
    EXPECT_FALSE(box.isEmpty());
    EXPECT_TRUE(isNear(box.centre(), {2.5, 3.5, 4.5}));
}

TEST(Box, ATurnedBoxHoldsAllThatTheBoxHeld)
{
    const BBox box({-1, 0, 2}, {3, 5, 4});
    const BBox quarter = box.transformed(GkMatrix3d::rotation(kQuarter, GkVector3d::kZAxis));
    EXPECT_TRUE(isNear(quarter.low(), {-5, -1, 2}));
    EXPECT_TRUE(isNear(quarter.high(), {0, 3, 4}));

    std::mt19937 random(3);
    std::uniform_real_distribution<double> part(0, 1);
    const GkMatrix3d motion = randomMotion(11);
    const BBox moved = box.transformed(motion);
    for (int i = 0; i < 200; ++i) {
        const GkVector3d size = box.high() - box.low();
        const GkPoint3d inside =
            motion *
            (box.low() + GkVector3d(size.x * part(random), size.y * part(random), size.z * part(random)));
        BBox grown = moved;
        grown.add(inside);
        EXPECT_TRUE(isNear(grown.low(), moved.low()));
        EXPECT_TRUE(isNear(grown.high(), moved.high()));
    }
}

} // namespace
