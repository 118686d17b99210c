#include "UI/Base/Session/Private/EditedComponent.h"

#include "Server/Component/ComponentIds.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/Selection/PartHistory.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Scene/NodeChange.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Workspace/WorkspaceWindow.h"

namespace Vu {

using Vs::Scene::NodeChange;

EditedComponent::EditedComponent(AssetSession& session)
    : ComponentsListener(session.asset()), m_session(session)
{
}

EditedComponent::~EditedComponent() = default;

void EditedComponent::show()
{
    const auto* scene = Vs::cast<Vs::Scene::SceneAssetAdapter>(m_session.asset()->adapter());
    const std::string component = m_session.editedComponent();
    Rendra::Graphics::Node* node = scene && !component.empty() ? scene->node(component) : nullptr;
    if (!Vs::isWithin(m_shown, component))
        dropSelection();
    m_shown = component;
    if (!scene)
        return;
    if (node != m_node.get()) {
        if (m_node)
            NodeChange(m_node.get()).ghost(std::nullopt);
        m_node = Vs::StrongRef<Rendra::Graphics::Node>(node);
        if (node)
            NodeChange(node).ghost(false);
    }
    NodeChange(scene->rootNode()).ghost(component.empty() ? std::nullopt : std::optional(true));
    WorkspaceWindow::invalidate(kInvalidateScene);
}

// A command would pick up, unseen, what can't be picked; and what was clicked to enter it is entered, not
// selected.
void EditedComponent::dropSelection()
{
    m_session.selectionManager()->highlightSet().clear();
    m_session.selectionManager()->selectionSet().clear();
}

// What a preview takes away comes back.
void EditedComponent::assetComponentsChanged(Vs::ComponentsEvent* event)
{
    if (m_shown.empty())
        return;
    if (!Vs::showsPreview(*event->asset()))
        while (!m_session.editedComponent().empty() &&
               !event->asset()->findComponent(m_session.editedComponent()))
            m_session.leaveEnvironment();
    show();
}

} // namespace Vu
