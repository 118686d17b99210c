#include "Server/DataModel/Model/ComponentTree.h"

#include "Server/Component/ComponentIds.h"
#include "Server/DataModel/Model/ChildChanges.h"
#include "Server/DataModel/Model/ModelBody.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

namespace Vs {

namespace {

/// Otherwise adding thousands would rehash the table again and again.
template <class Table>
void expect(Table& table, size_t coming)
{
    if (coming > table.size())
        table.reserve(table.size() + coming);
}

/// Whether what stands at that place of the data is in no assembly.
bool isAtTop(const std::string& place)
{
    constexpr int kColonsOfPart = 3; // 0:1:1:5 is a part, 0:1:1:5:2 an occurrence in the assembly 0:1:1:5.
    return std::count(place.begin(), place.end(), ':') == kColonsOfPart;
}

} // namespace

struct ComponentTree::Refresh
{
    ModelKernel& kernel;
    ComponentsEvent::Changes changes;
    std::unordered_set<const ModelBody*> changedBodies;
    ChildChanges children;
};

/// What the kernel tells of some places, and the bodies in it, as far as they were asked for.
struct ComponentTree::Branches
{
    PartTree tree;
    std::vector<StrongRef<ModelBody>> bodies = std::vector<StrongRef<ModelBody>>(tree.bodies.size());
};

ComponentTree::ComponentTree(std::shared_ptr<ModelSource> source, const std::wstring& name)
    : m_source(std::move(source)), m_root(std::make_unique<Component>())
{
    m_root->name = SharedName(name);
}

ComponentTree::~ComponentTree() = default;

const Component* ComponentTree::find(const std::string& id) const
{
    return atId(id);
}

Component* ComponentTree::atId(std::string_view id) const
{
    const auto found = m_components.find(id);
    return found == m_components.end() ? nullptr : *found;
}

ChildNames& ComponentTree::names(const Component& parent)
{
    return m_names.try_emplace(&parent, parent).first->second;
}

size_t ComponentTree::occurrencesOf(const Component& component) const
{
    const std::string place = placeOf(component.id);
    if (place.size() == component.id.size())
        return 1;
    if (m_related)
        return m_parts.atPlace(place).size();
    return static_cast<size_t>(std::ranges::count_if(
        m_components, [&](const Component* other) { return placeOf(other->id) == place; }));
}

std::unique_ptr<Component> ComponentTree::make(const std::string& id, const PartTree::Node& node)
{
    auto component = std::make_unique<Component>();
    component->id = id;
    component->name = m_recentNames.shared(node.name);
    component->notes.visit = m_visit;
    m_components.insert(component.get());
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
        expect(m_components, nodes.size());
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
    const auto unused = m_bodies.find(m_parts.remove(component));
    if (unused == m_bodies.end())
        return;
    for (const std::string& part : m_letGo.add(unused->first, unused->second->meshBytes()))
        if (m_parts.ofPart(part).empty())
            m_bodies.erase(part);
}

void ComponentTree::forget(Component& component)
{
    const auto known = m_components.find(component.id);
    // One that went before what it was in, where it stays until all is settled.
    if (known == m_components.end() || *known != &component)
        return;
    m_components.erase(known);
    m_names.erase(&component);
    unrelate(component);
    for (const auto& child : component.children)
        forget(*child);
}

ComponentsEvent::Changes ComponentTree::refresh()
{
    return m_source->withKernel([&](ModelKernel& kernel) {
        m_reshaped.clear();
        ++m_visit;
        Refresh refresh{.kernel = kernel};
        // The tree of a file is that of its data: then only what was changed since has to be asked for.
        constexpr const char* kShapes = "0:1:1"; // Where the parts of all models stand.
        if (!m_related)
            m_related = m_source->file && m_parts.addTree(*m_root, kShapes);
        if (!m_related) {
            refreshAll(refresh);
            return std::move(refresh.changes);
        }
        std::vector<TouchedPlace> places = kernel.takeTouched();
        sortByPlace(places);
        refreshStanding(refresh, places);
        refreshContents(refresh, places);
        keepTopmost(refresh.changes.removed);
        return std::move(refresh.changes);
    });
}

void ComponentTree::refreshAll(Refresh& refresh)
{
    Branches all{refresh.kernel.tree()};
    m_related = true;
    merge(refresh, all, *m_root, all.tree.roots);
    std::erase_if(m_bodies, [&](const auto& each) { return m_parts.ofPart(each.first).empty(); });
}

/// Gives what stands at each of the places, or null.
void ComponentTree::eachBranch(Refresh& refresh, const std::vector<std::string>& places, bool deep,
                               const Use& use)
{
    constexpr size_t kAtOnce = 4096; // What the kernel tells takes memory.
    for (size_t begin = 0; begin < places.size(); begin += kAtOnce) {
        const std::span some = std::span(places).subspan(begin, std::min(kAtOnce, places.size() - begin));
        Branches branches{refresh.kernel.branches({some.begin(), some.end()}, deep)};
        auto node = branches.tree.roots.begin();
        for (const std::string& place : some) {
            const bool stands = node != branches.tree.roots.end() && node->id == place;
            use(place, branches, stands ? &*node++ : nullptr);
        }
    }
}

/// Whether something stands at the places that the tree doesn't have, or the other way round. What is new
/// altogether has no content left to be read.
void ComponentTree::refreshStanding(Refresh& refresh, std::vector<TouchedPlace>& places)
{
    std::vector<std::string> known, missing;
    for (auto& [entry, content] : places) {
        const Components parents = parentsOf(entry);
        const auto having = std::ranges::count_if(
            parents, [&](const Component* parent) { return childOf(*parent, entry) != nullptr; });
        if (having > 0)
            known.push_back(entry);
        if (having < std::ssize(parents))
            missing.push_back(entry);
        content = content && !(having == 0 && isAtTop(entry) && m_parts.ofPart(entry).empty());
    }
    expect(m_components, missing.size());
    // What goes first, so that nothing comes into what goes.
    eachBranch(refresh, known, false, [&](const std::string& entry, Branches&, const PartTree::Node* node) {
        if (!node)
            for (Component* parent : parentsOf(entry))
                if (Component* const child = childOf(*parent, entry))
                    remove(refresh, *parent, *child);
    });
    eachBranch(refresh, missing, true,
               [&](const std::string& entry, Branches& branches, const PartTree::Node* node) {
                   if (node)
                       for (Component* parent : parentsOf(entry))
                           if (parent == m_root.get() || !childOf(*parent, entry))
                               add(refresh, branches, *node, *parent);
               });
    refresh.children.settle(m_names);
}

ComponentTree::Components ComponentTree::parentsOf(const std::string& entry) const
{
    if (isAtTop(entry))
        return {m_root.get()};
    return m_parts.ofPart(entry.substr(0, entry.rfind(':')));
}

Component* ComponentTree::childOf(const Component& parent, const std::string& entry) const
{
    return parent.id.empty() ? atId(entry) : atId(idBelow(parent, entry));
}

/// Returns false if this refresh has dealt with it.
bool ComponentTree::visit(Component& component)
{
    return std::exchange(component.notes.visit, m_visit) != m_visit;
}

void ComponentTree::add(Refresh& refresh, Branches& branches, const PartTree::Node& node, Component& parent)
{
    Component& added = refresh.children.come(parent, make(idBelow(parent, node.id), node));
    take(refresh, branches, added, node);
    // What is below a new component belongs to it and isn't told by itself.
    if (!node.children.empty()) {
        ComponentsEvent::Changes outer = std::exchange(refresh.changes, {});
        merge(refresh, branches, added, node.children);
        refresh.changes = std::move(outer);
    }
    refresh.changes.added.push_back(&added);
}

void ComponentTree::remove(Refresh& refresh, Component& parent, Component& child)
{
    refresh.changes.removed.push_back(child.id);
    refresh.children.go(parent, child);
    forget(child);
}

/// The components that stand at the places or show what does, without those that were dealt with already.
ComponentTree::Components ComponentTree::touchedBy(const std::vector<TouchedPlace>& places)
{
    Components touched;
    const auto collect = [&](Component* component) {
        if (visit(*component))
            touched.push_back(component);
    };
    for (const auto& [entry, content] : places) {
        if (!content)
            continue;
        if (Component* const atTop = atId(entry))
            collect(atTop);
        std::ranges::for_each(m_parts.atPlace(entry), collect);
        std::ranges::for_each(m_parts.ofPart(entry), collect);
    }
    return touched;
}

void ComponentTree::refreshContents(Refresh& refresh, const std::vector<TouchedPlace>& places)
{
    const Components touched = touchedBy(places);
    std::vector<std::string> standing, otherParts;
    for (const Component* component : touched)
        standing.push_back(placeOf(component->id));
    auto next = touched.begin();
    const auto update = [&](Branches& branches, Component& component, const PartTree::Node& node) {
        if (take(refresh, branches, component, node))
            refresh.changes.changed.push_back(&component);
    };
    eachBranch(refresh, standing, false,
               [&](const std::string&, Branches& branches, const PartTree::Node* node) {
                   Component& component = **next++;
                   if (!node)
                       return;
                   if (node->part == m_parts.partOf(component) &&
                       (node->body < 0) == (component.body.get() == nullptr))
                       update(branches, component, *node);
                   else
                       otherParts.push_back(component.id);
               });
    // What is in these becomes another one, and may have been touched, too.
    for (const std::string& id : otherParts) {
        Component* const component = atId(id);
        if (!component)
            continue;
        Branches branches{refresh.kernel.branches({placeOf(id)}, true)};
        update(branches, *component, branches.tree.roots.front());
        merge(refresh, branches, *component, branches.tree.roots.front().children);
    }
}

void ComponentTree::rename(Component& component, const std::wstring& name)
{
    const std::string parent = parentId(component.id);
    const auto names = m_names.find(parent.empty() ? m_root.get() : find(parent));
    if (names != m_names.end())
        names->second.remove(component);
    component.name = m_recentNames.shared(name);
    if (names != m_names.end())
        names->second.add(component);
}

/// Returns whether anything is new.
bool ComponentTree::take(Refresh& refresh, Branches& branches, Component& component,
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
    set(component.placement, GkPlacement(node.placement));
    set(component.colour, node.colour);
    set(component.visible, node.visible);
    StrongRef<Body> body;
    if (node.body >= 0) {
        const auto index = static_cast<size_t>(node.body);
        StrongRef<ModelBody>& own = branches.bodies[index];
        if (!own) {
            own = bodyOf(branches.tree, index);
            if (own->update(branches.tree.bodies[index]))
                refresh.changedBodies.insert(own.get());
        }
        changed |= refresh.changedBodies.contains(own.get());
        const auto* before = cast<ModelBody>(component.body.get());
        if (before && before->revision() != 0 && before->revision() != own->revision())
            m_reshaped.push_back({component.id, before->revision()});
        body = own;
    }
    set(component.body, body);
    return changed;
}

void ComponentTree::merge(Refresh& refresh, Branches& branches, Component& parent,
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
        const bool changed = take(refresh, branches, *component, node);
        if (known) {
            if (changed && visit(*component))
                refresh.changes.changed.push_back(component.get());
            merge(refresh, branches, *component, node.children);
        } else {
            ComponentsEvent::Changes outer = std::exchange(refresh.changes, {});
            merge(refresh, branches, *component, node.children);
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
