#include "UI/Base/Session/Private/SelectionDisplay.h"

#include "Server/Base/Status.h"
#include "Server/Component/Component.h"
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
    if (m_follower.heard(*m_asset)) {
        Vs::SelectionSet& selected = m_selection->selectionSet();
        const auto left = m_follower.follow(selected.selections(), m_asset);
        m_follower.followed();
        selected.replace(left);
    }
    dropStale(m_selection->selectionSet());
    dropStale(m_selection->highlightSet());
    dropPointed(event->changes());
    // The nodes of what stays may be others now.
    m_selected.light();
    m_collected.light();
    m_pointed.light();
}

void SelectionDisplay::dropStale(Vs::SelectionSet& set)
{
    const auto isStale = [this](const Vs::StrongRef<Vs::Selection>& selection) {
        const auto* logical = Vs::cast<Vs::LogicalSelection>(selection.get());
        Vs::Status ignored;
        return logical && logical->asset() == m_asset && !m_follower.isAway(logical->path()) &&
               !Vs::resolvePath(logical->path(), *m_asset, ignored);
    };
    auto left = set.selections();
    if (std::erase_if(left, isStale) > 0)
        set.replace(left);
}

// Parts are told by their numbers, and the same number may mean another part of a body that has changed.
void SelectionDisplay::dropPointed(const Vs::ComponentsEvent::Changes& changes)
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
    light();
}

// What was lit before keeps its node until it is dark again.
void SelectionDisplay::Layer::light()
{
    const Nodes before = std::exchange(m_nodes, {});
    const auto keptBefore = std::exchange(m_kept, {});
    const Vs::Scene::SceneAssetAdapter* scene = m_display.scene();
    for (const auto& selection : m_set.selections()) {
        const auto* logical = Vs::cast<Vs::LogicalSelection>(selection.get());
        if (!logical || !scene ||
            (m_display.m_follower.isAway(logical->path()) &&
             &m_set == &m_display.m_selection->selectionSet()))
            continue;
        const Vs::ObjectPath& path = logical->path();
        Node* node = path.leaf == Leaf::Component ? scene->node(path.component)
                                                  : static_cast<Node*>(scene->bodyNode(path.component));
        if (!node)
            continue;
        const auto [found, isNew] = m_nodes.try_emplace(node);
        if (isNew)
            m_kept.emplace_back(node);
        if (!path.isPartOfBody())
            found->second.whole = true;
        else if (path.leaf == Leaf::Solid)
            for (const uint32_t face :
                 Vs::facesOfSolid(*m_display.m_asset->findComponent(path.component), path.index))
                found->second.parts.emplace_back(Part::Face, face);
        else
            found->second.parts.emplace_back(path.leaf == Leaf::Face   ? Part::Face
                                             : path.leaf == Leaf::Edge ? Part::Edge
                                                                       : Part::Vertex,
                                             path.index);
    }
    for (const auto& [node, lit] : before)
        m_display.show(node);
    for (const auto& [node, lit] : m_nodes)
        m_display.show(node);
    WorkspaceWindow::invalidate(kInvalidateScene);
}

} // namespace Vu
