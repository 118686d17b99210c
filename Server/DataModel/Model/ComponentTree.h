#pragma once

#include "Server/Component/Component.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/Model/ChildNames.h"
#include "Server/DataModel/Model/ModelSource.h"
#include "Server/DataModel/Model/PartIndex.h"
#include "Server/DataModel/Selection/PartHistory.h"

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Vs {

class ModelBody;

/// The components and bodies of an asset, as everybody sees them, kept in step with the kernel's data: after
/// a change only what it touched is read again. The components of one parent stand in the order of their
/// places in these data.
class ComponentTree
{
public:
    ComponentTree(std::shared_ptr<ModelSource> source, const std::wstring& name);
    ~ComponentTree();

    Component& root() { return *m_root; }
    const Component* find(const std::string& id) const;
    /// The names of the children of one of its components; good until the next refresh.
    ChildNames& names(const Component& parent);
    /// Takes the tree of a file that was read. Only for a tree that is still empty.
    void load(const PartTree& tree);

    /// Brings everything up to date; components and bodies that are still there stay the same objects. Gives
    /// what changed.
    ComponentsEvent::Changes refresh();
    /// Of the last refresh.
    const std::vector<ReshapedBody>& reshaped() const { return m_reshaped; }
    /// The body at that place of the tree's list, made if it isn't known.
    StrongRef<ModelBody> bodyOf(const PartTree& tree, size_t index);

private:
    struct Refresh;
    using Components = PartIndex::Components;

    void refreshAll(Refresh& refresh);
    void refreshStanding(Refresh& refresh, const std::vector<TouchedPlace>& places);
    Components parentsOf(const std::string& entry) const;
    Component* childOf(const Component& parent, const std::string& entry) const;
    void refreshContent(Refresh& refresh, const std::string& entry);
    void merge(Refresh& refresh, const PartTree& tree, Component& parent,
               const std::vector<PartTree::Node>& nodes);
    bool take(Refresh& refresh, const PartTree& tree, Component& component, const PartTree::Node& node);
    void add(Refresh& refresh, const PartTree& branch, Component& parent);
    void remove(Refresh& refresh, Component& parent, Component& child);
    void settle(Refresh& refresh);
    void rename(Component& component, const std::wstring& name);
    std::unique_ptr<Component> make(const std::string& id, const PartTree::Node& node);
    void unrelate(Component& component);
    void forget(Component& component);

    std::shared_ptr<ModelSource> m_source;
    std::unique_ptr<Component> m_root;
    std::unordered_map<std::string, Component*> m_components;
    std::map<std::string, StrongRef<ModelBody>> m_bodies;
    std::vector<ReshapedBody> m_reshaped;
    // Filled with the first refresh, for the places that later ones are told.
    bool m_related = false;
    PartIndex m_parts;
    std::unordered_map<const Component*, ChildNames> m_names; ///< Of those that were asked about.
};

} // namespace Vs
