// Shapes that the program itself can't make: cones, open solids, degenerate ones.

#include "Server/Base/Strings.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Tests/Server/DataModel/KernelShapes.h"
#include "Tests/Server/DataModel/Measure/Measures.h"
#include "Tests/Support/Seed.h"

#include <cmath>
#include <map>
#include <numbers>
#include <random>
#include <set>

using namespace Vs;
using std::numbers::pi;

using Type = EMeasureType;

class MeasureShapesTest : public MeasuresTest
{
protected:
    /// Opens what `write` makes; returns the path of the part.
    std::wstring openShape(void (*write)(const std::string&))
    {
        write(Strings::narrow(scratch("shape.brep")));
        const Document* document = open(scratch("shape.brep"));
        EXPECT_NE(document, nullptr) << Strings::narrow(status.toString());
        if (!document)
            return {};
        asset = document->activeAsset();
        return pathText(ObjectPath{asset->components()->children[0]->id}, *asset);
    }

    /// How many pairs of that many parts have each angle, in degrees; -1 means none. Each angle's dimension
    /// is on the side where the parts are, unless that is the other one of the two angles.
    std::map<int, int> anglesOf(const std::wstring& part, int count)
    {
        std::map<int, int> angles;
        MeasureResult result;
        for (int i = 1; i <= count; ++i)
            for (int k = 1; k < i; ++k) {
                const std::wstring one = part + std::to_wstring(i), other = part + std::to_wstring(k);
                const bool has = measure({one, other}, Type::Angle, result);
                ++angles[has ? static_cast<int>(std::lround(result.value * 180 / pi)) : -1];
                const GkVector3d leg = result.point1 - result.point2;
                EXPECT_TRUE(!has || leg.dotProduct(position(one) - result.point2) > -1e-9);
            }
        return angles;
    }
};

TEST_F(MeasureShapesTest, WhatMeetsHasTheAngleWithinItsBodyAndAllElseTheAcuteOne)
{
    const std::wstring hexagon = openShape(&KernelShapes::writeHexagon);
    ASSERT_FALSE(hexagon.empty());
    // Neighbours, those one further, and each with both of the ends; opposite faces are parallel.
    EXPECT_EQ(anglesOf(hexagon + L"/Face", 8), (std::map<int, int>{{-1, 4}, {60, 6}, {90, 12}, {120, 6}}));
    // At each end; upright ones are parallel, and so are those above and opposite each other.
    EXPECT_EQ(anglesOf(hexagon + L"/Edge", 18),
              (std::map<int, int>{{-1, 33}, {60, 36}, {90, 72}, {120, 12}}));
}

TEST_F(MeasureShapesTest, AConeHasItsClosedFormsAndTheAngleOfItsAxis)
{
    const std::wstring cone = openShape(&KernelShapes::writeCone);
    ASSERT_FALSE(cone.empty());
    const double slant = std::sqrt(100 + 16.0);
    expectNear(value({cone}, Type::Volume), pi * 10 * (36 + 12 + 4) / 3);
    expectNear(value({cone}, Type::Area), pi * (36 + 4 + 8 * slant));
    std::wstring mantle, base;
    for (int i = 1; i <= 3; ++i) {
        const std::wstring face = cone + L"/Face" + std::to_wstring(i);
        const double area = value({face}, Type::Area);
        if (area > 200)
            mantle = face;
        else if (area > 100)
            base = face;
    }
    ASSERT_FALSE(mantle.empty() || base.empty());
    expectNear(value({mantle}, Type::Area), pi * 8 * slant);
    expectNear(value({mantle}, Type::LoopLength), 2 * pi * 8);
    // By its axis, which is perpendicular to its base.
    expectNear(value({mantle, base}, Type::Angle), pi / 2);
    MeasureResult result;
    EXPECT_FALSE(measure({mantle}, Type::Radius, result));
    EXPECT_NE(why.find("a cone has no radius"), std::string::npos) << why;

    ASSERT_NE(ModelBuilder(asset).box(5, 5, 5, {{}, L"Box", {}}, status), nullptr);
    // Of the faces of an axis-aligned box, one pair each is at 90, 36.87 and 53.13 degrees to (0, 3, 4).
    double steepest = 0, flattest = pi;
    for (int i = 1; i <= 6; ++i) {
        const double angle =
            measure({mantle, L"Box/Face" + std::to_wstring(i)}, Type::Angle, result) ? result.value : 0;
        steepest = std::max(steepest, angle);
        flattest = angle > 1e-9 ? std::min(flattest, angle) : flattest;
    }
    expectNear(steepest, std::atan2(4, 3));
    expectNear(flattest, std::atan2(3, 4));
}

