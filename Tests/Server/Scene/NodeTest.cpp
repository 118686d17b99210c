#include "Server/Component/Component.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/SceneNodes.h"
#include "Tests/Server/Geometry/Near.h"
#include "Tests/Server/Scene/Meshes.h"
#include "Tests/Support/Seed.h"

#include <random>

namespace {

using Rendra::Graphics::BodyNode;
using Rendra::Graphics::GroupNode;
using Rendra::Graphics::Highlight;
using Rendra::Graphics::Node;
using Vs::Scene::NodeChange;

Vs::StrongRef<BodyNode> boxNode()
{
    return BodyNode::make(SceneTest::boxMesh(2, 2, 2), {});
}

TEST(Node, BoundsFollowTransformsVisibilityAndMembersAllTheWayUp)
{
    const auto root = GroupNode::make();
    const auto arm = GroupNode::make();
    const auto body = boxNode();
    EXPECT_TRUE(root->boundingBox().isEmpty());
    NodeChange(root.get()).add(arm);
    NodeChange(arm.get()).add(body);
    EXPECT_TRUE(isNear(root->boundingBox().high(), {1, 1, 1}));

    NodeChange(arm.get()).transform(GkMatrix3d::rotation(1.5707963267948966, GkVector3d::kZAxis));
    NodeChange(body.get()).transform(GkMatrix3d::translation({10, 0, 0}));
    EXPECT_TRUE(isNear(root->boundingBox().centre(), {0, 10, 0}));

    NodeChange(arm.get()).visible(false);
    EXPECT_TRUE(root->boundingBox().isEmpty());
    NodeChange(arm.get()).visible(true);
    EXPECT_FALSE(root->boundingBox().isEmpty());

    NodeChange(body.get()).mesh(SceneTest::boxMesh(20, 2, 2));
    EXPECT_NEAR(root->boundingBox().diagonal(), std::sqrt(20.0 * 20 + 2 * 2 + 2 * 2), 1e-9);
    NodeChange(body.get()).mesh(nullptr);
    EXPECT_TRUE(root->boundingBox().isEmpty()) << "nothing to see before the mesh is made";

    NodeChange(arm.get()).removeAll();
    EXPECT_TRUE(arm->children().empty());
    EXPECT_EQ(body->references(), 1);
}

TEST(Node, ThereIsRoomForAMillion)
{
    EXPECT_LE(sizeof(BodyNode), 152u);
    EXPECT_LE(sizeof(Vs::Component), 152u);
}

TEST(Node, OneTreeHangsUnderTwoGroupsAndTellsBoth)
{
    const auto left = GroupNode::make(), right = GroupNode::make(), third = GroupNode::make();
    const auto shared = GroupNode::make();
    const auto body = boxNode();
    NodeChange(shared.get()).add(body);
    NodeChange(left.get()).add(shared);
    NodeChange(right.get()).add(shared).transform(GkMatrix3d::translation({0, 0, 50}));
    const uint64_t leftBefore = left->subtreeRevision(), rightBefore = right->subtreeRevision();

    NodeChange(body.get()).transform(GkMatrix3d::translation({7, 0, 0}));
    EXPECT_NE(left->subtreeRevision(), leftBefore);
    EXPECT_NE(right->subtreeRevision(), rightBefore);
    EXPECT_TRUE(isNear(left->boundingBox().centre(), {7, 0, 0}));
    EXPECT_TRUE(isNear(right->boundingBox().centre(), {7, 0, 50}));

    NodeChange(third.get()).add(shared);
    NodeChange(left.get()).remove(shared.get());
    EXPECT_TRUE(left->boundingBox().isEmpty());
    EXPECT_TRUE(!left->has(shared.get()) && right->has(shared.get()) && third->has(shared.get()));
    NodeChange(body.get()).transform(GkMatrix3d::translation({8, 0, 0}));
    EXPECT_TRUE(isNear(right->boundingBox().centre(), {8, 0, 50}));
    EXPECT_TRUE(isNear(third->boundingBox().centre(), {8, 0, 0}));
    NodeChange(third.get()).remove(shared.get());
    NodeChange(right.get()).remove(shared.get());
    EXPECT_FALSE(right->has(shared.get()) || third->has(shared.get()));
}

TEST(Node, WhatIsSetToTheValueThatItHasIsNoChange)
{
    const auto root = GroupNode::make();
    const auto body = boxNode();
    NodeChange(root.get()).add(body);
    NodeChange(body.get()).visible(false).colour(Vs::Colour{1, 0, 0, 1}).highlight(Highlight::Selected);
    const uint64_t before = root->subtreeRevision();
    NodeChange(body.get())
        .visible(false)
        .colour(Vs::Colour{1, 0, 0, 1})
        .highlight(Highlight::Selected)
        .transform(GkMatrix3d())
        .mesh(body->mesh())
        .name("only a name");
    NodeChange(root.get()).add(body);
    NodeChange(root.get()).remove(root.get());
    EXPECT_EQ(root->subtreeRevision(), before);
    EXPECT_EQ(root->children().size(), 1u);

    NodeChange(body.get()).colour(std::nullopt);
    EXPECT_NE(root->subtreeRevision(), before);
}

TEST(Node, AGroupCannotHangUnderItself)
{
    const auto a = GroupNode::make(), b = GroupNode::make(), c = GroupNode::make();
    NodeChange(a.get()).add(a).add(b);
    NodeChange(b.get()).add(c);
    NodeChange(c.get()).add(a).add(b).add(nullptr);
    EXPECT_EQ(a->children().size(), 1u);
    EXPECT_TRUE(c->children().empty());
}

TEST(Node, ChangesOfTheWrongKindOfNodeDoNothing)
{
    const auto group = GroupNode::make();
    const auto body = boxNode();
    const auto other = boxNode();
    NodeChange(body.get()).add(other).removeAll().remove(other.get()).clearSource();
    NodeChange(group.get()).mesh(SceneTest::boxMesh(1, 1, 1)).bodyColour({}).clearSource();
    EXPECT_TRUE(group->children().empty());
    EXPECT_EQ(other->references(), 1);
}

TEST(Node, RandomTreesGiveTheSameBoundsAsTreesThatAreBuiltAnew)
{
    std::mt19937 random(TestSupport::seed());
    std::uniform_real_distribution<double> number(-100, 100);
    const auto pick = [&](size_t count) { return random() % count; };

    std::vector<Vs::StrongRef<GroupNode>> groups{GroupNode::make()};
    std::vector<Vs::StrongRef<BodyNode>> bodies;
    // Kept beside the nodes and added up by hand at the end.
    const auto expected = [&](auto&& self, const Node* node) -> BBox {
        BBox own;
        if (!node->visible())
            return own;
        if (const auto* group = Vs::cast<GroupNode>(node))
            for (const auto& child : group->children())
                own.add(self(self, child.get()));
        else if (const auto& mesh = Vs::cast<BodyNode>(node)->mesh())
            own = mesh->bounds;
        return own.transformed(node->transform());
    };
    for (int step = 0; step < 400; ++step) {
        GroupNode* group = groups[pick(groups.size())].get();
        switch (random() % 6) {
        case 0:
            groups.push_back(GroupNode::make());
            NodeChange(group).add(groups.back());
            break;
        case 1:
            bodies.push_back(boxNode());
            NodeChange(group).add(bodies.back());
            break;
        case 2:
            NodeChange(group).transform(GkMatrix3d::translation({number(random), number(random), 0}));
            break;
        case 3:
            NodeChange(group).visible(random() % 3 != 0);
            break;
        case 4:
            NodeChange(group).add(groups[pick(groups.size())]);
            break;
        case 5:
            if (!group->children().empty() && random() % 4 == 0)
                NodeChange(group).remove(group->children()[pick(group->children().size())].get());
            break;
        }
        const BBox box = groups[0]->boundingBox(), truth = expected(expected, groups[0].get());
        ASSERT_EQ(box.isEmpty(), truth.isEmpty()) << "step " << step;
        if (!box.isEmpty()) {
            ASSERT_TRUE(isNear(box.low(), truth.low())) << "step " << step;
            ASSERT_TRUE(isNear(box.high(), truth.high())) << "step " << step;
        }
    }
}

} // namespace
