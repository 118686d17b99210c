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

/// Leads from an asset's root node back to the adapter, as long as there is one.
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

/// Otherwise thousands that come have the table made anew again and again.
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
    // Views may keep the node for a while; what it showed is gone.
    disown();
    NodeChange(m_root.get()).removeAll().data(nullptr);
}

Node* SceneAssetAdapter::node(const std::string& componentId) const
{
    const auto found = m_entries.find(componentId);
    return found == m_entries.end() ? nullptr : found->second.node.get();
}

BodyNode* SceneAssetAdapter::bodyNode(const std::string& componentId) const
{
    const auto found = m_entries.find(componentId);
    return found == m_entries.end() ? nullptr : found->second.body.get();
}

const std::string& SceneAssetAdapter::componentId(const Node* node) const
{
    static const std::string none;
    const auto* entry = node ? static_cast<const Entry*>(node->owner()) : nullptr;
    if (!entry)
        return none;
    // It may be another asset's.
    const auto found = m_entries.find(*entry->id);
    return found != m_entries.end() && &found->second == entry ? *entry->id : none;
}

/// Nodes that somebody keeps don't lead to what is gone.
void SceneAssetAdapter::disown()
{
    for (auto& [id, entry] : m_entries) {
        NodeChange(entry.node.get()).owner(nullptr);
        if (entry.body)
            NodeChange(entry.body.get()).owner(nullptr);
    }
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
    NodeChange(m_root.get()).removeAll();

    const Component* root = asset()->components();
    const auto [inserted, isNew] = m_entries.try_emplace(root->id);
    Entry& entry = inserted->second;
    entry.node = m_root.get();
    entry.id = &inserted->first;
    fill(entry, *root);
}

void SceneAssetAdapter::addChanged(const std::vector<const Component*>& added)
{
    expect(m_entries, added.size());
    std::string above;
    Entry* parent = nullptr; // Of `above`; mostly the last one's as well.
    for (const Component* component : added) {
        if (std::string id = parentId(component->id); !parent || id != above) {
            const auto found = m_entries.find(above = std::move(id));
            parent = found == m_entries.end() ? nullptr : &found->second;
        }
        if (!parent)
            continue;
        // A part that gets its first child becomes a group, with all that it has.
        if (cast<GroupNode>(parent->node.get())) {
            addBranch(*component, *parent);
        } else if (const Component* assembly = asset()->findComponent(above)) {
            change(*assembly);
            parent = nullptr;
        }
    }
}

void SceneAssetAdapter::addBranch(const Component& component, Entry& parent)
{
    auto [inserted, isNew] = m_entries.try_emplace(component.id);
    if (!isNew) {
        removeBranch(component.id);
        inserted = m_entries.try_emplace(component.id).first;
    }
    Entry& entry = inserted->second;
    entry.id = &inserted->first;
    entry.parent = &parent;
    entry.before = std::exchange(parent.child, &entry);
    if (entry.before)
        entry.before->after = &entry;
    if (component.body && component.children.empty())
        entry.node = BodyNode::make(nullptr, component.body->colour());
    else
        entry.node = GroupNode::make();
    fill(entry, component);
    NodeChange(parent.node.get()).add(entry.node);
}

void SceneAssetAdapter::fill(Entry& entry, const Component& component)
{
    NodeChange(entry.node.get()).owner(&entry);
    place(entry.node.get(), component);
    setBody(entry, component);
    expect(m_entries, component.children.size());
    for (const auto& child : component.children)
        addBranch(*child, entry);
}

void SceneAssetAdapter::change(const Component& component)
{
    const auto found = m_entries.find(component.id);
    if (found == m_entries.end())
        return;
    Entry& entry = found->second;
    const bool isGroup = cast<GroupNode>(entry.node.get()) != nullptr;
    const bool asGroup = !entry.parent || !component.body || !component.children.empty();
    if (isGroup == asGroup) {
        place(entry.node.get(), component);
        setBody(entry, component);
        return;
    }
    Entry& parent = *entry.parent;
    removeBranch(component.id);
    addBranch(component, parent);
}

void SceneAssetAdapter::setBody(Entry& entry, const Component& component)
{
    if (!component.body) {
        if (entry.body && entry.body.get() != entry.node.get()) {
            NodeChange(entry.node.get()).remove(entry.body.get());
            NodeChange(entry.body.get()).owner(nullptr);
            m_waiting.erase(entry.body.get());
        }
        entry.body = nullptr;
        return;
    }
    if (!entry.body) {
        entry.body = cast<BodyNode>(entry.node.get());
        if (!entry.body) {
            entry.body = BodyNode::make(nullptr, component.body->colour());
            NodeChange(entry.body.get()).owner(&entry);
            NodeChange(entry.node.get()).add(entry.body);
        }
    }
    std::shared_ptr<const BodyMesh> mesh = component.body->mesh();
    if (mesh)
        m_waiting.erase(entry.body.get());
    else
        m_waiting[entry.body.get()] = component.body;
    NodeChange(entry.body.get()).bodyColour(component.body->colour()).mesh(std::move(mesh));
}

void SceneAssetAdapter::removeBranches(const std::vector<std::string>& ids)
{
    // Out of a group of thousands, many are taken by hanging up the others anew.
    constexpr size_t kFew = 64;
    std::unordered_map<GroupNode*, std::unordered_set<const Node*>> going;
    if (ids.size() > kFew)
        for (const std::string& id : ids)
            if (const auto found = m_entries.find(id); found != m_entries.end() && found->second.parent)
                going[cast<GroupNode>(found->second.parent->node.get())].insert(found->second.node.get());
    for (const auto& [group, nodes] : going) {
        if (!group || nodes.size() <= kFew)
            continue;
        std::vector<StrongRef<Node>> staying = group->children();
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
    if (found == m_entries.end() || !found->second.parent)
        return;
    Entry& entry = found->second;
    NodeChange(entry.parent->node.get()).remove(entry.node.get());
    (entry.after ? entry.after->before : entry.parent->child) = entry.before;
    if (entry.before)
        entry.before->after = entry.after;
    forget(entry);
}

void SceneAssetAdapter::forget(Entry& entry)
{
    while (Entry* const child = entry.child) {
        entry.child = child->before;
        forget(*child);
    }
    NodeChange(entry.node.get()).owner(nullptr);
    if (entry.body) {
        NodeChange(entry.body.get()).owner(nullptr);
        m_waiting.erase(entry.body.get());
    }
    m_entries.erase(m_entries.find(*entry.id));
}

} // namespace Vs::Scene
