#include "Server/Scene/HitInfo.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/Server/Scene/Shapes.h"

#include <gtest/gtest.h>
#include <limits>

using namespace Vs;
using namespace Vs::Scene;
using Rendra::Graphics::BodyNode;
using Rendra::Graphics::GroupNode;

namespace {

class PickTest : public testing::Test
{
protected:
    PickTest() : m_fragment(ViewFragment::make(Segment::makeTransientStandalone("PickTest"))) {}

    StrongRef<BodyNode> show(const Shapes::MeshPtr& mesh, const GkMatrix3d& placement, GroupNode* parent)
    {
        StrongRef<BodyNode> node = BodyNode::make(mesh, Colour());
        NodeChange(node.get()).transform(placement);
        NodeChange(parent).add(node);
        return node;
    }
    GroupNode* root() const { return m_fragment->viewFragmentNode(); }
    StrongRef<SceneSelection> find(double x, double y, bool background) const
    {
        return SceneSelection::find(nullptr, root(), 200, 100, x, y, background);
    }

    StrongRef<ViewFragment> m_fragment;
};

} // namespace

TEST_F(PickTest, TheNearestBodyIsFoundThroughTurnedAndScaledGroups)
{
    const auto group = GroupNode::make("Group");
    NodeChange(group.get())
        .transform(GkMatrix3d::translation({100, 0, 0}) * GkMatrix3d::rotation(0.5, {0, 0, 1}) *
                   GkMatrix3d::scaling(2));
    NodeChange(root()).add(group);
    const auto low = show(Shapes::box(10, 10, 1), {}, group.get());
    const auto high = show(Shapes::box(10, 10, 1), GkMatrix3d::translation({0, 0, 20}), group.get());

    const GkPoint3d above = group->transform() * GkPoint3d(5, 5, 100);
    const auto picked = pick(*root(), above, {0, 0, -3});
    ASSERT_TRUE(picked);
    ASSERT_EQ(picked->path.size(), 2u);
    EXPECT_EQ(picked->path.back().get(), high.get());
    EXPECT_TRUE(picked->localPoint.isEqualTo({5, 5, 1}));
    EXPECT_TRUE((picked->localToWorld * picked->localPoint).isEqualTo({above.x, above.y, 42}));
    EXPECT_TRUE(picked->localNormal.isEqualTo({0, 0, 1}));
    EXPECT_NEAR(picked->along, (above.z - 42) / 3, 1e-9);

    NodeChange(high.get()).visible(false);
    const auto behind = pick(*root(), above, {0, 0, -3});
    ASSERT_TRUE(behind);
    EXPECT_EQ(behind->path.back().get(), low.get());
    EXPECT_FALSE(pick(*root(), above, {0, 0, 3}));
}

TEST_F(PickTest, WhatIsNoRayMeetsNothing)
{
    show(Shapes::box(10, 10, 10), {}, root());
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_FALSE(pick(*root(), {5, 5, 50}, {0, 0, 0}));
    EXPECT_FALSE(pick(*root(), {5, nan, 50}, {0, 0, -1}));
    EXPECT_FALSE(pick(*root(), {5, 5, 50}, {0, 0, -inf}));
}

TEST_F(PickTest, ABodyWithoutAMeshAndHelpersCannotBePicked)
{
    show(nullptr, {}, root());
    const auto geometry = NodeChange::createLODGeometryNode(root(), true);
    NodeChange(geometry.get()).polyline({{-5, 0, 0}, {5, 0, 0}});
    EXPECT_FALSE(pick(*root(), {0, 0, 50}, {0, 0, -1}));
}

TEST_F(PickTest, TheBackgroundHasAPlaceInThePlaneOfTheTargetUnlessTheFragmentHasNone)
{
    show(Shapes::box(10, 10, 10), {}, root());
    Camera* camera = m_fragment->camera();
    for (const int projection : {kParallelProjection, kPerspectiveProjection}) {
        camera->projection(projection);
        camera->look({0, 0, -1}, {0, 1, 0});
        camera->fit(m_fragment->bounds());
        const auto body = find(100, 50, false);
        ASSERT_TRUE(body);
        EXPECT_TRUE(body->hitInfo()->localHitPoint().isEqualTo({5, 5, 10}, {1e-3, 1e-9}));

        EXPECT_FALSE(find(1, 1, false));
        const auto beside = find(1, 1, true);
        ASSERT_TRUE(beside);
        EXPECT_TRUE(beside->scenePath().empty());
        const GkPoint3d place = beside->hitInfo()->localRayPoint();
        EXPECT_NEAR((place - camera->target()).dotProduct(camera->direction()), 0, 1e-6);
        // Up and to the left on the screen.
        EXPECT_LT(place.x, 0);
        EXPECT_GT(place.y, 10);
    }
    m_fragment->data()->supportSelectBackground(false);
    EXPECT_FALSE(find(1, 1, true));
}

TEST_F(PickTest, ATransformerStaysAsTheCameraStood)
{
    show(Shapes::box(10, 10, 10), {}, root());
    m_fragment->camera()->fit(m_fragment->bounds());
    const auto hit = find(100, 50, true);
    ASSERT_TRUE(hit);
    const ViewFragmentTransformer& transformer = hit->hitInfo()->viewFragmentTransformer();
    GkPoint3d before, after, back;
    ASSERT_TRUE(transformer.modelToScreen({1, 2, 3}, before));
    m_fragment->camera()->orbit(40, 20);
    ASSERT_TRUE(transformer.modelToScreen({1, 2, 3}, after));
    EXPECT_TRUE(before.isEqualTo(after));
    ASSERT_TRUE(transformer.screenToWorld(before, back));
    EXPECT_TRUE(back.isEqualTo({1, 2, 3}));
    EXPECT_FALSE(transformer.screenToWorld({std::numeric_limits<double>::infinity(), 0, 1}, back));
    EXPECT_TRUE(back.isEqualTo({1, 2, 3}));
}
