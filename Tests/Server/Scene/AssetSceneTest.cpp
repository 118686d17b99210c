#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/ModelBuilder.h"
#include "Server/DataModel/Transaction.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "Server/Scene/ViewFragment.h"
#include "Tests/Server/Geometry/Near.h"
#include "Tests/Server/Scene/OneAsset.h"
#include "Tests/Support/Seed.h"

#include <chrono>
#include <random>
#include <thread>

namespace {

using Rendra::Graphics::BodyNode;
using Rendra::Graphics::GroupNode;
using Rendra::Graphics::Node;
using Vs::Component;
using Vs::Scene::SceneAssetAdapter;
using Vs::Scene::ViewFragment;

/// The scene of the asset in a fragment.
class AssetScene : public SceneTests::OneAsset
{
protected:
    AssetScene()
    {
        if (scene)
            fragment->showAsset(scene);
    }

    /// A box of 10 mm with a corner at x.
    const Component* addBox(double x)
    {
        Vs::Status status;
        const Component* box = Vs::ModelBuilder(asset).box(
            10, 10, 10, {.placement = GkMatrix3d::translation({x, 0, 0})}, status);
        EXPECT_TRUE(box) << testing::PrintToString(status.toString());
        return box;
    }
    void waitForMeshes()
    {
        for (int i = 0; i < 1000 && scene->waitsForMeshes(); ++i) {
            scene->update();
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        }
        ASSERT_FALSE(scene->waitsForMeshes());
    }

    Vs::StrongRef<ViewFragment> fragment = ViewFragment::make(nullptr);
};

/// Checks that every component has the node that shows it, under the node of its parent, and that there are
/// no other nodes.
void expectSameTree(const SceneAssetAdapter& scene, const Component& component)
{
    Node* const node = scene.node(component.id);
    ASSERT_TRUE(node) << component.id;
    EXPECT_EQ(scene.componentId(node), component.id);
    EXPECT_EQ(node->visible(), component.visible);
    EXPECT_TRUE(node->transform().isEqualTo(component.placement));
    if (const auto* group = Vs::cast<GroupNode>(node)) {
        EXPECT_EQ(group->children().size(), component.children.size() + (component.body ? 1 : 0));
        for (const auto& child : component.children)
            EXPECT_TRUE(group->has(scene.node(child->id)));
    } else {
        EXPECT_TRUE(component.children.empty());
        EXPECT_TRUE(component.body);
    }
    for (const auto& child : component.children)
        expectSameTree(scene, *child);
}

TEST_F(AssetScene, ANewPartIsShownAndAnUndoneOneIsGone)
{
    ASSERT_TRUE(scene);
    EXPECT_TRUE(fragment->bounds().isEmpty());
    ASSERT_TRUE(addBox(100));
    waitForMeshes();
    EXPECT_TRUE(isNear(fragment->bounds().low(), {100, 0, 0}));
    EXPECT_TRUE(isNear(fragment->bounds().high(), {110, 10, 10}));
    ASSERT_TRUE(Vs::Transaction::undo(asset));
    EXPECT_TRUE(fragment->bounds().isEmpty());
    ASSERT_TRUE(Vs::Transaction::redo(asset));
    waitForMeshes();
    EXPECT_FALSE(fragment->bounds().isEmpty());
}

TEST_F(AssetScene, AChangeLeavesTheNodesOfAllOtherPartsAlone)
{
    ASSERT_TRUE(scene);
    const Component* first = addBox(0);
    ASSERT_TRUE(first);
    waitForMeshes();
    Node* const node = scene->node(first->id);
    ASSERT_TRUE(node);
    const uint64_t revision = node->revision();
    uint64_t seen = 0;
    fragment->update(seen);

    ASSERT_TRUE(addBox(50));
    waitForMeshes();
    EXPECT_EQ(scene->node(first->id), node);
    EXPECT_EQ(node->revision(), revision);
    EXPECT_TRUE(fragment->update(seen));
}

TEST_F(AssetScene, AnyOrderOfPartsUndosAndRedosLeavesTheTreeOfTheComponents)
{
    ASSERT_TRUE(scene);
    std::mt19937 random(TestSupport::seed());
    for (int step = 0; step < 60; ++step) {
        switch (random() % 3) {
        case 0:
            addBox(step * 20.0);
            break;
        case 1:
            Vs::Transaction::undo(asset);
            break;
        case 2:
            Vs::Transaction::redo(asset);
            break;
        }
        expectSameTree(*scene, *asset->components());
        ASSERT_FALSE(HasFailure()) << "step " << step;
    }
}

TEST(AssetSceneEnd, AViewOutlivesItsAsset)
{
    Vs::DocumentType documentType{"SceneTestDocument", L"Scene test", L".scenetest"};
    Vs::AssetType assetType{"SceneTestAsset", L"Scene test", "SceneTestDocument"};
    EXPECT_TRUE(Vs::DocumentMgr::get()->registerDocumentType(&documentType));
    EXPECT_TRUE(Vs::AssetTypeMgr::get()->registerType(&assetType));
    Vs::Status status;
    Vs::Document* document = Vs::DocumentMgr::get()->create(&assetType, status);
    ASSERT_TRUE(document);
    const auto fragment = ViewFragment::make(nullptr);
    fragment->showAsset(Vs::cast<SceneAssetAdapter>(document->activeAsset()->adapter()));
    EXPECT_TRUE(Vs::ModelBuilder(document->activeAsset()).sphere(5, {}, status));
    Vs::DocumentMgr::get()->close(document);
    EXPECT_TRUE(fragment->bounds().isEmpty());
    EXPECT_EQ(fragment->data()->sceneAssetAdapter(), nullptr);
    uint64_t seen = 0;
    fragment->update(seen);
    fragment->showAsset(nullptr);
    Vs::AssetTypeMgr::get()->unregisterType(&assetType);
    Vs::DocumentMgr::get()->unregisterDocumentType(&documentType);
}

} // namespace
