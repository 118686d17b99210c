#include "Server/DataModel/Model/ComponentTree.h"

#include "Server/Component/ComponentIds.h"
#include "Server/DataModel/Model/ModelBody.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Vs {

namespace {

std::string idBelow(const Component& parent, const std::string& place)
{
    return parent.id.empty() ? place : parent.id + '/' + place;
}

/// By the order in which places stand in the model's data, those of one assembly together.
void sortByPlace(std::vector<TouchedPlace>& places)
{
    struct Key
    {
        std::string_view assembly;
        int number;
        size_t index;
    };
    std::vector<Key> keys;
    for (size_t i = 0; i < places.size(); ++i) {
        const std::string& entry = places[i].entry;
        keys.push_back({std::string_view(entry).substr(0, entry.rfind(':')), lastNumber(entry), i});
    }
    std::stable_sort(keys.begin(), keys.end(), [](const Key& a, const Key& b) {
        const int order = a.assembly.compare(b.assembly);
        return order != 0 ? order < 0 : a.number < b.number;
    });
    std::vector<TouchedPlace> sorted;
    for (const Key& key : keys)
        sorted.push_back(places[key.index]);
    places = std::move(sorted);
}

/// Leaves out what lies in a branch that is named itself.
void keepTopmost(std::vector<std::string>& ids)
{
    const std::unordered_set<std::string> all(ids.begin(), ids.end());
    std::erase_if(ids, [&](const std::string& id) {
        std::string above = parentId(id);
        while (!above.empty() && !all.contains(above))
            above = parentId(above);
        return !above.empty();
    });
}

} // namespace

struct ComponentTree::Refresh
{
    ModelKernel& kernel;
    ComponentsEvent::Changes changes;
    std::unordered_set<const ModelBody*> changedBodies;
    std::unordered_set<const Component*> told; ///< As added or changed.
    // So that thousands that come or go among as many others are put in, or taken out, in one go.
    std::unordered_map<Component*, std::vector<std::unique_ptr<Component>>> coming; ///< Below each parent.
    std::unordered_map<Component*, std::unordered_set<const Component*>> going;
};

ComponentTree::ComponentTree(std::shared_ptr<ModelSource> source, const std::wstring& name)
    : m_source(std::move(source)), m_root(std::make_unique<Component>())
{
    m_root->name = name;
}

ComponentTree::~ComponentTree() = default;

const Component* ComponentTree::find(const std::string& id) const
{
    const auto found = m_components.find(id);
    return found == m_components.end() ? nullptr : found->second;
}

ChildNames& ComponentTree::names(const Component& parent)
{
    return m_names.try_emplace(&parent, parent).first->second;
}

std::unique_ptr<Component> ComponentTree::make(const std::string& id, const PartTree::Node& node)
{
    auto component = std::make_unique<Component>();
    component->id = id;
    component->name = node.name;
    m_components[id] = component.get();
    if (m_related)
        m_parts.add(*component, node.part);
    return component;
}

void ComponentTree::load(const PartTree& tree)
{
    std::vector<StrongRef<ModelBody>> bodies;
    for (size_t i = 0; i < tree.bodies.size(); ++i) {
        bodies.push_back(makeStrong<ModelBody>(m_source, tree.bodies[i], static_cast<int>(i)));
        m_bodies[tree.bodies[i].entry] = bodies.back();
    }
    const auto build = [&](const auto& self, Component& parent,
                           const std::vector<PartTree::Node>& nodes) -> void {
        parent.children.reserve(nodes.size());
        for (const PartTree::Node& node : nodes) {
            std::unique_ptr<Component> component = make(node.id, node);
            component->placement = node.placement;
            component->colour = node.colour;
            component->visible = node.visible;
            if (node.body >= 0)
                component->body = bodies[static_cast<size_t>(node.body)];
            self(self, *component, node.children);
            parent.children.push_back(std::move(component));
        }
    };
    build(build, *m_root, tree.roots);
}

StrongRef<ModelBody> ComponentTree::bodyOf(const PartTree& tree, size_t index)
{
    const PartTree::Body& part = tree.bodies[index];
    StrongRef<ModelBody>& known = m_bodies[part.entry];
    // A body that came from a file meets its shape here for the first time.
    if (known && known->revision() == 0)
        known->revision(part.revision);
    // An entry may be used again after an undo, for quite another shape.
    if (!known || known->revision() != part.revision)
        known = makeStrong<ModelBody>(m_source, part, -1);
    return known;
}

void ComponentTree::unrelate(Component& component)
{
    if (const std::string unused = m_parts.remove(component); !unused.empty())
        m_bodies.erase(unused);
}

