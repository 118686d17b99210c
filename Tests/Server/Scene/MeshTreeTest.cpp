#include "Server/Scene/Private/MeshTree.h"

#include "Server/Scene/NodeChange.h"
#include "Server/Scene/Picker.h"
#include "Tests/Server/Scene/Shapes.h"

#include <gtest/gtest.h>
#include <random>

namespace {

using namespace Vs::Scene;
using Vs::BodyMesh;

/// The nearest hit of all triangles, tested one after the other.
bool meetAll(const BodyMesh& mesh, const GkPoint3d& start, const GkVector3d& direction, double limit,
             MeshTree::Hit& hit)
{
    bool found = false;
    for (uint32_t i = 0; i < mesh.triangles.size() / 3; ++i) {
        const double along = meetTriangle(mesh, i, start, direction);
        if (along >= 0 && along < limit) {
            limit = along;
            hit = {along, i};
            found = true;
        }
    }
    return found;
}

/// Expects the same of many rays from a sphere around the mesh, some of them along an axis.
void expectSame(const BodyMesh& mesh, int rays, size_t atLeast)
{
    const MeshTree tree(mesh);
    std::mt19937 random(4711);
    std::uniform_real_distribution<double> any(-1, 1);
    const double size = mesh.bounds.diagonal();
    const GkPoint3d middle = mesh.bounds.centre();
    size_t hits = 0;
    for (int i = 0; i < rays; ++i) {
        GkVector3d away(any(random), any(random), any(random));
        if (i % 4 == 0)
            away = GkVector3d(i % 3 == 0, i % 3 == 1, i % 3 == 2);
        const GkVector3d aside(any(random), any(random), any(random));
        const GkPoint3d start = middle + away.normal() * size + aside * (size * 0.2);
        const GkVector3d direction = -away.normal() * (0.5 + any(random) * any(random));
        MeshTree::Hit one{}, other{};
        const bool found = tree.meet(mesh, start, direction, 1e300, one);
        ASSERT_EQ(found, meetAll(mesh, start, direction, 1e300, other)) << "ray " << i;
        if (!found)
            continue;
        ++hits;
        ASSERT_EQ(one.along, other.along) << "ray " << i;
        MeshTree::Hit none{};
        EXPECT_FALSE(tree.meet(mesh, start, direction, one.along, none)) << "nothing is before the nearest";
    }
    EXPECT_GE(hits, atLeast);
}

TEST(MeshTree, FindsWhatAskingEveryTriangleFinds)
{
    expectSame(*Shapes::ball(50, 40), 1000, 500);
    expectSame(*Shapes::torus(50, 12), 1000, 150);
    expectSame(*Shapes::cylinder(10, 400), 1000, 20);
    BodyMesh far = *Shapes::ball(0.5, 24); // as far away as its size lets single precision tell apart
    for (float& value : far.positions)
        value += 4000;
    far.bounds = {};
    for (size_t i = 0; i < far.positions.size(); i += 3)
        far.bounds.add({far.positions[i], far.positions[i + 1], far.positions[i + 2]});
    expectSame(far, 500, 100);
}

TEST(MeshTree, FlatDegenerateAndTinyMeshesAreNoTrouble)
{
    BodyMesh sheet;
    constexpr uint32_t kSide = 20;
    for (uint32_t y = 0; y <= kSide; ++y)
        for (uint32_t x = 0; x <= kSide; ++x) {
            sheet.positions.insert(sheet.positions.end(), {float(x), float(y), 5.0f});
            sheet.bounds.add({double(x), double(y), 5});
            if (x == 0 || y == 0)
                continue;
            const uint32_t at = y * (kSide + 1) + x;
            for (const uint32_t corner : {at, at - 1, at - kSide - 2, at, at - kSide - 2, at - kSide - 1})
                sheet.triangles.push_back(corner);
            sheet.triangles.insert(sheet.triangles.end(), {at, at, at - 1}); // of zero area
        }
    expectSame(sheet, 800, 200);
    expectSame(*Shapes::box(1e-6, 1e-6, 1e-6), 200, 50);
    MeshTree::Hit hit{};
    EXPECT_FALSE(MeshTree(BodyMesh()).meet(BodyMesh(), {}, {0, 0, 1}, 1e300, hit));
}

TEST(MeshTree, AMeshOfManyTrianglesIsPickedAlikeWhileItsTreeIsMadeAndAfterwards)
{
    const auto root = Rendra::Graphics::GroupNode::make();
    const Shapes::MeshPtr ball = Shapes::ball(50, 200); // 160,000 triangles
    NodeChange(root.get()).add(Rendra::Graphics::BodyNode::make(ball, {}));
    const auto first = pick(*root, {20, -300, 10}, {0, 1, 0});
    ASSERT_TRUE(first);
    while (!MeshTree::of(ball))
        ;
    const auto later = pick(*root, {20, -300, 10}, {0, 1, 0});
    ASSERT_TRUE(later);
    EXPECT_EQ(first->along, later->along);
    EXPECT_EQ(first->localNormal.y, later->localNormal.y);
    EXPECT_NEAR(later->along, 300 - std::sqrt(2500.0 - 500), 0.05);
    EXPECT_FALSE(pick(*root, {51, -300, 0}, {0, 1, 0}));
}

} // namespace
