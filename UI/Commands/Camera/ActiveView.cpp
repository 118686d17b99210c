#include "UI/Commands/Camera/ActiveView.h"

#include "Server/Scene/ViewFragment.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Base/View/TransitionMgr.h"
#include "UI/Base/View/ViewMgr.h"

namespace Vu::Commands {

GraphicsView* graphicsViewOf(AssetSession* session)
{
    ViewMgr* views = session ? session->viewManager() : nullptr;
    return views ? views->graphicsView() : nullptr;
}

GraphicsView* graphicsViewOf(const Rendra::Graphics::GroupNode* viewNode)
{
    const Vs::Scene::ViewNodeData* data = Vs::Scene::viewNodeData(viewNode);
    const Vs::Scene::INodeSource* source = data ? data->source() : nullptr;
    return source ? static_cast<GraphicsView*>(source->queryInterface(GraphicsView::interfaceId())) : nullptr;
}

Vs::Scene::ViewFragment* firstFragment(GraphicsView* view)
{
    return view && !view->viewFragments().empty() ? view->viewFragments().front() : nullptr;
}

Vs::Scene::ViewFragment* fragmentNamed(GraphicsView* view, const std::string& name)
{
    if (view)
        for (Vs::Scene::ViewFragment* fragment : view->viewFragments())
            if (fragment->name() == name)
                return fragment;
    return nullptr;
}

Vs::Scene::Camera* activeCamera()
{
    Vs::Scene::ViewFragment* fragment =
        firstFragment(graphicsViewOf(SessionMgr::get()->activeAssetSession()));
    return fragment ? fragment->camera() : nullptr;
}

Vs::Scene::Camera* settledCamera()
{
    TransitionMgr::get()->finish();
    return activeCamera();
}

} // namespace Vu::Commands