void ComponentTree::forget(Component& component)
{
    m_components.erase(component.id);
    m_names.erase(&component);
    unrelate(component);
    for (const auto& child : component.children)
        forget(*child);
}

ComponentsEvent::Changes ComponentTree::refresh()
{
    return m_source->withKernel([&](ModelKernel& kernel) {
        m_reshaped.clear();
        Refresh refresh{.kernel = kernel};
        if (!m_related) {
            refreshAll(refresh);
            return std::move(refresh.changes);
        }
        std::vector<TouchedPlace> places = kernel.takeTouched();
        sortByPlace(places);
        refreshStanding(refresh, places);
        for (const TouchedPlace& place : places)
            if (place.content)
                refreshContent(refresh, place.entry);
        keepTopmost(refresh.changes.removed);
        return std::move(refresh.changes);
    });
}

void ComponentTree::refreshAll(Refresh& refresh)
{
    const PartTree tree = refresh.kernel.tree();
    m_related = true;
    merge(refresh, tree, *m_root, tree.roots);
    std::erase_if(m_bodies, [&](const auto& each) { return m_parts.ofPart(each.first).empty(); });
}

/// Whether something stands at the places that the tree doesn't have, or the other way round.
void ComponentTree::refreshStanding(Refresh& refresh, const std::vector<TouchedPlace>& places)
{
    // What goes first, so that nothing comes into what goes.
    std::unordered_set<std::string_view> empty;
    for (const auto& [entry, content] : places)
        for (Component* parent : parentsOf(entry)) {
            Component* const child = childOf(*parent, entry);
            if (child && !empty.contains(entry)) {
                if (!refresh.kernel.branch(entry, false).roots.empty())
                    break;
                empty.insert(entry);
            }
            if (child)
                remove(refresh, *parent, *child);
        }
    for (const auto& [entry, content] : places) {
        PartTree branch;
        if (!empty.contains(entry))
            for (Component* parent : parentsOf(entry)) {
                if (childOf(*parent, entry))
                    continue;
                if (branch.roots.empty())
                    branch = refresh.kernel.branch(entry, true);
                if (branch.roots.empty())
                    break;
                add(refresh, branch, *parent);
            }
    }
    settle(refresh);
}

ComponentTree::Components ComponentTree::parentsOf(const std::string& entry) const
{
    constexpr int kColonsOfPart = 3; // 0:1:1:5 is a part, 0:1:1:5:2 an occurrence in the assembly 0:1:1:5.
    if (std::count(entry.begin(), entry.end(), ':') == kColonsOfPart)
        return {m_root.get()};
    return m_parts.ofPart(entry.substr(0, entry.rfind(':')));
}

Component* ComponentTree::childOf(const Component& parent, const std::string& entry) const
{
    const auto found = m_components.find(idBelow(parent, entry));
    return found == m_components.end() ? nullptr : found->second;
}

void ComponentTree::add(Refresh& refresh, const PartTree& branch, Component& parent)
{
    const PartTree::Node& node = branch.roots.front();
    std::unique_ptr<Component>& component =
        refresh.coming[&parent].emplace_back(make(idBelow(parent, node.id), node));
    Component& added = *component;
    take(refresh, branch, added, node);
    // What is below a new component belongs to it and isn't told by itself.
    ComponentsEvent::Changes outer = std::exchange(refresh.changes, {});
    merge(refresh, branch, added, node.children);
    refresh.changes = std::move(outer);
    refresh.changes.added.push_back(&added);
    refresh.told.insert(&added);
}

void ComponentTree::remove(Refresh& refresh, Component& parent, Component& child)
{
    refresh.changes.removed.push_back(child.id);
    refresh.going[&parent].insert(&child);
    forget(child);
}

/// Takes out what goes, and puts in what comes.
void ComponentTree::settle(Refresh& refresh)
{
    // An index of names costs as much to make anew as it does to change it for all.
    constexpr size_t kFew = 64;
    const auto namesOf = [&](Component* parent, size_t changes) {
        const auto names = m_names.find(parent);
        if (names == m_names.end() || changes <= kFew)
            return names == m_names.end() ? nullptr : &names->second;
        m_names.erase(names);
        return static_cast<ChildNames*>(nullptr);
    };
    // A parent may be among those that go.
    std::vector<std::unique_ptr<Component>> gone;
    for (const auto& [parent, children] : refresh.going) {
        ChildNames* const names = namesOf(parent, children.size());
        std::erase_if(parent->children, [&](std::unique_ptr<Component>& child) {
            if (!children.contains(child.get()))
                return false;
            if (names)
                names->remove(*child);
            gone.push_back(std::move(child));
            return true;
        });
    }
    for (auto& [parent, children] : refresh.coming) {
        ChildNames* const names = namesOf(parent, children.size());
        for (const auto& child : children)
            if (names)
                names->add(*child);
        auto& all = parent->children;
        const auto before = static_cast<std::ptrdiff_t>(all.size());
        std::ranges::move(children, std::back_inserter(all));
        std::inplace_merge(all.begin(), all.begin() + before, all.end(), [](const auto& a, const auto& b) {
            return lastNumber(a->id) < lastNumber(b->id);
        });
    }
    refresh.coming.clear();
    refresh.going.clear();
}

