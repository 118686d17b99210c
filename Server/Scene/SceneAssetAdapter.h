#pragma once

#include "Server/CommonData/CommonDataAssetSettings.h"
#include "Server/DataModel/AssetAdapter.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/ComponentsListener.h"
#include "Server/Scene/Node.h"
#include "Server/Scene/Segment.h"

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace Vs {
class Body;
class Component;
} // namespace Vs

namespace Vs::Scene {

/// The scene nodes of an asset: one group or body node for each component, kept in sync with the model. A
/// change of some components changes only their nodes. Every asset has one:
/// `cast<Scene::SceneAssetAdapter>(asset->adapter())`.
class SceneAssetAdapter : public Implements<SceneAssetAdapter, AssetAdapter>, private ComponentsListener
{
public:
    explicit SceneAssetAdapter(Asset* asset);
    ~SceneAssetAdapter() override;

    /// A CommonData::CommonDataAssetSettings.
    AssetSettings* assetSettings() override { return &m_settings; }

    /// The node of the root component. Never null; stays the same as long as the asset exists.
    Rendra::Graphics::GroupNode* rootNode() const { return m_root.get(); }
    /// The adapter whose root node this is; null if there is none, if it is gone, or for a null node.
    static SceneAssetAdapter* ofRootNode(const Rendra::Graphics::GroupNode* node);
    /// The node of a component, or null if there is none with that id.
    Rendra::Graphics::Node* node(const std::string& componentId) const;
    /// The node of its body, which may be the same one; null if it has none.
    Rendra::Graphics::BodyNode* bodyNode(const std::string& componentId) const;
    /// The id of the component that a node represents; empty for other nodes.
    const std::string& componentId(const Rendra::Graphics::Node* node) const;

    /// The parent of the views' own nodes for this asset: reticles, markers, previews.
    Segment* transientSegment() { return &m_transientSegment; }

    /// Passes meshes made since the last call to their nodes. Returns true if there were any.
    bool update();
    /// Whether some bodies are still without a mesh.
    bool waitsForMeshes() const { return !m_waiting.empty(); }

private:
    /// The node of a component by its id: a BodyNode for a part, otherwise a GroupNode. The entry owns the
    /// node. The groups and their children mirror the tree of components, and contain nothing else.
    using Entries = std::unordered_map<std::string, StrongRef<Rendra::Graphics::Node>>;
    using Entry = Entries::value_type;

    void assetComponentsChanged(ComponentsEvent* event) override;

    Rendra::Graphics::BodyNode* bodyOf(const Entry& entry) const;
    Rendra::Graphics::GroupNode* parentOf(const std::string& id) const;
    void rebuild();
    void addChanged(const std::vector<const Component*>& added);
    void addBranch(const Component& component, Rendra::Graphics::GroupNode& parent);
    void fill(Entry& entry, const Component& component);
    void change(const Component& component);
    void removeBranches(const std::vector<std::string>& ids);
    void removeBranch(const std::string& id);
    void forget(const Entry& entry);
    void letGoOf(Rendra::Graphics::BodyNode* body);
    void setBody(Entry& entry, const Component& component);
    void disown();

    CommonData::CommonDataAssetSettings m_settings;
    StrongRef<Rendra::Graphics::GroupNode> m_root;
    Entries m_entries;
    /// The body nodes that groups have besides their children; few have one.
    std::unordered_map<const Rendra::Graphics::Node*, StrongRef<Rendra::Graphics::BodyNode>> m_ownBodies;
    std::unordered_map<Rendra::Graphics::BodyNode*, StrongRef<Body>> m_waiting;
    Segment m_transientSegment;
};

} // namespace Vs::Scene
