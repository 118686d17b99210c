#pragma once

#include "Server/Component/Component.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/Model/BodiesLetGo.h"
#include "Server/DataModel/Model/ChildNames.h"
#include "Server/DataModel/Model/ModelSource.h"
#include "Server/DataModel/Model/PartIndex.h"
#include "Server/DataModel/Selection/PartHistory.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Vs {

class ModelBody;

/// The components and bodies of an asset, as everybody sees them, kept in sync with the kernel's data: after
/// a change only what it touched is read again. The components of one parent are in the order of their places
/// in these data.
class ComponentTree
{
public:
    ComponentTree(std::shared_ptr<ModelSource> source, const std::wstring& name);
    ~ComponentTree();

    Component& root() { return *m_root; }
    const Component* find(const std::string& id) const;
    /// The names of the children of one of its components; valid until the next refresh.
    ChildNames& names(const Component& parent);
    size_t count() const { return m_components.size(); }
    size_t occurrencesOf(const Component& component) const;
    /// Takes over the tree of a file that was read. Only for a tree that is still empty.
    void load(const PartTree& tree);

    /// Brings everything up to date; components and bodies that still exist stay the same objects. Returns
    /// what changed.
    ComponentsEvent::Changes refresh();
    /// Of the last refresh.
    const std::vector<ReshapedBody>& reshaped() const { return m_reshaped; }
    /// The body at that place of the tree's list, created if it isn't known.
    StrongRef<ModelBody> bodyOf(const PartTree& tree, size_t index);

private:
    struct Refresh;
    struct Branches;
    using Components = PartIndex::Components;
    using Use = std::function<void(const std::string& place, Branches& branches, const PartTree::Node* node)>;

    struct HashOfId
    {
        using is_transparent = void;
        size_t operator()(std::string_view id) const { return std::hash<std::string_view>()(id); }
        size_t operator()(const Component* component) const { return (*this)(component->id); }
    };
    struct SameId
    {
        using is_transparent = void;
        static std::string_view id(std::string_view id) { return id; }
        static std::string_view id(const Component* component) { return component->id; }
        bool operator()(const auto& a, const auto& b) const { return id(a) == id(b); }
    };

    void refreshAll(Refresh& refresh);
    void refreshStanding(Refresh& refresh, std::vector<TouchedPlace>& places);
    static void eachBranch(Refresh& refresh, const std::vector<std::string>& places, bool deep,
                           const Use& use);
    Components parentsOf(const std::string& entry) const;
    Component* childOf(const Component& parent, const std::string& entry) const;
    void refreshContents(Refresh& refresh, const std::vector<TouchedPlace>& places);
    Components touchedBy(const std::vector<TouchedPlace>& places);
    void merge(Refresh& refresh, Branches& branches, Component& parent,
               const std::vector<PartTree::Node>& nodes);
    bool take(Refresh& refresh, Branches& branches, Component& component, const PartTree::Node& node);
    void add(Refresh& refresh, Branches& branches, const PartTree::Node& node, Component& parent);
    void remove(Refresh& refresh, Component& parent, Component& child);
    bool visit(Component& component);
    Component* atId(std::string_view id) const;
    void rename(Component& component, const std::wstring& name);
    std::unique_ptr<Component> make(const std::string& id, const PartTree::Node& node);
    void unrelate(Component& component);
    void forget(Component& component);

    std::shared_ptr<ModelSource> m_source;
    std::unique_ptr<Component> m_root;
    std::unordered_set<Component*, HashOfId, SameId> m_components; ///< By their ids.
    std::map<std::string, StrongRef<ModelBody>> m_bodies;          ///< By the entries of their parts.
    BodiesLetGo m_letGo;
    std::vector<ReshapedBody> m_reshaped;
    // Filled at the first refresh, for the places that later ones are given.
    bool m_related = false;
    PartIndex m_parts;
    RecentNames m_recentNames;
    uint32_t m_visit = 0;                                     ///< The number of the refresh.
    std::unordered_map<const Component*, ChildNames> m_names; ///< Of those that were asked about.
};

} // namespace Vs