void ComponentTree::refreshContent(Refresh& refresh, const std::string& entry)
{
    std::unordered_set<Component*> touched;
    for (const Components* some : {&m_parts.atPlace(entry), &m_parts.ofPart(entry)})
        touched.insert(some->begin(), some->end());
    for (Component* component : touched) {
        if (refresh.told.contains(component))
            continue;
        const std::string place = placeOf(component->id);
        PartTree branch = refresh.kernel.branch(place, false);
        if (branch.roots.empty())
            continue;
        const bool otherPart = branch.roots.front().part != m_parts.partOf(*component) ||
                               (branch.roots.front().body < 0) == (component->body.get() != nullptr);
        if (otherPart)
            branch = refresh.kernel.branch(place, true);
        const PartTree::Node& node = branch.roots.front();
        if (take(refresh, branch, *component, node)) {
            refresh.changes.changed.push_back(component);
            refresh.told.insert(component);
        }
        if (otherPart)
            merge(refresh, branch, *component, node.children);
    }
}

void ComponentTree::rename(Component& component, const std::wstring& name)
{
    const std::string parent = parentId(component.id);
    const auto names = m_names.find(parent.empty() ? m_root.get() : find(parent));
    if (names != m_names.end())
        names->second.remove(component);
    component.name = name;
    if (names != m_names.end())
        names->second.add(component);
}

/// Returns whether anything is new.
bool ComponentTree::take(Refresh& refresh, const PartTree& tree, Component& component,
                         const PartTree::Node& node)
{
    bool changed = false;
    const auto set = [&](auto& target, auto value) {
        changed |= !(target == value);
        target = std::move(value);
    };
    if (m_parts.partOf(component) != node.part) {
        unrelate(component);
        m_parts.add(component, node.part);
    }
    if (component.name != node.name) {
        rename(component, node.name);
        changed = true;
    }
    changed |= !component.placement.isEqualTo(node.placement, {0, 0});
    component.placement = node.placement;
    set(component.colour, node.colour);
    set(component.visible, node.visible);
    StrongRef<Body> body;
    if (node.body >= 0) {
        const StrongRef<ModelBody> own = bodyOf(tree, static_cast<size_t>(node.body));
        if (own->update(tree.bodies[static_cast<size_t>(node.body)]))
            refresh.changedBodies.insert(own.get());
        changed |= refresh.changedBodies.contains(own.get());
        const auto* before = cast<ModelBody>(component.body.get());
        if (before && before->revision() != 0 && before->revision() != own->revision())
            m_reshaped.push_back({component.id, before->revision()});
        body = own;
    }
    set(component.body, body);
    return changed;
}

void ComponentTree::merge(Refresh& refresh, const PartTree& tree, Component& parent,
                          const std::vector<PartTree::Node>& nodes)
{
    m_names.erase(&parent);
    if (parent.children.empty() && nodes.empty())
        return;
    std::unordered_map<std::string_view, std::unique_ptr<Component>> old;
    for (auto& child : parent.children) {
        const std::string_view id = child->id;
        old[id] = std::move(child);
    }
    std::vector<std::unique_ptr<Component>> children;
    for (const PartTree::Node& node : nodes) {
        const std::string id = idBelow(parent, node.id.substr(node.id.rfind('/') + 1));
        auto known = old.extract(id);
        std::unique_ptr<Component> component = known ? std::move(known.mapped()) : make(id, node);
        const bool changed = take(refresh, tree, *component, node);
        if (known) {
            if (changed && refresh.told.insert(component.get()).second)
                refresh.changes.changed.push_back(component.get());
            merge(refresh, tree, *component, node.children);
        } else {
            ComponentsEvent::Changes outer = std::exchange(refresh.changes, {});
            merge(refresh, tree, *component, node.children);
            refresh.changes = std::move(outer);
            refresh.changes.added.push_back(component.get());
        }
        children.push_back(std::move(component));
    }
    for (auto& [id, component] : old) {
        refresh.changes.removed.push_back(component->id);
        forget(*component);
    }
    parent.children = std::move(children);
}

} // namespace Vs
