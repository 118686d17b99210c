#include "Server/DataModel/Model/ComponentTree.h"

#include "Server/Component/ComponentIds.h"
#include "Server/DataModel/Model/ModelBody.h"

#include <algorithm>
#include <utility>

namespace Vs {

namespace {

std::string idBelow(const Component& parent, const std::string& place)
{
    return parent.id.empty() ? place : parent.id + '/' + place;
}

auto positionOf(Component& parent, const std::string& id)
{
    return parent.children.begin() + static_cast<std::ptrdiff_t>(rowOf(parent, id));
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
        relate(*component, node.part);
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

void ComponentTree::relate(Component& component, const std::string& part)
{
    m_parts[&component] = part;
    m_byPart[part].push_back(&component);
    m_byPlace[placeOf(component.id)].push_back(&component);
}

void ComponentTree::unrelate(Component& component)
{
    const auto erase = [&](auto& map, const std::string& key) {
        const auto found = map.find(key);
        if (found == map.end())
            return false;
        std::erase(found->second, &component);
        if (!found->second.empty())
            return false;
        map.erase(found);
        return true;
    };
    const auto part = m_parts.extract(&component);
    if (!part)
        return;
    if (erase(m_byPart, part.mapped()))
        m_bodies.erase(part.mapped());
    erase(m_byPlace, placeOf(component.id));
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
        Refresh refresh{kernel, {}, {}, {}};
        if (!m_related) {
            refreshAll(refresh);
            return std::move(refresh.changes);
        }
        const std::vector<TouchedPlace> places = kernel.takeTouched();
        for (const TouchedPlace& place : places)
            refreshStanding(refresh, place.entry);
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
    std::erase_if(m_bodies, [&](const auto& each) { return !m_byPart.contains(each.first); });
}

/// Whether something stands at the place that the tree doesn't have, or the other way round.
void ComponentTree::refreshStanding(Refresh& refresh, const std::string& entry)
{
    constexpr int kColonsOfPart = 3; // 0:1:1:5 is a part, 0:1:1:5:2 an occurrence in the assembly 0:1:1:5.
    Components parents;
    if (std::count(entry.begin(), entry.end(), ':') == kColonsOfPart)
        parents = {m_root.get()};
    else if (const auto found = m_byPart.find(entry.substr(0, entry.rfind(':'))); found != m_byPart.end())
        parents = found->second;
    if (parents.empty())
        return;
    const bool stands = !refresh.kernel.branch(entry, false).roots.empty();
    PartTree branch;
    for (Component* parent : parents) {
        const auto child = m_components.find(idBelow(*parent, entry));
        if (!stands && child != m_components.end())
            remove(refresh, *parent, *child->second);
        if (!stands || child != m_components.end())
            continue;
        if (branch.roots.empty())
            branch = refresh.kernel.branch(entry, true);
        add(refresh, branch, *parent);
    }
}

void ComponentTree::add(Refresh& refresh, const PartTree& branch, Component& parent)
{
    const PartTree::Node& node = branch.roots.front();
    std::unique_ptr<Component> component = make(idBelow(parent, node.id), node);
    Component& added = *component;
    parent.children.insert(positionOf(parent, added.id), std::move(component));
    if (const auto names = m_names.find(&parent); names != m_names.end())
        names->second.add(added);
    take(refresh, branch, added, node);
    // What is below a new component belongs to it and isn't told by itself.
    ComponentsEvent::Changes outer = std::exchange(refresh.changes, {});
    merge(refresh, branch, added, node.children);
    refresh.changes = std::move(outer);
    refresh.changes.added.push_back(&added);
    refresh.told.insert(&added);
}

void ComponentTree::remove(Refresh& refresh, Component& parent, const Component& child)
{
    refresh.changes.removed.push_back(child.id);
    const auto position = positionOf(parent, child.id);
    const std::unique_ptr<Component> gone = std::move(*position);
    parent.children.erase(position);
    if (const auto names = m_names.find(&parent); names != m_names.end())
        names->second.remove(*gone);
    forget(*gone);
}

void ComponentTree::refreshContent(Refresh& refresh, const std::string& entry)
{
    std::unordered_set<Component*> touched;
    for (const auto* map : {&m_byPlace, &m_byPart})
        if (const auto found = map->find(entry); found != map->end())
            touched.insert(found->second.begin(), found->second.end());
    for (Component* component : touched) {
        const std::string place = placeOf(component->id);
        PartTree branch = refresh.kernel.branch(place, false);
        if (branch.roots.empty() || refresh.told.contains(component))
            continue;
        const bool otherPart = branch.roots.front().part != m_parts[component] ||
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
    if (m_parts[&component] != node.part) {
        unrelate(component);
        relate(component, node.part);
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
