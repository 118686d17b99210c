#include "UI/Base/SelectionDisplay.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "UI/Base/WorkspaceWindow.h"

namespace Vu {

using Rendra::Graphics::Highlight;

SelectionDisplay::SelectionDisplay(Vs::Asset* asset, Vs::SelectionMgr* selection)
    : m_asset(asset), m_selection(selection)
{
    selection->selectionSet().subscribe(this);
    selection->highlightSet().subscribe(this);
}

SelectionDisplay::~SelectionDisplay()
{
    m_selection->selectionSet().unsubscribe(this);
    m_selection->highlightSet().unsubscribe(this);
}

void SelectionDisplay::show()
{
    for (const auto& node : m_lit)
        Vs::Scene::NodeChange(node.get()).highlight(Highlight::None);
    m_lit.clear();
    light(m_selection->highlightSet(), Highlight::Pointed);
    light(m_selection->selectionSet(), Highlight::Selected);
    WorkspaceWindow::invalidate(kInvalidateScene);
}

void SelectionDisplay::light(const Vs::SelectionSet& set, Highlight highlight)
{
    const auto* scene = Vs::cast<Vs::Scene::SceneAssetAdapter>(m_asset->adapter());
    for (const auto& selection : set.selections()) {
        const auto* logical = Vs::cast<Vs::LogicalSelection>(selection.get());
        Rendra::Graphics::Node* node = logical && scene ? scene->node(logical->componentId()) : nullptr;
        if (!node)
            continue;
        Vs::Scene::NodeChange(node).highlight(highlight);
        m_lit.emplace_back(node);
    }
}

} // namespace Vu