TEST_F(MeasureShapesTest, AnOpenSolidHasAnAreaButNoVolume)
{
    const std::wstring solid = openShape(&KernelShapes::writeOpenSolid);
    ASSERT_FALSE(solid.empty());
    expectNear(value({solid}, Type::Area), 500);
    MeasureResult result;
    EXPECT_FALSE(measure({solid}, Type::Volume, result));
    EXPECT_NE(why.find("is open and has no volume"), std::string::npos) << why;
    expectNear(value({solid + L"/Edge1"}, Type::Length), 10);
}

TEST_F(MeasureShapesTest, WhatHasShrunkToNothingSaysSo)
{
    const std::wstring part = openShape(&KernelShapes::writeDegenerate);
    ASSERT_FALSE(part.empty());
    expectNear(value({part}, Type::Area), 100);
    int degenerate = 0;
    for (int i = 1; i <= 5; ++i) {
        MeasureResult result;
        const std::wstring edge = part + L"/Edge" + std::to_wstring(i);
        if (measure({edge}, Type::Length, result)) {
            expectNear(result.value, 10);
            continue;
        }
        ++degenerate;
        EXPECT_NE(why.find("is degenerate and has no length"), std::string::npos) << why;
    }
    EXPECT_EQ(degenerate, 1);
}

TEST_F(MeasureShapesTest, SplinesThatStandForRoundSurfacesAreMeasuredAsExactly)
{
    const std::wstring part = openShape(&KernelShapes::writeRoundSplines);
    ASSERT_FALSE(part.empty());
    expectNear(value({part}, Type::Volume),
               4 * pi / 3 * 125 + 2 * pi * pi * 30 * 9 + 160 * pi + pi * 10 / 3 * (36 + 12 + 4));
    expectNear(value({part}, Type::Area),
               100 * pi + 4 * pi * pi * 90 + 32 * pi + 80 * pi + pi * (36 + 4) + pi * 8 * std::sqrt(116));
    expectNear(value({part + L"/Face1"}, Type::Area), 100 * pi);

    // The solids' faces follow each other: the sphere, the torus, the cylinder's side with its ends, the
    // cone's.
    expectNear(value({part + L"/Face1"}, Type::Radius), 5);
    EXPECT_LT(position(part + L"/Face1").distanceTo({0, 0, 0}), 1e-6);
    expectNear(value({part + L"/Face2"}, Type::Radius), 3);
    expectNear(value({part + L"/Face3"}, Type::Radius), 4);
    MeasureResult result;
    for (const wchar_t* face : {L"/Face4", L"/Face6"})
        EXPECT_FALSE(measure({part + face}, Type::Radius, result)) << Strings::narrow(face);
    // The axes of the cylinder and the cone.
    expectNear(value({part + L"/Face3", part + L"/Face6"}, Type::Angle), pi / 2);
    std::multiset<long> radii;
    for (int i = 1; i <= 4; ++i)
        radii.insert(std::lround(value({part + L"/Edge" + std::to_wstring(i)}, Type::Radius) * 1e6));
    EXPECT_EQ(radii, (std::multiset<long>{2000000, 4000000, 4000000, 6000000}));
}

TEST_F(MeasureShapesTest, RoundedBodiesAreAsFarApartAsTheKernelsSearchOverAllPartsFinds)
{
    std::mt19937 random(TestSupport::seed());
    const auto between = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    for (int i = 0; i < 8; ++i) {
        SCOPED_TRACE(testing::Message() << "seed " << TestSupport::seed() << ", pair " << i);
        // In a row, where many places are equally near, then rotated arbitrarily.
        const GkMatrix3d place =
            i < 4 ? GkMatrix3d::translation({i % 2 ? 25.0 : 0.0, i % 2 ? 0.0 : 15.0, i < 2 ? 0 : 7.0})
                  : GkMatrix3d::translation({between(-30, 30), between(-30, 30), between(5, 30)}) *
                        GkMatrix3d::rotation(
                            between(-pi, pi),
                            GkVector3d(between(-1, 1), between(-1, 1), between(-1, 1)).normal());
        const std::wstring file = scratch("pair" + std::to_string(i) + ".brep");
        const double expected = KernelShapes::writeRoundedPair(Strings::narrow(file), place, i % 3 == 0);
        const Document* document = open(file);
        ASSERT_NE(document, nullptr) << Strings::narrow(status.toString());
        asset = document->activeAsset();
        const std::wstring part = pathText(ObjectPath{asset->components()->children[0]->id}, *asset);
        MeasureResult result;
        ASSERT_TRUE(measure({part + L"/Solid1", part + L"/Solid2"}, Type::Distance, result)) << why;
        EXPECT_NEAR(result.value, expected, 1e-7);
        EXPECT_NEAR(result.point1.distanceTo(result.point2), result.value, 1e-6);
    }
}

