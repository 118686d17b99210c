#include "Server/Scene/ViewFragment.h"

#include "Server/Scene/NodeChange.h"
#include "Server/Scene/Segment.h"
#include "Tests/Server/Geometry/Near.h"
#include "Tests/Server/Scene/Meshes.h"

#include <functional>

namespace {

using Rendra::Graphics::BodyNode;
using Rendra::Graphics::GroupNode;
using Vs::Scene::NodeChange;
using Vs::Scene::ViewFragment;

TEST(ViewFragment, EveryChangeOfWhatIsSeenAsksForOneNewPictureAndNoMore)
{
    const auto fragment = ViewFragment::make(nullptr);
    const auto body = BodyNode::make(SceneTest::boxMesh(1, 2, 3), {});
    NodeChange(fragment->viewFragmentNode()).add(body);
    uint64_t seen = 0;
    EXPECT_TRUE(fragment->update(seen));
    EXPECT_FALSE(fragment->update(seen));

    const std::pair<const char*, std::function<void()>> changes[] = {
        {"a zoom", [&] { fragment->camera()->zoom(1.1); }},
        {"another camera", [&] { fragment->camera(Vs::Scene::Camera::make()); }},
        {"a moved body",
         [&] {
             NodeChange(body.get()).transform(GkMatrix3d::translation({1, 0, 0}));
         }},
        {"a hidden body", [&] { NodeChange(body.get()).visible(false); }},
        {"a style", [&] { fragment->renderParams()->visualStyle(Vs::Scene::kWireframe); }},
        {"an up",
         [&] {
             fragment->renderParams()->groundPlaneOrientation({0, 1, 0});
         }},
        {"an emptied fragment", [&] { NodeChange(fragment->viewFragmentNode()).removeAll(); }},
    };
    for (const auto& [what, change] : changes) {
        change();
        EXPECT_TRUE(fragment->update(seen)) << what;
        EXPECT_FALSE(fragment->update(seen)) << what;
    }
}

TEST(ViewFragment, TwoViewsOfOneModelEachLearnOfAChange)
{
    const auto model = GroupNode::make();
    const auto left = ViewFragment::make(nullptr), right = ViewFragment::make(nullptr);
    for (ViewFragment* fragment : {left.get(), right.get()})
        NodeChange(fragment->viewFragmentNode()).add(model);
    uint64_t leftSeen = 0, rightSeen = 0;
    left->update(leftSeen);
    right->update(rightSeen);
    NodeChange(model.get()).add(BodyNode::make(SceneTest::boxMesh(4, 4, 4), {}));
    EXPECT_TRUE(left->update(leftSeen));
    EXPECT_TRUE(right->update(rightSeen));
    EXPECT_TRUE(isNear(left->bounds().high(), {2, 2, 2}));
    left->camera()->zoom(2);
    EXPECT_FALSE(right->update(rightSeen)) << "each has a camera of its own";
}

TEST(ViewFragment, AnEmptyFragmentHasNoBoundsAndStandsForItsNode)
{
    const auto fragment = ViewFragment::make(nullptr, "Reticle");
    EXPECT_TRUE(fragment->bounds().isEmpty());
    EXPECT_EQ(fragment->name(), "Reticle");
    EXPECT_EQ(Vs::Scene::viewFragmentNodeData(fragment->viewFragmentNode()), fragment->data());
    EXPECT_EQ(Vs::Scene::viewFragmentNodeData(nullptr), nullptr);
    EXPECT_EQ(Vs::Scene::viewFragmentNodeData(GroupNode::make().get()), nullptr);
    EXPECT_EQ(Vs::Scene::viewNodeData(fragment->viewFragmentNode()), nullptr);
    EXPECT_NE(fragment->data()->renderParams(0), nullptr);
    EXPECT_TRUE(isNear(fragment->renderParams()->groundPlaneOrientation(), GkVector3d(0, 0, 1)));
}

TEST(ViewNode, ForgetsItsSourceWhenTheViewGoes)
{
    class Source : public Vs::Implements<Source, Vs::Object, Vs::Scene::INodeSource>
    {
    public:
        GroupNode* sceneNode() const override { return nullptr; }
        GroupNode* createScene() override { return nullptr; }
        void releaseScene() override {}
    };
    Source source;
    const auto node = Vs::Scene::makeViewNode(&source);
    Vs::Scene::INodeSource* found = Vs::Scene::viewNodeData(node.get())->source();
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->queryInterface(Source::interfaceId()), &source) << "the way from a hit to its view";
    NodeChange(node.get()).clearSource();
    EXPECT_EQ(Vs::Scene::viewNodeData(node.get())->source(), nullptr);
}

TEST(Segment, ATransientSegmentOfOneNameIsMadeOnce)
{
    Vs::Segment* const first = Vs::Segment::makeTransientStandalone("test segment");
    EXPECT_EQ(Vs::Segment::makeTransientStandalone("test segment"), first);
    EXPECT_NE(Vs::Segment::makeTransientStandalone("another"), first);
    EXPECT_TRUE(first->isTransient());
}

} // namespace
