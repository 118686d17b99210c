#include "UI/Base/Session/Private/SelectionDisplay.h"

#include "Server/Base/Status.h"
#include "Server/Component/Component.h"
#include "Server/Component/ComponentIds.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/DataModel/Selection/Solids.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

#include <algorithm>
#include <utility>

namespace Vu {

using Rendra::Graphics::LitPart;
using Rendra::Graphics::Node;
using Rendra::Graphics::Part;
using Leaf = Vs::ObjectPath::Leaf;

SelectionDisplay::SelectionDisplay(Vs::Asset* asset, Vs::SelectionMgr* selection)
    : ComponentsListener(asset),
      m_asset(asset),
      m_selection(selection),
      m_selected(*this, selection->selectionSet()),
      m_collected(*this, selection->collectedSet()),
      m_pointed(*this, selection->highlightSet())
{
}

SelectionDisplay::~SelectionDisplay() = default;

Vs::Scene::SceneAssetAdapter* SelectionDisplay::scene() const
{
    return Vs::cast<Vs::Scene::SceneAssetAdapter>(m_asset->adapter());
}

void SelectionDisplay::assetComponentsChanged(Vs::ComponentsEvent* event)
{
    const Changes& changes = event->changes();
    const bool follows = m_follower.heard(*m_asset);
    if (follows) {
        Vs::SelectionSet& selected = m_selection->selectionSet();
        const auto left = m_follower.follow(selected.selections(), m_asset);
        m_follower.followed();
        selected.replace(left);
    }
    m_selected.dropStale(changes);
    m_pointed.dropStale(changes);
    dropPointed(changes);
    for (Layer* layer : {&m_selected, &m_collected, &m_pointed})
        if (follows)
            layer->light();
        else
            layer->light(changes);
    WorkspaceWindow::invalidate(kInvalidateScene);
}

// Parts are identified by number, and the same number may mean a different part of a body that has changed.
void SelectionDisplay::dropPointed(const Changes& changes)
{
    const auto isOfChanged = [&](const Vs::StrongRef<Vs::Selection>& selection) {
        const auto* logical = Vs::cast<Vs::LogicalSelection>(selection.get());
        return logical && logical->path().isPartOfBody() &&
               std::any_of(changes.changed.begin(), changes.changed.end(),
                           [&](const Vs::Component* component) {
                               return component->id == logical->path().component;
                           });
    };
    auto left = m_selection->highlightSet().selections();
    if (std::erase_if(left, isOfChanged) > 0)
        m_selection->highlightSet().replace(left);
}

void SelectionDisplay::show(Node* node) const
{
    Highlight whole = Highlight::None;
    std::vector<LitPart> parts;
    const auto take = [&](const Layer& layer, Highlight highlight) {
        const auto found = layer.nodes().find(node);
        if (found == layer.nodes().end())
            return;
        if (found->second.whole)
            whole = std::max(whole, highlight);
        for (const auto& [part, index] : found->second.parts)
            parts.push_back({part, index, highlight});
    };
    take(m_selected, Highlight::Selected);
    take(m_collected, Highlight::Selected);
    take(m_pointed, Highlight::Pointed);
    Vs::Scene::NodeChange(node).highlight(whole).litParts(std::move(parts));
}

SelectionDisplay::Layer::Layer(SelectionDisplay& display, Vs::SelectionSet& set)
    : m_display(display), m_set(set)
{
    set.subscribe(this);
}

SelectionDisplay::Layer::~Layer()
{
    m_set.unsubscribe(this);
}

void SelectionDisplay::Layer::selectionSetChanged()
{
    if (m_set.generation() == m_generation)
        lightAdded();
    else if (!m_set.removed().empty() && m_set.generation() == m_generation + 1)
        darkenRemoved();
    else
        light();
}

/// Highlights what has been added since.
void SelectionDisplay::Layer::lightAdded()
{
    for (; m_seen < m_set.size(); ++m_seen) {
        const auto& selection = m_set.selections()[m_seen];
        Node* node = add(selection);
        if (node)
            m_display.show(node);
        const auto* logical = Vs::cast<Vs::LogicalSelection>(selection.get());
        if (m_index.empty() || !logical)
            continue;
        OfComponent& held = m_index[logical->componentId()];
        held.selections.push_back(selection);
        if (node && std::ranges::find(held.nodes, node) == held.nodes.end())
            held.nodes.push_back(node);
    }
    WorkspaceWindow::invalidate(kInvalidateScene);
}

/// Takes the highlight from what was removed since, unless something else that is selected lights it, too.
void SelectionDisplay::Layer::darkenRemoved()
{
    m_generation = m_set.generation();
    m_seen = m_set.size();
    makeIndex();
    for (const auto& selection : m_set.removed()) {
        const auto* logical = Vs::cast<Vs::LogicalSelection>(selection.get());
        const auto found = logical ? m_index.find(logical->componentId()) : m_index.end();
        if (found == m_index.end())
            continue;
        std::erase(found->second.selections, selection);
        lightComponent(found->second);
        if (found->second.selections.empty())
            m_index.erase(found);
    }
    WorkspaceWindow::invalidate(kInvalidateScene);
}

void SelectionDisplay::Layer::light()
{
    m_generation = m_set.generation();
    m_seen = m_set.size();
    const Nodes before = std::exchange(m_nodes, {});
    m_index.clear();
    for (const auto& selection : m_set.selections())
        add(selection);
    for (const auto& [node, lit] : before)
        m_display.show(node);
    for (const auto& [node, lit] : m_nodes)
        m_display.show(node);
    WorkspaceWindow::invalidate(kInvalidateScene);
}

/// Lights one of those that the set holds, and returns its node; null if it has none, or isn't to be lit.
Node* SelectionDisplay::Layer::add(const Vs::StrongRef<Vs::Selection>& selection)
{
    const auto* logical = Vs::cast<Vs::LogicalSelection>(selection.get());
    const Vs::Scene::SceneAssetAdapter* scene = m_display.scene();
    if (!logical || !scene ||
        (m_display.m_follower.isAway(logical->path()) && &m_set == &m_display.m_selection->selectionSet()))
        return nullptr;
    const Vs::ObjectPath& path = logical->path();
    Node* node = path.leaf == Leaf::Component ? scene->node(path.component)
                                              : static_cast<Node*>(scene->bodyNode(path.component));
    if (!node)
        return nullptr;
    const auto [found, isNew] = m_nodes.try_emplace(node);
    Lit& lit = found->second;
    if (isNew) {
        lit.kept = Vs::StrongRef<Node>(node);
        lit.of = selection;
    }
    if (!path.isPartOfBody())
        lit.whole = true;
    else if (path.leaf == Leaf::Solid)
        for (const uint32_t face :
             Vs::facesOfSolid(*m_display.m_asset->findComponent(path.component), path.index))
            lit.parts.emplace_back(Part::Face, face);
    else
        lit.parts.emplace_back(path.leaf == Leaf::Face   ? Part::Face
                               : path.leaf == Leaf::Edge ? Part::Edge
                                                         : Part::Vertex,
                               path.index);
    return node;
}

/// Whether going through the whole set is no more work.
bool SelectionDisplay::Layer::isMuch(const Changes& changes) const
{
    return changes.all ||
           changes.added.size() + changes.changed.size() + changes.removed.size() >= m_set.size();
}

void SelectionDisplay::Layer::makeIndex()
{
    if (!m_index.empty())
        return;
    for (const auto& selection : m_set.selections())
        if (const auto* logical = Vs::cast<Vs::LogicalSelection>(selection.get()))
            m_index[logical->componentId()].selections.push_back(selection);
    for (const auto& [node, lit] : m_nodes)
        m_index[Vs::cast<Vs::LogicalSelection>(lit.of.get())->componentId()].nodes.push_back(node);
}

void SelectionDisplay::Layer::light(const Changes& changes)
{
    if (m_set.empty() && m_nodes.empty())
        return;
    // Whatever is below a new branch may have been there before it.
    const bool isBranch = std::ranges::any_of(
        changes.added, [](const Vs::Component* added) { return !added->children.empty(); });
    if (isMuch(changes) || isBranch || holdsBelow(changes.removed)) {
        light();
        return;
    }
    for (const std::string& id : changes.removed)
        lightComponent(id);
    for (const Vs::Component* component : changes.changed)
        lightComponent(component->id);
    for (const Vs::Component* component : changes.added) {
        lightComponent(component->id);
        // What gets its first child is shown by a group from now on.
        lightComponent(Vs::parentId(component->id));
    }
}

void SelectionDisplay::Layer::lightComponent(const std::string& id)
{
    if (!m_set.components().has(id))
        return;
    makeIndex();
    lightComponent(m_index[id]);
}

void SelectionDisplay::Layer::lightComponent(OfComponent& held)
{
    std::vector<Nodes::node_type> before;
    for (Node* node : std::exchange(held.nodes, {}))
        if (Nodes::node_type lit = m_nodes.extract(node))
            before.push_back(std::move(lit));
    for (const auto& selection : held.selections)
        if (Node* node = add(selection); node && std::ranges::find(held.nodes, node) == held.nodes.end())
            held.nodes.push_back(node);
    for (const auto& lit : before)
        m_display.show(lit.key());
    for (Node* node : held.nodes)
        m_display.show(node);
}

bool SelectionDisplay::Layer::isStale(const Vs::Selection& selection) const
{
    const auto* logical = Vs::cast<Vs::LogicalSelection>(&selection);
    Vs::Status ignored;
    return logical && logical->asset() == m_display.m_asset &&
           !m_display.m_follower.isAway(logical->path()) &&
           !Vs::resolvePath(logical->path(), *m_display.m_asset, ignored);
}

bool SelectionDisplay::Layer::holdsBelow(const std::vector<std::string>& ids) const
{
    return std::ranges::any_of(ids, [&](const std::string& id) { return m_set.components().hasBelow(id); });
}

/// Whether something that is selected is gone, or lay in what is gone.
bool SelectionDisplay::Layer::concernsHeld(const Changes& changes)
{
    const auto isHeld = [&](const std::string& id) { return m_set.components().has(id); };
    const auto hasStale = [&](const Vs::Component* component) {
        if (!isHeld(component->id))
            return false;
        makeIndex();
        return std::ranges::any_of(m_index[component->id].selections,
                                   [&](const auto& selection) { return isStale(*selection); });
    };
    return holdsBelow(changes.removed) || std::ranges::any_of(changes.removed, isHeld) ||
           std::ranges::any_of(changes.changed, hasStale);
}

void SelectionDisplay::Layer::dropStale(const Changes& changes)
{
    if (m_set.empty() || (!isMuch(changes) && !concernsHeld(changes)))
        return;
    auto left = m_set.selections();
    if (std::erase_if(left, [&](const auto& selection) { return isStale(*selection); }) > 0)
        m_set.replace(left);
}

} // namespace Vu
