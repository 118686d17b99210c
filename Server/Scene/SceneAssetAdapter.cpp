#include "Server/Scene/SceneAssetAdapter.h"

#include "Server/Body/Body.h"
#include "Server/Component/ComponentIds.h"
#include "Server/DataModel/Asset.h"
#include "Server/Scene/NodeChange.h"

#include <unordered_set>
#include <utility>

namespace Vs::Scene {

using Rendra::Graphics::BodyNode;
using Rendra::Graphics::GroupNode;
using Rendra::Graphics::Node;

namespace {

/// Leads from an asset's root node back to the adapter, as long as it exists.
class AssetNodeData : public Implements<AssetNodeData, Rendra::Graphics::NodeData>
{
public:
    explicit AssetNodeData(SceneAssetAdapter* adapter) : m_adapter(adapter) {}
    SceneAssetAdapter* adapter() const { return m_adapter; }

private:
    SceneAssetAdapter* m_adapter;
};

[[maybe_unused]] const int kFactory = AssetAdapter::addFactory(
    [](Asset* asset) -> std::unique_ptr<AssetAdapter> { return std::make_unique<SceneAssetAdapter>(asset); });

/// Otherwise adding thousands would rehash the table again and again.
template <class Table>
void expect(Table& table, size_t coming)
{
    if (coming > table.size())
        table.reserve(table.size() + coming);
}

void place(Node* node, const Component& component)
{
    NodeChange(node).transform(component.placement).visible(component.visible).colour(component.colour);
}

} // namespace

SceneAssetAdapter::SceneAssetAdapter(Asset* asset)
    : Implements(asset),
      ComponentsListener(asset),
      m_settings(asset),
      m_root(GroupNode::make("Asset")),
      m_transientSegment("AssetTransientSegment", true)
{
    NodeChange(m_root.get()).data(std::make_unique<AssetNodeData>(this));
    rebuild();
}

SceneAssetAdapter* SceneAssetAdapter::ofRootNode(const GroupNode* node)
{
    auto* data = node ? cast<AssetNodeData>(node->data()) : nullptr;
    return data ? data->adapter() : nullptr;
}

SceneAssetAdapter::~SceneAssetAdapter()
{
    // Views may keep the node for a while after what it showed is gone.
    disown();
    NodeChange(m_root.get()).removeAll().data(nullptr);
}

Node* SceneAssetAdapter::node(const std::string& componentId) const
{
    const auto found = m_entries.find(componentId);
    return found == m_entries.end() ? nullptr : found->second.get();
}

BodyNode* SceneAssetAdapter::bodyNode(const std::string& componentId) const
{
    const auto found = m_entries.find(componentId);
    return found == m_entries.end() ? nullptr : bodyOf(*found);
}

BodyNode* SceneAssetAdapter::bodyOf(const Entry& entry) const
{
    if (auto* body = cast<BodyNode>(entry.second.get()))
        return body;
    const auto own = m_ownBodies.find(entry.second.get());
    return own == m_ownBodies.end() ? nullptr : own->second.get();
}

/// Null for the root.
GroupNode* SceneAssetAdapter::parentOf(const std::string& id) const
{
    return id.empty() ? nullptr : cast<GroupNode>(node(parentId(id)));
}

const std::string& SceneAssetAdapter::componentId(const Node* node) const
{
    static const std::string none;
    const auto* entry = node ? static_cast<const Entry*>(node->owner()) : nullptr;
    if (!entry)
        return none;
    // It may belong to another asset.
    const auto found = m_entries.find(entry->first);
    return found != m_entries.end() && &*found == entry ? entry->first : none;
}

/// Nodes that somebody keeps must not lead to what is gone.
void SceneAssetAdapter::disown()
{
    for (const auto& [id, node] : m_entries)
        NodeChange(node.get()).owner(nullptr);
    for (const auto& [group, body] : m_ownBodies)
        NodeChange(body.get()).owner(nullptr);
}

bool SceneAssetAdapter::update()
{
    bool arrived = false;
    for (auto waiting = m_waiting.begin(); waiting != m_waiting.end();) {
        std::shared_ptr<const BodyMesh> mesh = waiting->second->mesh();
        if (!mesh) {
            ++waiting;
            continue;
        }
        NodeChange(waiting->first).mesh(std::move(mesh));
        waiting = m_waiting.erase(waiting);
        arrived = true;
    }
    return arrived;
}

void SceneAssetAdapter::assetComponentsChanged(ComponentsEvent* event)
{
    const ComponentsEvent::Changes& changes = event->changes();
    if (changes.all) {
        rebuild();
        return;
    }
    removeBranches(changes.removed);
    if (!changes.added.empty())
        addChanged(changes.added);
    for (const Component* component : changes.changed)
        change(*component);
}

void SceneAssetAdapter::rebuild()
{
    m_waiting.clear();
    disown();
    m_entries.clear();
    m_ownBodies.clear();
    NodeChange(m_root.get()).removeAll();

    const Component* root = asset()->components();
    fill(*m_entries.emplace(root->id, m_root.get()).first, *root);
}

void SceneAssetAdapter::addChanged(const std::vector<const Component*>& added)
{
    expect(m_entries, added.size());
    std::string above;
    Node* parent = nullptr; // That of `above`; mostly the same as the previous one's.
    for (const Component* component : added) {
        if (std::string id = parentId(component->id); !parent || id != above)
            parent = node(above = std::move(id));
        if (!parent)
            continue;
        // A part that gets its first child becomes a group and keeps everything it has.
        if (auto* group = cast<GroupNode>(parent)) {
            addBranch(*component, *group);
        } else if (const Component* assembly = asset()->findComponent(above)) {
            change(*assembly);
            parent = nullptr;
        }
    }
}

void SceneAssetAdapter::addBranch(const Component& component, GroupNode& parent)
{
    auto [inserted, isNew] = m_entries.try_emplace(component.id);
    if (!isNew) {
        removeBranch(component.id);
        inserted = m_entries.try_emplace(component.id).first;
    }
    Entry& entry = *inserted;
    if (component.body && component.children.empty())
        entry.second = BodyNode::make(nullptr, component.body->colour());
    else
        entry.second = GroupNode::make();
    fill(entry, component);
    NodeChange(&parent).add(entry.second);
}

void SceneAssetAdapter::fill(Entry& entry, const Component& component)
{
    NodeChange(entry.second.get()).owner(&entry);
    place(entry.second.get(), component);
    setBody(entry, component);
    auto* group = cast<GroupNode>(entry.second.get());
    if (!group)
        return;
    expect(m_entries, component.children.size());
    NodeChange(group).expect(component.children.size());
    for (const auto& child : component.children)
        addBranch(*child, *group);
}

void SceneAssetAdapter::change(const Component& component)
{
    const auto found = m_entries.find(component.id);
    if (found == m_entries.end())
        return;
    Entry& entry = *found;
    const bool isGroup = cast<GroupNode>(entry.second.get()) != nullptr;
    GroupNode* const parent = parentOf(component.id);
    const bool asGroup = !parent || !component.body || !component.children.empty();
    if (isGroup == asGroup) {
        place(entry.second.get(), component);
        setBody(entry, component);
        return;
    }
    removeBranch(component.id);
    addBranch(component, *parent);
}

void SceneAssetAdapter::setBody(Entry& entry, const Component& component)
{
    BodyNode* body = bodyOf(entry);
    if (!component.body) {
        if (body && body != entry.second.get()) {
            NodeChange(entry.second.get()).remove(body);
            letGoOf(body);
            m_ownBodies.erase(entry.second.get());
        }
        return;
    }
    if (!body) {
        const StrongRef<BodyNode> own = BodyNode::make(nullptr, component.body->colour());
        body = own.get();
        NodeChange(body).owner(&entry);
        NodeChange(entry.second.get()).add(own);
        m_ownBodies[entry.second.get()] = own;
    }
    std::shared_ptr<const BodyMesh> mesh = component.body->mesh();
    if (mesh)
        m_waiting.erase(body);
    else
        m_waiting[body] = component.body;
    NodeChange(body).bodyColour(component.body->colour()).mesh(std::move(mesh));
}

void SceneAssetAdapter::removeBranches(const std::vector<std::string>& ids)
{
    // Many children are removed from a group of thousands by adding the remaining ones again.
    constexpr size_t kFew = 64;
    std::unordered_map<GroupNode*, std::unordered_set<const Node*>> going;
    if (ids.size() > kFew)
        for (const std::string& id : ids)
            if (Node* const node = this->node(id))
                going[parentOf(id)].insert(node);
    for (const auto& [group, nodes] : going) {
        if (!group || nodes.size() <= kFew)
            continue;
        std::vector<StrongRef<Node>> staying = group->children();
        // NOLINTNEXTLINE(clang-analyzer-core.CallAndMessage): each is one of the group's.
        std::erase_if(staying, [&](const StrongRef<Node>& node) { return nodes.contains(node.get()); });
        NodeChange change(group);
        change.removeAll();
        for (StrongRef<Node>& node : staying)
            change.add(std::move(node));
    }
    for (const std::string& id : ids)
        removeBranch(id);
}

void SceneAssetAdapter::removeBranch(const std::string& id)
{
    const auto found = m_entries.find(id);
    GroupNode* const parent = parentOf(id);
    if (found == m_entries.end() || !parent)
        return;
    NodeChange(parent).remove(found->second.get());
    forget(*found);
}

void SceneAssetAdapter::letGoOf(BodyNode* body)
{
    NodeChange(body).owner(nullptr);
    m_waiting.erase(body);
}

void SceneAssetAdapter::forget(const Entry& entry)
{
    if (BodyNode* const body = bodyOf(entry))
        letGoOf(body);
    if (const auto* group = cast<GroupNode>(entry.second.get())) {
        for (const auto& child : group->children())
            if (const auto* below = static_cast<const Entry*>(child->owner()))
                forget(*below);
        m_ownBodies.erase(group);
    }
    NodeChange(entry.second.get()).owner(nullptr);
    m_entries.erase(m_entries.find(entry.first));
}

} // namespace Vs::Scene