TEST_F(MeasureShapesTest, ExtrudedEllipsesAreMeasuredExactlyInBothForms)
{
    const std::wstring part = openShape(&KernelShapes::writeExtrudedEllipses);
    ASSERT_FALSE(part.empty());
    // By the midpoints of that many segments, which converges quickly over a full turn.
    constexpr int kPieces = 1000;
    double around = 0;
    for (int i = 0; i < kPieces; ++i) {
        const double angle = 2 * pi * i / kPieces;
        around += std::hypot(5 * std::sin(angle), 2 * std::cos(angle)) * 2 * pi / kPieces;
    }
    expectNear(value({part}, Type::Volume), 2 * 10 * pi * 20);
    expectNear(value({part}, Type::Area), 2 * (2 * 10 * pi + around * 20));
    for (const wchar_t* side : {L"/Face1", L"/Face4"})
        expectNear(value({part + side}, Type::Area), around * 20);
}

TEST_F(MeasureShapesTest, WhatIsPlacedAtAScaleMeasuresAsItIsShownAndExported)
{
    const Document* document = open(write("scaled.wrl", R"(#VRML V2.0 utf8
DEF Big Transform { scale 2 2 2 children [ Shape { geometry Box { size 0.01 0.01 0.01 } } ] }
DEF Ball Transform { translation 0.1 0 0 scale 3 3 3 children [ Shape { geometry Sphere { radius 0.005 } } ] }
DEF Corner Transform { translation 0 0.1 0 scale 2 2 2 children [ Shape { geometry IndexedFaceSet {
    coord Coordinate { point [ 0 0 0, 0.006 0 0, 0 0.006 0, 0 0 0.006 ] }
    coordIndex [ 0 2 1 -1 0 1 3 -1 0 3 2 -1 1 2 3 -1 ] } } ] }
)"));
    ASSERT_TRUE(document) << Strings::narrow(status.toString());
    asset = document->activeAsset();
    const std::wstring big = L"scaled/Big", ball = L"scaled/Ball", corner = L"scaled/Corner";
    expectNear(value({big}, Type::Volume), 8000);
    expectNear(value({big}, Type::Area), 2400);
    expectNear(value({big + L"/Face1"}, Type::Area), 400);
    expectNear(value({big + L"/Face1"}, Type::LoopLength), 80);
    expectNear(value({big + L"/Edge1"}, Type::Length), 20);
    expectNear(value({ball + L"/Face1"}, Type::Radius), 15);
    expectNear(value({corner}, Type::Volume), 12 * 12 * 12 / 6.0);
    expectNear(value({big, ball}, Type::Distance), 75);
    // From its far side.
    expectNear(value({big + L"/Face1", ball}, Type::Distance), 95);
    expectNear(value({big + L"/Face1", big + L"/Face3"}, Type::Angle), pi / 2);
    // For a component that holds them all; the ball's mass counts as displayed.
    const double ballVolume = 4 * pi / 3 * 15 * 15 * 15;
    expectNear(value({L"scaled"}, Type::Volume), 8000 + ballVolume + 288);

    ASSERT_TRUE(save(asset, scratch("copy.glb")));
    document = open(scratch("copy.glb"));
    ASSERT_TRUE(document) << Strings::narrow(status.toString());
    asset = document->activeAsset();
    double whole = 0;
    for (const Component* component : componentsOf(*asset))
        if (component->body)
            whole += value({pathText(ObjectPath{component->id}, *asset)}, Type::Volume);
    expectNear(whole, 8000 + ballVolume + 288, 0.01);
}
