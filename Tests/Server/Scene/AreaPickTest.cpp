#include "Server/Scene/AreaPicker.h"
#include "Server/Scene/Camera.h"
#include "Server/Scene/NodeChange.h"
#include "Tests/Server/Scene/Shapes.h"

#include <gtest/gtest.h>
#include <set>

using namespace Vs;
using namespace Vs::Scene;
using Rendra::Graphics::BodyNode;
using Rendra::Graphics::GroupNode;
using Rendra::Graphics::Part;

namespace {

/// Three plates side by side on the x axis, each 10 wide with 10 between, and a pin below the middle one, all
/// seen from above.
class AreaPick : public testing::TestWithParam<int>
{
protected:
    AreaPick()
    {
        for (const double x : {0.0, 20.0, 40.0})
            show(Shapes::box(10, 10, 2), {x, 0, 0});
        show(Shapes::box(2, 2, 2), {24, 4, -10});
        m_camera->projection(GetParam());
        m_camera->look({0, 0, -1}, {0, 1, 0});
        m_camera->fit(m_root->boundingBox());
        m_projection.emplace(*m_camera, 600, 300);
    }
    void show(const Shapes::MeshPtr& mesh, const GkVector3d& at)
    {
        StrongRef<BodyNode> node = BodyNode::make(mesh, Colour());
        NodeChange(node.get()).transform(GkMatrix3d::translation(at));
        NodeChange(m_root.get()).add(node);
        m_nodes.push_back(node.get());
    }
    /// The numbers of the bodies, or of one body's parts, in a rectangle between places at z = 2.
    std::set<int> in(double left, double right, AreaWish wish, double bottom = -3, double top = 13) const
    {
        const GkPoint3d low = m_projection->worldToScreen({left, bottom, 2});
        const GkPoint3d high = m_projection->worldToScreen({right, top, 2});
        wish.left = low.x;
        wish.bottom = low.y;
        wish.right = high.x;
        wish.top = high.y;
        std::set<int> numbers;
        for (const PickedPoint& found : pickArea(*m_root, *m_projection, wish))
            numbers.insert(found.part
                               ? int(found.part->index)
                               : int(std::find(m_nodes.begin(), m_nodes.end(), found.path.back().get()) -
                                     m_nodes.begin()));
        return numbers;
    }
    using Numbers = std::set<int>;

    StrongRef<GroupNode> m_root = GroupNode::make();
    StrongRef<Camera> m_camera = Camera::make();
    std::vector<const Rendra::Graphics::Node*> m_nodes;
    std::optional<Projection> m_projection;
};

INSTANTIATE_TEST_SUITE_P(InBothProjections, AreaPick,
                         testing::Values(kParallelProjection, kPerspectiveProjection));

} // namespace

TEST_P(AreaPick, InsideTakesWhatLiesWhollyInItAndCrossingAlsoTheRest)
{
    EXPECT_EQ(in(-2, 12, {}), Numbers{0});
    EXPECT_EQ(in(-2, 25, {}), Numbers{0});
    EXPECT_EQ(in(-2, 25, {.crossing = true}), (Numbers{0, 1}));
    EXPECT_EQ(in(12, 18, {.crossing = true}), Numbers{});
    EXPECT_EQ(in(3, 4, {.crossing = true}, 3, 4), Numbers{0}) << "within one face, that no edge crosses";
    EXPECT_EQ(in(3, 4, {}, 3, 4), Numbers{});
    EXPECT_EQ(in(-2, 52, {}), (Numbers{0, 1, 2}));
    EXPECT_EQ(in(12, -2, {}), Numbers{}) << "no rectangle";
}

TEST_P(AreaPick, WhatIsHiddenCountsOnlyWhenAskedFor)
{
    EXPECT_EQ(in(15, 35, {}), Numbers{1});
    EXPECT_EQ(in(15, 35, {.visibleOnly = false}), (Numbers{1, 3}));
    NodeChange(const_cast<Rendra::Graphics::Node*>(m_nodes[1])).visible(false);
    EXPECT_EQ(in(15, 35, {}), Numbers{3});
}

TEST_P(AreaPick, PartsOfBodiesAreTakenByTheirKinds)
{
    const auto of = [](Part part) { return 1u << unsigned(part); };
    EXPECT_EQ(in(-2, 5, {.bodies = false, .parts = of(Part::Vertex)}), (Numbers{4, 7}));
    EXPECT_EQ(in(-2, 5, {.visibleOnly = false, .bodies = false, .parts = of(Part::Vertex)}),
              (Numbers{0, 3, 4, 7}));
    EXPECT_EQ(in(-2, 12, {.bodies = false, .parts = of(Part::Edge)}).count(1), 1u);
    EXPECT_EQ(in(-2, 5, {.bodies = false, .parts = of(Part::Edge)}).count(1), 0u);
    EXPECT_EQ(in(-2, 5, {.crossing = true, .bodies = false, .parts = of(Part::Face)}).count(5), 1u);
    EXPECT_EQ(in(-2, 5, {.bodies = false, .parts = of(Part::Face)}).count(5), 0u);
}

TEST_P(AreaPick, AStraightEdgeIsSeenByWhatLiesBetweenItsEnds)
{
    const AreaWish edges{.crossing = true, .bodies = false, .parts = 1u << unsigned(Part::Edge)};
    // A narrow band over two sides of the middle plate, far from their corners. Edges count from 0, the rim
    // of the lower side, and 1, that of the upper one.
    EXPECT_EQ(in(18, 32, edges, 7, 9), Numbers{1});
    AreaWish all = edges;
    all.visibleOnly = false;
    EXPECT_EQ(in(18, 32, all, 7, 9), (Numbers{0, 1}));

    // From the side, the upright edges at the back are hidden although their upper ends are visible corners;
    // those in front and the rims aren't.
    m_camera->look({-1, 2, -0.6}, {0, 0, 1});
    m_camera->fit(m_root->boundingBox());
    m_projection.emplace(*m_camera, 600, 300);
    AreaWish wish = edges;
    wish.left = wish.bottom = 0;
    wish.right = 600;
    wish.top = 300;
    std::set<uint32_t> ofFirst;
    for (const PickedPoint& found : pickArea(*m_root, *m_projection, wish))
        if (found.path.back().get() == m_nodes[0])
            ofFirst.insert(found.part->index);
    EXPECT_EQ(ofFirst, (std::set<uint32_t>{0, 1, 2, 3, 4})) << "of the four upright ones, 5 is behind";
}

TEST(AreaPickBehind, WhatReachesBehindTheViewerIsCutThere)
{
    const auto root = GroupNode::make();
    const auto floor = BodyNode::make(Shapes::box(1000, 1000, 1), Colour());
    NodeChange(root.get()).add(floor);
    const auto camera = Camera::make();
    camera->projection(kPerspectiveProjection);
    camera->position({500, 500, 50});
    camera->target({600, 500, 50});
    camera->up({0, 0, 1});
    const Projection projection(*camera, 400, 400);
    AreaWish wish{.left = 0, .bottom = 0, .right = 400, .top = 150, .crossing = true};
    EXPECT_EQ(pickArea(*root, projection, wish).size(), 1u);
    wish.crossing = false;
    EXPECT_TRUE(pickArea(*root, projection, wish).empty());
    wish = {.left = 0, .bottom = 250, .right = 400, .top = 400, .crossing = true};
    EXPECT_TRUE(pickArea(*root, projection, wish).empty()) << "above the horizon";
}
