#include "UI/Commands/Shells/ManagementGraphicsView.h"

#include "Server/Scene/NodeChange.h"
#include "Server/Scene/Segment.h"
#include "Server/Scene/Viewport.h"

namespace Vu::Commands {

Vs::Segment* ManagementGraphicsView::s_segment = nullptr;

ManagementGraphicsView* ManagementGraphicsView::make()
{
    return new ManagementGraphicsView;
}

ManagementGraphicsView::ManagementGraphicsView() = default;

ManagementGraphicsView::~ManagementGraphicsView() = default;

Rendra::Graphics::GroupNode* ManagementGraphicsView::sceneNode() const
{
    return m_node.get();
}

void ManagementGraphicsView::createViewNode()
{
    if (!s_segment)
        s_segment = Vs::Segment::makeTransientStandalone("ManagementGraphicsViewSegment");
    m_node = Vs::Scene::makeViewNode(this);
    m_viewport = Vs::Scene::Viewport::make(s_segment);
}

Rendra::Graphics::GroupNode* ManagementGraphicsView::createScene()
{
    if (!m_node)
        createViewNode();
    return m_node.get();
}

void ManagementGraphicsView::releaseScene()
{
    if (!m_node)
        return;
    Vs::Scene::NodeChange change(sceneNode());
    change.clearSource();
    m_node.reset();
}

} // namespace Vu::Commands
