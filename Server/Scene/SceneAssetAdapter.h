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

/// The scene nodes of an asset: one group or body node for each component, kept in step with the model. A
/// change of some components changes their nodes alone. Every asset has one:
/// `cast<Scene::SceneAssetAdapter>(asset->adapter())`.
class SceneAssetAdapter : public Implements<SceneAssetAdapter, AssetAdapter>, private ComponentsListener
{
public:
    explicit SceneAssetAdapter(Asset* asset);
    ~SceneAssetAdapter() override;

    /// A CommonData::CommonDataAssetSettings.
    AssetSettings* assetSettings() override { return &m_settings; }

    /// The node of the root component. Never null; stays the same as long as the asset.
    Rendra::Graphics::GroupNode* rootNode() const { return m_root.get(); }
    /// The adapter whose root node this is; null if there is none, if it is gone, or for a null.
    static SceneAssetAdapter* ofRootNode(const Rendra::Graphics::GroupNode* node);
    /// The node of a component, or null if there is none of that id.
    Rendra::Graphics::Node* node(const std::string& componentId) const;
    /// The node of its body, which may be the same one; null if it has none.
    Rendra::Graphics::BodyNode* bodyNode(const std::string& componentId) const;
    /// The id of the component that a node stands for; empty for other nodes.
    const std::string& componentId(const Rendra::Graphics::Node* node) const;

    /// Where the views' own nodes of this asset belong: reticles, markers, previews.
    Segment* transientSegment() { return &m_transientSegment; }

    /// Hands meshes that were made since the last call to their nodes. Returns true if there were any.
    bool update();
    /// Whether some bodies are still without a mesh.
    bool waitsForMeshes() const { return !m_waiting.empty(); }

private:
    struct Entry
    {
        StrongRef<Rendra::Graphics::Node> node;     ///< A BodyNode for a part, else a GroupNode.
        StrongRef<Rendra::Graphics::BodyNode> body; ///< `node` itself, or below it; null without a body.
        const std::string* id = nullptr;            ///< The key in m_entries.
        Entry* parent = nullptr;                    ///< Null for the root.
        // Those of one parent hang together, so that one goes without a look at the others.
        Entry* child = nullptr; ///< The one that came last.
        Entry* before = nullptr;
        Entry* after = nullptr;
    };

    void assetComponentsChanged(ComponentsEvent* event) override;

    void rebuild();
    void addChanged(const std::vector<const Component*>& added);
    void addBranch(const Component& component, Entry& parent);
    void fill(Entry& entry, const Component& component);
    void change(const Component& component);
    void removeBranches(const std::vector<std::string>& ids);
    void removeBranch(const std::string& id);
    void forget(Entry& entry);
    void setBody(Entry& entry, const Component& component);
    void disown();

    CommonData::CommonDataAssetSettings m_settings;
    StrongRef<Rendra::Graphics::GroupNode> m_root;
    std::unordered_map<std::string, Entry> m_entries; ///< The owners of their nodes.
    std::unordered_map<Rendra::Graphics::BodyNode*, StrongRef<Body>> m_waiting;
    Segment m_transientSegment;
};

} // namespace Vs::Scene
